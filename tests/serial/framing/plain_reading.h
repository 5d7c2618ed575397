// SPDX-License-Identifier: MIT
// What the bytes of a line hold, read by place and all at once: no states, no counters. It is what
// the assembler and the hunt of the legacy interface are held against.
#pragma once

#include <cstddef>
#include <vector>

#include "support/bytes.h"

namespace test {

struct Reading {
  std::vector<Bytes> frames;
  /// Where the frame ends that the bytes end inside of; else how many bytes there are.
  std::size_t end = 0;

  bool operator==(const Reading& other) const { return frames == other.frames && end == other.end; }
};

/// A frame whose checksum does not hold, or that is longer than 1023 bytes, takes all that it
/// declares with it.
Reading ReadPlainly(const Bytes& line);

/// Nothing is taken with a frame that is none, nor with one that the line falls silent in: the
/// reading goes on at its second byte. A frame that begins without its sync byte gets it back.
Reading ReadAgain(const Bytes& line);

/// As ipodserial reads, frame after frame: no checksum counts, and none is too long.
Reading ReadAsLegacy(const Bytes& line);

}  // namespace test
