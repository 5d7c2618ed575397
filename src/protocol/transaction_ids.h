// SPDX-License-Identifier: MIT
// Transaction identifiers: two bytes, most significant first, between a frame's command and its
// data. Frames carry them from the moment when the iPod has accepted identification by tokens.
#pragma once

#include <cstdint>

#include "ipodcomm/detail/SentIds.h"
#include "protocol/frame.h"

namespace ipodcomm {

constexpr std::uint32_t kTransactionIdSize = 2;

/// Whether a command carries an identifier while they are on. Three General commands never do; the
/// same numbers in other lingoes do.
bool MayCarryTransactionId(std::uint8_t lingo, std::uint16_t command);

/// The identifier of the iPod's request: bytes 5 and 6, whatever the frame's form.
std::uint16_t RequestTransactionId(const FrameBytes& frame);

/// The accessory's next identifier once the iPod has sent a request under `requested`.
std::uint16_t OwnIdAfterRequest(std::uint16_t own, std::uint16_t requested);

/// Whether the data begin with the identifier of the frame sent last, where `own` is the next one.
bool EchoesLastFrame(const ReceivedFrame& frame, std::uint16_t own);

/// Skips the identifier at the front of the data, or as much of it as there is.
void SkipTransactionId(ReceivedFrame* frame);

/// Skips the identifier at the front of the data when it is one of `sent`. @return whether it is.
bool SkipIdOf(const SentIds& sent, ReceivedFrame* frame);

}  // namespace ipodcomm
