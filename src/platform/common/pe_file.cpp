// SPDX-License-Identifier: MIT
// Finds the version resource inside an executable file in the PE format, 32 or 64 bits.
//
//   0x00  "MZ" ... at 0x3C the offset of
//         "PE\0\0"  file header (20 bytes)  optional header  section headers (40 bytes each)
//
// The optional header's third data directory is the resources' address in memory; the section that
// holds it gives the place in the file. Resources are a tree of three levels, type, name and
// language, whose leaves give the address of the data.
#include "platform/common/pe_file.h"

#include <algorithm>
#include <optional>

#include "platform/common/little_endian.h"

namespace ipodcomm::platform {
namespace {

constexpr std::size_t kFileHeaderSize = 24;  // signature included
constexpr std::size_t kSectionHeaderSize = 40;
constexpr std::uint32_t kResourceDirectory = 2;
constexpr std::uint32_t kVersionType = 16;
// A version resource tells its own length in 16 bits.
constexpr std::uint32_t kMaxVersionSize = 0xFFFF;

struct Section {
  std::uint32_t address;
  std::uint32_t file_offset;
  std::uint32_t file_size;
};

class PeFile {
 public:
  explicit PeFile(const ByteSource& file) : file_(file) {}

  bool ReadHeaders() {
    std::uint8_t dos[64];
    if (!file_(0, dos, sizeof dos) || dos[0] != 'M' || dos[1] != 'Z') return false;
    const std::uint64_t start = Little32(dos + 0x3C);
    std::uint8_t header[kFileHeaderSize];
    if (!file_(start, header, sizeof header)) return false;
    if (header[0] != 'P' || header[1] != 'E' || header[2] != 0 || header[3] != 0) return false;
    const std::uint16_t section_count = Little16(header + 6);
    const std::uint16_t optional_size = Little16(header + 20);
    const std::uint64_t optional = start + kFileHeaderSize;
    return ReadResourceAddress(optional, optional_size) &&
           ReadSections(optional + optional_size, section_count);
  }

  // The resource tree's root in the file.
  std::optional<std::uint64_t> Resources() const { return FileOffset(resource_address_); }

  // The place in the file of `address` in memory, unless the file has nothing there.
  std::optional<std::uint64_t> FileOffset(std::uint32_t address) const {
    for (const Section& section : sections_) {
      if (address < section.address) continue;
      const std::uint32_t inside = address - section.address;
      if (inside < section.file_size) return std::uint64_t{section.file_offset} + inside;
    }
    return std::nullopt;
  }

 private:
  bool ReadResourceAddress(std::uint64_t optional, std::uint16_t optional_size) {
    std::uint8_t magic[2];
    if (!file_(optional, magic, sizeof magic)) return false;
    std::uint32_t directories = 0;  // where they begin; their count stands just before
    if (Little16(magic) == 0x10B) directories = 96;
    if (Little16(magic) == 0x20B) directories = 112;
    const std::uint32_t entry = directories + kResourceDirectory * 8;
    if (directories == 0 || entry + 8 > optional_size) return false;
    std::uint8_t count[4];
    std::uint8_t address[4];
    if (!file_(optional + directories - 4, count, sizeof count)) return false;
    if (Little32(count) <= kResourceDirectory) return false;
    if (!file_(optional + entry, address, sizeof address)) return false;
    resource_address_ = Little32(address);
    return resource_address_ != 0;
  }

  bool ReadSections(std::uint64_t offset, std::uint16_t count) {
    for (std::uint16_t i = 0; i < count; ++i, offset += kSectionHeaderSize) {
      std::uint8_t header[kSectionHeaderSize];
      if (!file_(offset, header, sizeof header)) return false;
      sections_.push_back({Little32(header + 12), Little32(header + 20), Little32(header + 16)});
    }
    return true;
  }

  const ByteSource& file_;
  std::uint32_t resource_address_ = 0;
  std::vector<Section> sections_;
};

constexpr std::uint32_t kAny = 0xFFFFFFFF;
constexpr std::uint32_t kHighBit = 0x80000000;

// The offset stored in the directory at `directory` for the entry numbered `id`, or for its first
// entry. The high bit tells a directory from a leaf.
std::optional<std::uint32_t> FindEntry(const ByteSource& file, std::uint64_t directory,
                                       std::uint32_t id) {
  std::uint8_t header[16];
  if (!file(directory, header, sizeof header)) return std::nullopt;
  const std::uint32_t count = std::uint32_t{Little16(header + 12)} + Little16(header + 14);
  for (std::uint32_t i = 0; i < count; ++i) {
    std::uint8_t entry[8];
    if (!file(directory + sizeof header + i * sizeof entry, entry, sizeof entry)) break;
    if (id == kAny || Little32(entry) == id) return Little32(entry + 4);
  }
  return std::nullopt;
}

// Walks type, name and language to the leaf's offset from the root.
std::optional<std::uint32_t> FindVersionLeaf(const ByteSource& file, std::uint64_t root) {
  std::uint32_t offset = 0;
  for (const std::uint32_t id : {kVersionType, kAny, kAny}) {
    const auto entry = FindEntry(file, root + offset, id);
    if (!entry) return std::nullopt;
    const bool is_directory = (*entry & kHighBit) != 0;
    offset = *entry & ~kHighBit;
    if (!is_directory) return offset;  // fewer levels than usual
  }
  return std::nullopt;  // deeper than any resource
}

}  // namespace

DWORD ReadVersionResource(const ByteSource& file, std::vector<std::uint8_t>* resource) {
  PeFile executable(file);
  if (!executable.ReadHeaders()) return ERROR_RESOURCE_DATA_NOT_FOUND;
  const auto root = executable.Resources();
  if (!root) return ERROR_RESOURCE_DATA_NOT_FOUND;
  const auto leaf = FindVersionLeaf(file, *root);
  std::uint8_t place[8];  // address and size
  if (!leaf || !file(*root + *leaf, place, sizeof place)) return ERROR_RESOURCE_TYPE_NOT_FOUND;
  const auto offset = executable.FileOffset(Little32(place));
  if (!offset) return ERROR_RESOURCE_DATA_NOT_FOUND;
  resource->resize(std::min(Little32(place + 4), kMaxVersionSize));
  if (!file(*offset, resource->data(), resource->size())) return ERROR_RESOURCE_DATA_NOT_FOUND;
  return ERROR_SUCCESS;
}

}  // namespace ipodcomm::platform
