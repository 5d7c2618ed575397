// SPDX-License-Identifier: MIT
// A version resource in the form that hosts query: text in the platform's wide characters.
//
// The resource is a tree of nodes, each
//
//   length (16 bits, children included)  value length (16)  type (16: 1 text, 0 data)
//   key (UTF-16, terminated)  padding to 32 bits  value  padding  children
//
// VS_VERSION_INFO > StringFileInfo > 040904b0 > FileVersion. The block lists its values flat, each
// under its folded path:
//
//   magic  block size  { entry size  path characters  value length  path  value } ...
#include "platform/common/version_block.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

#include "platform/common/fold_case.h"
#include "platform/common/little_endian.h"

namespace ipodcomm::platform {
namespace {

constexpr std::uint32_t kMagic = 0x56455249;
constexpr std::size_t kNodeHeaderSize = 6;
constexpr int kMaxDepth = 4;
// Real paths have some 40 characters. The limit keeps a small hostile resource from growing into a
// huge block, as every value carries its path.
constexpr std::size_t kMaxPath = 128;

// Characters and numbers in a block are both 32 bits wide, so everything in it is aligned.
static_assert(sizeof(wchar_t) == sizeof(std::uint32_t));

std::size_t Aligned(std::size_t offset) { return (offset + 3) & ~std::size_t{3}; }

// UTF-16 from `begin` up to its terminator or `end`. Surrogates in pairs make one character.
std::wstring ReadText(const std::vector<std::uint8_t>& bytes, std::size_t begin, std::size_t end) {
  std::wstring text;
  for (std::size_t i = begin; i + 2 <= end; i += 2) {
    const std::uint32_t unit = Little16(&bytes[i]);
    if (unit == 0) break;
    const std::uint32_t next = i + 4 <= end ? Little16(&bytes[i + 2]) : 0U;
    if (unit >= 0xD800 && unit < 0xDC00 && next >= 0xDC00 && next < 0xE000) {
      text.push_back(static_cast<wchar_t>(0x10000 + ((unit - 0xD800) << 10) + (next - 0xDC00)));
      i += 2;
    } else {
      const bool lone = unit >= 0xD800 && unit < 0xE000;
      text.push_back(lone ? L'\uFFFD' : static_cast<wchar_t>(unit));
    }
  }
  return text;
}

class BlockMaker {
 public:
  explicit BlockMaker(const std::vector<std::uint8_t>& resource) : resource_(resource) {}

  std::vector<std::uint8_t> Make() {
    Add32(kMagic);
    Add32(0);
    if (!AddRoot()) return {};
    const auto size = static_cast<std::uint32_t>(block_.size());
    std::memcpy(&block_[4], &size, sizeof size);
    return std::move(block_);
  }

 private:
  struct Node {
    std::size_t end;
    std::wstring key;
    bool is_text;
    std::size_t value;
    std::size_t value_end;
  };

  bool AddRoot() {
    Node root;
    if (!ReadNode(0, resource_.size(), &root) || root.key != L"VS_VERSION_INFO") return false;
    AddValue(L"", root);
    AddChildren(L"", root, 1);
    return true;
  }

  // Reads the node at `begin`; false when it does not fit in front of `end`.
  bool ReadNode(std::size_t begin, std::size_t end, Node* node) const {
    if (begin + kNodeHeaderSize > end) return false;
    const std::size_t length = Little16(&resource_[begin]);
    if (length < kNodeHeaderSize || length > end - begin) return false;
    const std::size_t value_length = Little16(&resource_[begin + 2]);
    node->end = begin + length;
    node->is_text = Little16(&resource_[begin + 4]) != 0;
    const std::size_t key = begin + kNodeHeaderSize;
    std::size_t key_end = key;
    while (key_end + 2 <= node->end && Little16(&resource_[key_end]) != 0) key_end += 2;
    node->key = ReadText(resource_, key, key_end);
    // A text's length counts characters. Some tools count its bytes; the node's end bounds both.
    const std::size_t value_bytes = node->is_text ? 2 * value_length : value_length;
    node->value = std::min(Aligned(key_end + 2), node->end);
    node->value_end = std::min(node->value + value_bytes, node->end);
    return true;
  }

  void AddChildren(const std::wstring& path, const Node& parent, int depth) {
    if (depth == kMaxDepth) return;
    Node child;
    for (std::size_t next = Aligned(parent.value_end); ReadNode(next, parent.end, &child);
         next = Aligned(child.end)) {
      const std::wstring child_path = path.empty() ? child.key : path + L"\\" + child.key;
      if (child_path.size() > kMaxPath) continue;
      if (child.value_end > child.value || child.is_text) AddValue(child_path, child);
      AddChildren(child_path, child, depth + 1);
    }
  }

  void AddValue(const std::wstring& path, const Node& node) {
    const std::wstring folded = FoldCase(path);
    const std::wstring text =
        node.is_text ? ReadText(resource_, node.value, node.value_end) : std::wstring();
    const std::size_t bytes =
        node.is_text ? (text.size() + 1) * sizeof(wchar_t) : Aligned(node.value_end - node.value);
    Add32(3 * sizeof(std::uint32_t) + (folded.size() + 1) * sizeof(wchar_t) + bytes);
    Add32(folded.size() + 1);
    Add32(node.is_text ? text.size() + 1 : node.value_end - node.value);
    AddText(folded);
    if (node.is_text) {
      AddText(text);
    } else {
      AddBytes(resource_.data() + node.value, node.value_end - node.value);
    }
  }

  void Add32(std::size_t number) {
    const auto narrow = static_cast<std::uint32_t>(number);
    AddBytes(&narrow, sizeof narrow);
  }

  void AddText(const std::wstring& text) {
    AddBytes(text.c_str(), (text.size() + 1) * sizeof(wchar_t));
  }

  void AddBytes(const void* data, std::size_t size) {
    const auto* bytes = static_cast<const std::uint8_t*>(data);
    block_.insert(block_.end(), bytes, bytes + size);
    block_.resize(Aligned(block_.size()));
  }

  const std::vector<std::uint8_t>& resource_;
  std::vector<std::uint8_t> block_;
};

}  // namespace

std::vector<std::uint8_t> MakeVersionBlock(const std::vector<std::uint8_t>& resource) {
  return BlockMaker(resource).Make();
}

bool FindVersionValue(const void* block, const std::wstring& path, VersionValue* value) {
  const auto* words = static_cast<const std::uint32_t*>(block);
  if (words == nullptr || words[0] != kMagic) return false;
  const std::uint32_t* const end = words + words[1] / sizeof *words;
  const std::size_t first = path.find_first_not_of(L'\\');
  const std::wstring wanted = first == std::wstring::npos ? L"" : FoldCase(path.substr(first));
  for (const std::uint32_t* entry = words + 2; entry < end; entry += entry[0] / sizeof *entry) {
    const auto* entry_path = reinterpret_cast<const wchar_t*>(entry + 3);
    if (wanted != entry_path) continue;
    *value = {entry_path + entry[1], entry[2]};
    return true;
  }
  return false;
}

}  // namespace ipodcomm::platform
