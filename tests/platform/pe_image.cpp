// SPDX-License-Identifier: MIT
// Executable files made by hand: the least that carries a version resource.
#include "pe_image.h"

namespace ipodcomm::test {
namespace {

void Append16(Bytes& bytes, unsigned value) {
  bytes.push_back(static_cast<std::uint8_t>(value & 0xFF));
  bytes.push_back(static_cast<std::uint8_t>(value >> 8));
}

void Append(Bytes& bytes, const Bytes& more) {
  bytes.insert(bytes.end(), more.begin(), more.end());
}

void Align4(Bytes& bytes) {
  while (bytes.size() % 4 != 0) bytes.push_back(0);
}

}  // namespace

void Put16(Bytes& bytes, std::size_t offset, unsigned value) {
  bytes.at(offset) = static_cast<std::uint8_t>(value & 0xFF);
  bytes.at(offset + 1) = static_cast<std::uint8_t>(value >> 8);
}

void Put32(Bytes& bytes, std::size_t offset, std::uint32_t value) {
  Put16(bytes, offset, value & 0xFFFF);
  Put16(bytes, offset + 2, value >> 16);
}

Bytes Text16(const std::u16string& text) {
  Bytes bytes;
  for (const char16_t unit : text) Append16(bytes, unit);
  Append16(bytes, 0);
  return bytes;
}

Bytes VersionNode(const std::u16string& key, bool is_text, unsigned value_length,
                  const Bytes& value, const std::vector<Bytes>& children) {
  Bytes node;
  Append16(node, 0);  // the length, below
  Append16(node, value_length);
  Append16(node, is_text ? 1 : 0);
  Append(node, Text16(key));
  Align4(node);
  Append(node, value);
  for (const Bytes& child : children) {
    Align4(node);
    Append(node, child);
  }
  Put16(node, 0, static_cast<unsigned>(node.size()));
  return node;
}

Bytes StringNode(const std::u16string& key, const std::u16string& text) {
  return VersionNode(key, true, static_cast<unsigned>(text.size() + 1), Text16(text), {});
}

Bytes VersionResource(const std::vector<Bytes>& strings) {
  Bytes fixed(52, 0);
  Put32(fixed, 0, 0xFEEF04BD);
  Put32(fixed, 4, 0x00010000);
  Put32(fixed, 8, 0x00020005);  // 2.5
  Put32(fixed, 12, 0x00000011);
  const Bytes table = VersionNode(u"040904b0", true, 0, {}, strings);
  const Bytes string_info = VersionNode(u"StringFileInfo", true, 0, {}, {table});
  const Bytes translation = VersionNode(u"Translation", false, 4, {0x09, 0x04, 0xB0, 0x04}, {});
  const Bytes var_info = VersionNode(u"VarFileInfo", true, 0, {}, {translation});
  return VersionNode(u"VS_VERSION_INFO", false, 52, fixed, {string_info, var_info});
}

Bytes PeImage(int bits, const Bytes& version_resource) {
  const bool wide = bits == 64;
  const std::size_t optional_size = wide ? 0xF0 : 0xE0;
  Bytes image(kVersion, 0);

  image[0] = 'M';
  image[1] = 'Z';
  Put32(image, 0x3C, kPeSignature);

  image[kPeSignature] = 'P';
  image[kPeSignature + 1] = 'E';
  Put16(image, kPeSignature + 4, wide ? 0x8664 : 0x014C);  // machine
  Put16(image, kPeSignature + 6, 1);                       // sections
  Put16(image, kPeSignature + 20, static_cast<unsigned>(optional_size));
  Put16(image, kPeSignature + 22, wide ? 0x0022 : 0x0102);  // executable

  Put16(image, kOptionalHeader, wide ? 0x20B : 0x10B);
  if (wide) {
    Put32(image, kOptionalHeader + 24, 0x00400000);  // image base, 64 bits
  } else {
    Put32(image, kOptionalHeader + 28, 0x00400000);
  }
  Put32(image, kOptionalHeader + 32, 0x1000);  // alignment in memory
  Put32(image, kOptionalHeader + 36, 0x200);   // and in the file
  Put16(image, kOptionalHeader + 40, 4);       // oldest system
  Put16(image, kOptionalHeader + 48, 4);
  Put32(image, kOptionalHeader + 56, 0x2000);  // size in memory
  Put32(image, kOptionalHeader + 60, 0x200);   // of the headers
  Put16(image, kOptionalHeader + 68, 3);       // a console program
  const std::size_t directories = kOptionalHeader + (wide ? 112U : 96U);
  Put32(image, directories - 4, 16);
  Put32(image, directories + 16, kResourceAddress);  // the third: resources
  Put32(image, directories + 20, static_cast<std::uint32_t>(0x58 + version_resource.size()));

  const std::size_t section = kOptionalHeader + optional_size;
  const char name[] = ".rsrc";
  for (std::size_t i = 0; i < 5; ++i) image[section + i] = static_cast<std::uint8_t>(name[i]);
  const auto raw_size =
      static_cast<std::uint32_t>((0x58 + version_resource.size() + 0x1FF) / 0x200 * 0x200);
  Put32(image, section + 8, raw_size);           // size in memory
  Put32(image, section + 12, kResourceAddress);  // address
  Put32(image, section + 16, raw_size);          // size in the file
  Put32(image, section + 20, kResources);        // place in the file
  Put32(image, section + 36, 0x40000040);        // readable data

  Put16(image, kResources + 0x00 + 14, 1);  // one type: version
  Put32(image, kResources + 0x10, 16);
  Put32(image, kResources + 0x14, 0x80000018);
  Put16(image, kResources + 0x18 + 14, 1);  // one name: 1
  Put32(image, kResources + 0x28, 1);
  Put32(image, kResources + 0x2C, 0x80000030);
  Put16(image, kResources + 0x30 + 14, 1);  // one language
  Put32(image, kResources + 0x40, 0x0409);
  Put32(image, kResources + 0x44, 0x48);
  Put32(image, kDataEntry, kResourceAddress + 0x58);
  Put32(image, kDataEntry + 4, static_cast<std::uint32_t>(version_resource.size()));

  Append(image, version_resource);
  image.resize(kResources + raw_size, 0);
  return image;
}

}  // namespace ipodcomm::test
