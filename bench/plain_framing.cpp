// SPDX-License-Identifier: MIT
#include "plain_framing.h"

namespace {
enum { kSync, kStart, kLength, kLengthHigh, kLengthLow, kBody, kChecksum };
}  // namespace

int bench::PlainFramingFeed(PlainFraming* framing, uint8_t byte) {
  switch (framing->state) {
    case kSync:
      if (byte == 0xFF) framing->state = kStart;
      break;
    case kStart:
      framing->state = byte == 0x55 ? kLength : kSync;
      break;
    case kLength:
      framing->sum = byte;
      framing->count = 0;
      framing->length = byte;
      framing->state = byte != 0 ? kBody : kLengthHigh;
      break;
    case kLengthHigh:
      framing->sum = static_cast<uint8_t>(framing->sum + byte);
      framing->length = byte * 256U;
      framing->state = kLengthLow;
      break;
    case kLengthLow:
      framing->sum = static_cast<uint8_t>(framing->sum + byte);
      framing->length += byte;
      framing->state =
          framing->length != 0 && framing->length <= sizeof framing->frame ? kBody : kSync;
      break;
    case kBody:
      framing->sum = static_cast<uint8_t>(framing->sum + byte);
      framing->frame[framing->count++] = byte;
      if (framing->count == framing->length) framing->state = kChecksum;
      break;
    case kChecksum:
      framing->state = kSync;
      return static_cast<uint8_t>(framing->sum + byte) == 0;
    default:
      break;
  }
  return 0;
}
