// SPDX-License-Identifier: MIT
#include "decoder.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  return fuzz::Decode(&CIpodComm::ProcessLingoSportsReadCommand, data, size);
}
