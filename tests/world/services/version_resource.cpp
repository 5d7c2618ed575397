// SPDX-License-Identifier: MIT
// Nested nodes, each: length, value length, type, key in UTF-16, value, children; all on 4 bytes.
#include "world/services/version_resource.h"

#include <algorithm>

namespace ipodcomm::virtual_platform {
namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr unsigned kBinary = 0;
constexpr unsigned kText = 1;
constexpr std::size_t kFixedPartBytes = 52;

void Add16(Bytes& bytes, std::size_t value) {
  bytes.push_back(static_cast<std::uint8_t>(value));
  bytes.push_back(static_cast<std::uint8_t>(value >> 8));
}

void AddText(Bytes& bytes, const std::wstring& text) {
  for (const wchar_t character : text) Add16(bytes, static_cast<std::size_t>(character));
  Add16(bytes, 0);
}

void Align(Bytes& bytes) {
  while (bytes.size() % 4 != 0) bytes.push_back(0);
}

// `value_length` counts bytes of a binary value and characters of a text.
Bytes Node(const std::wstring& key, unsigned type, const Bytes& value, std::size_t value_length,
           const Bytes& children) {
  Bytes node;
  Add16(node, 0);
  Add16(node, value_length);
  Add16(node, type);
  AddText(node, key);
  Align(node);
  node.insert(node.end(), value.begin(), value.end());
  if (!children.empty()) Align(node);
  node.insert(node.end(), children.begin(), children.end());
  node[0] = static_cast<std::uint8_t>(node.size());
  node[1] = static_cast<std::uint8_t>(node.size() >> 8);
  return node;
}

}  // namespace

std::vector<std::uint8_t> MakeVersionResource(const std::wstring& file_version) {
  Bytes text;
  AddText(text, file_version);
  const Bytes version = Node(L"FileVersion", kText, text, file_version.size() + 1, {});
  const Bytes table = Node(L"040904b0", kText, {}, 0, version);
  const Bytes texts = Node(L"StringFileInfo", kText, {}, 0, table);
  Bytes fixed(kFixedPartBytes, 0);
  const Bytes signature = {0xBD, 0x04, 0xEF, 0xFE};
  std::copy(signature.begin(), signature.end(), fixed.begin());
  return Node(L"VS_VERSION_INFO", kBinary, fixed, fixed.size(), texts);
}

}  // namespace ipodcomm::virtual_platform
