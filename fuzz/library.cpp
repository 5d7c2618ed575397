// SPDX-License-Identifier: MIT
// Media libraries of the simulated iPod: a library, or a sentence that says what is wrong.
#include "simulator/media/library.h"

#include <string_view>

#include "fuzz.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const ipodsim::LibraryResult result = ipodsim::ParseLibrary(text, "music.json");
  fuzz::Require(result.library.has_value() == result.error.empty());
  return 0;
}
