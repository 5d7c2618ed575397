// SPDX-License-Identifier: MIT
// Finds the version resource inside an executable file in the PE format, 32 or 64 bits.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

#include "platform/services.h"

namespace ipodcomm::platform {

/// Reads exactly `size` bytes of a file at `offset`; false when they are not all there.
using ByteSource = std::function<bool(std::uint64_t offset, void* buffer, std::size_t size)>;

/// Reads the version resource as it stands in the file, the first one in any language. The file is
/// not trusted: whatever it holds, reads stay inside it, the work is bounded, and the result is one
/// of 0, ERROR_RESOURCE_DATA_NOT_FOUND (not an executable, or without resources) and
/// ERROR_RESOURCE_TYPE_NOT_FOUND (no version among its resources).
DWORD ReadVersionResource(const ByteSource& file, std::vector<std::uint8_t>* resource);

}  // namespace ipodcomm::platform
