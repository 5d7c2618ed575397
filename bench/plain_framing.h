// SPDX-License-Identifier: MIT
// The yardstick of the frame assembler: the same framing as anybody would write it in C.
#pragma once

#include <stdint.h>

namespace bench {

/// A state per field, and a running checksum. Written for these figures: it is straightforward, and
/// neither tuned nor part of the library.
struct PlainFraming {
  int state = 0;
  unsigned length = 0;
  unsigned count = 0;
  uint8_t sum = 0;
  uint8_t frame[1024] = {};
};

/// 1 when `byte` completes a frame whose checksum holds; its body is then in `frame`.
int PlainFramingFeed(PlainFraming* framing, uint8_t byte);

}  // namespace bench
