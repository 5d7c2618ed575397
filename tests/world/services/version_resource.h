// SPDX-License-Identifier: MIT
// A version resource as an executable file holds it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace ipodcomm::virtual_platform {

/// A resource whose only text is the FileVersion, in English and Unicode (040904b0).
std::vector<std::uint8_t> MakeVersionResource(const std::wstring& file_version);

}  // namespace ipodcomm::virtual_platform
