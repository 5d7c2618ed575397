// SPDX-License-Identifier: MIT
// What a fuzzer is made of: one function, which is given any bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>

/// Returns 0. Ends the process where something is wrong.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace fuzz {

/// Something that holds whatever the input is.
inline void Require(bool holds) {
  if (!holds) std::abort();
}

}  // namespace fuzz
