// SPDX-License-Identifier: MIT
// What a host may ask for.
#pragma once

#include <cstdint>
#include <vector>

#include "input.h"
#include "ipodcomm/CIpodComm.h"
#include "ipodcomm/ipod.h"

namespace fuzz {

/// An operation by its number, with buffers of which it may write no more than it was told.
void Perform(std::uint8_t number, CIpodComm* session);
void Perform(std::uint8_t number, ipod* dock);

/// The numbers that the input names: how many, and then each.
inline std::vector<std::uint8_t> ChooseOperations(Input* input) {
  constexpr std::size_t kMost = 4;
  return input->Bytes(1 + input->Byte() % kMost);
}

}  // namespace fuzz
