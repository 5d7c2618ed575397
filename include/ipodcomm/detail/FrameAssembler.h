// SPDX-License-Identifier: MIT
// What the exported classes are made of; hosts have no use for it.
#pragma once

#include <cstdint>

#include "ipodcomm/IpodTypes.h"

namespace ipodcomm {

/// Finds frames in the received bytes, one byte at a time. Never blocks, allocates or logs.
///
///   FF 55 LL          lingo command data...  checksum       short form, LL 1..255
///   FF 55 00 HH LL    lingo command data...  checksum       large form
///
///                 FF          55           LL          last body byte
///   kHuntSync ---------> kStart -----> kLength -----> kBody -----> kChecksum
///                         ^  |            | 00          ^
///                         +--+            v             |
///                      other byte    kLengthHigh -> kLengthLow
class FrameAssembler {
 public:
  /// Back to hunting for a sync byte, with a zeroed buffer.
  void Reset();

  /// Takes one byte. True when it completed a frame whose checksum holds; the frame is then in
  /// data()[0] to data()[length() - 1] until the next byte is fed.
  bool Feed(std::uint8_t byte) {
    if (state_ != State::kBody) return Step(byte);
    buffer_[index_++] = byte;
    if (index_ == body_end_) EndBody();
    return false;
  }

  /// Whether a frame's beginning has come and its end has not.
  bool begun() const { return state_ >= State::kLength && state_ <= State::kChecksum; }
  /// Takes the frame that has begun for none, and hunts for the next.
  void GiveUp();
  /// Bytes of the frame that the last byte or GiveUp gave up, from data()[0] on; 0 when none was.
  /// Another frame may be among them, if a damaged byte made this one or made it longer.
  std::uint32_t given_up() const { return given_up_; }

  const std::uint8_t* data() const { return buffer_; }
  std::uint32_t length() const { return index_; }
  /// Header form of the frame whose length byte came last.
  tagIPOD_PACKET_TYPE type() const { return type_; }

 private:
  enum class State : std::uint8_t {
    kHuntSync,
    kStart,
    kLength,
    kLengthHigh,
    kLengthLow,
    kBody,
    kChecksum,
    kComplete,
  };
  /// A frame that reaches this size before its checksum arrives is dropped.
  static constexpr std::uint32_t kSizeLimit = 1023;

  bool Step(std::uint8_t byte);
  void StartOver();
  void BeginBody(std::uint32_t length);
  void EndBody();
  bool ChecksumHolds() const;

  std::uint8_t buffer_[1024] = {};
  std::uint32_t index_ = 0;         // where the next byte goes
  std::uint32_t length_index_ = 0;  // where the length byte is; the checksum covers it onward
  std::uint32_t body_end_ = 0;      // where the checksum goes, or the size limit
  std::uint32_t given_up_ = 0;
  State state_ = State::kHuntSync;
  tagIPOD_PACKET_TYPE type_ = IPOD_PACKET_TYPE_LARGE;
};

}  // namespace ipodcomm
