// SPDX-License-Identifier: MIT
// What both remote lingoes tell about a track, laid out as it travels.

#pragma once

#include "simulator/base/bytes.h"
#include "simulator/media/library.h"

namespace ipodsim {

/// Capability bits (4 bytes), length in milliseconds (4), number of chapters (2).
void PutCapabilities(Bytes& bytes, const Track& track);
/// Packet flags (1 byte) and number (2), which say that this is the only packet, and the text.
void PutLyrics(Bytes& bytes, const Track& track);

}  // namespace ipodsim
