// SPDX-License-Identifier: MIT
// A version resource in the form that hosts query: text in the platform's wide characters.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace ipodcomm::platform {

/// A value found in a block: a text, or other data.
struct VersionValue {
  const void* data;
  std::uint32_t length;  ///< characters of a text, terminator included; bytes otherwise
};

/// Turns a version resource, as an executable holds it, into a block. The resource is not trusted;
/// parts that contradict themselves are left out. Empty when it is no version resource at all.
std::vector<std::uint8_t> MakeVersionBlock(const std::vector<std::uint8_t>& resource);

/// Finds the value at `path` ("\StringFileInfo\040904b0\FileVersion", "\VarFileInfo\Translation",
/// or "\" for the fixed part), whatever its case, in a block that MakeVersionBlock made. False when
/// it is not there or `block` is something else.
bool FindVersionValue(const void* block, const std::wstring& path, VersionValue* value);

}  // namespace ipodcomm::platform
