// SPDX-License-Identifier: MIT
// Frames as the iPod writes and reads them.
//
//   short   FF 55 length lingo command data... checksum
//   large   FF 55 00 length-high length-low lingo command data... checksum
//
// The length counts the lingo byte through the last data byte. The command is one byte, in the
// Extended Interface lingo (4) two. All bytes from the length through the checksum sum to 0
// modulo 256.

#pragma once

#include <functional>
#include <string>

#include "simulator/base/bytes.h"
#include "simulator/base/clock.h"

namespace ipodsim {

struct Frame {
  std::uint8_t lingo = 0;
  std::uint16_t command = 0;
  Bytes data;  // what follows the command, a transaction identifier included
};

/// The large form is used for content that does not fit the short one, or when asked for.
Bytes BuildFrame(const Frame& frame, bool large = false);

/// Reads back a whole frame as it lies on the wire; false when it is not one.
bool ParseFrame(const Bytes& wire, Frame* frame);

enum class FramingProblem { kBadChecksum, kTruncated, kStrayBytes, kNoCommand };

/// Finds frames in a stream of bytes. A lone 0xFF between frames is a wake-up byte and normal, and
/// so is any number of them before a frame. A frame whose bytes stop coming is given up after
/// kLongestGap, counted from its start byte on: the sync byte may come long before the rest.
class FrameReader {
 public:
  static constexpr Microseconds kLongestGap = 500 * kMillisecond;

  std::function<void(const Frame& frame, const Bytes& wire)> on_frame;
  std::function<void(FramingProblem problem, const std::string& detail)> on_problem;

  void Feed(std::uint8_t byte, Microseconds now);
  /// Reports a frame that was begun and never ended.
  void Finish();
  void Reset();

 private:
  void FeedOutside(std::uint8_t byte);
  void FeedInside(std::uint8_t byte);
  void Complete();
  std::size_t ExpectedSize() const;

  Bytes wire_;
  Microseconds last_byte_at_ = 0;
  bool reported_stray_ = false;
};

}  // namespace ipodsim
