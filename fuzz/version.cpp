// SPDX-License-Identifier: MIT
// Executable files whose version resource is looked up.
#include <cstring>
#include <string>
#include <vector>

#include "fuzz.h"
#include "platform/common/pe_file.h"
#include "platform/common/version_block.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  namespace platform = ipodcomm::platform;
  const auto read = [&](std::uint64_t offset, void* buffer, std::size_t count) {
    if (offset > size || count > size - offset) return false;
    if (count != 0) std::memcpy(buffer, data + offset, count);
    return true;
  };
  std::vector<std::uint8_t> resource;
  // The resource by itself is looked through as well: few mutations leave the way to it whole.
  if (platform::ReadVersionResource(read, &resource) != ERROR_SUCCESS) {
    resource.assign(data, data + size);
  }
  const std::vector<std::uint8_t> block = platform::MakeVersionBlock(resource);
  if (block.empty()) return 0;
  for (const wchar_t* path :
       {L"\\", L"\\VarFileInfo\\Translation", L"\\StringFileInfo\\040904b0\\FileVersion"}) {
    platform::VersionValue value = {};
    if (!platform::FindVersionValue(block.data(), path, &value)) continue;
    std::vector<std::uint8_t> copy(value.length);
    if (value.length != 0) std::memcpy(copy.data(), value.data, value.length);
  }
  return 0;
}
