// SPDX-License-Identifier: MIT
// Identification tokens whose fields vary in length, from memory that the caller already has: the
// exported builders take containers, which need memory of their own.
#pragma once

#include <cstddef>
#include <string_view>

namespace ipodcomm {

/// A builder's result when the token does not fit.
constexpr unsigned long kNoRoom = 0xFFFFFFFF;

/// Fields of the token by which the accessory announces its lingoes.
struct LingoAnnouncement {
  const unsigned char* lingoes;
  std::size_t lingo_count;
  const unsigned char* options;    ///< 4 bytes
  const unsigned char* device_id;  ///< 4 bytes
};

/// Write a token at `destination` and return its size, or write nothing and return kNoRoom when it
/// does not fit into `capacity` bytes with one to spare.
unsigned long WriteIdentifyToken(unsigned char* destination, unsigned long capacity,
                                 const LingoAnnouncement& announcement);
/// @param info_type kind of accessory information (accessory_identity.h)
unsigned long WriteInfoTextToken(unsigned char* destination, unsigned long capacity,
                                 unsigned char info_type, std::string_view text);

}  // namespace ipodcomm
