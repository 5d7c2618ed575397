// SPDX-License-Identifier: MIT
// What the exported classes are made of; hosts have no use for it.
#pragma once

#include <cstdint>

#include "ipodcomm/IpodTypes.h"

namespace ipodcomm {

/// Finds frames in the received bytes. Never blocks, allocates or logs.
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
    buffer_[index_++] = byte;
    return index_ == stop_ && Step(byte);
  }

  /// Takes bytes from `*next` on, up to `end` or to the one that completes a frame or gives one up,
  /// and leaves `*next` behind it. True when it completed a frame, as above.
  bool FeedRun(const std::uint8_t** next, const std::uint8_t* end);

  /// Whether a frame's beginning has come and its end has not.
  bool begun() const { return state_ >= State::kLength; }
  /// Takes the frame that has begun for none, and hunts for the next. False.
  bool GiveUp();
  /// Bytes of the frame that the last byte or GiveUp gave up, from data()[0] on; 0 when none was.
  /// Another frame may be among them, if a damaged byte made this one or made it longer.
  std::uint32_t given_up() const { return given_up_; }

  const std::uint8_t* data() const { return buffer_; }
  /// Bytes of a frame that has begun, else of the one that was completed last.
  std::uint32_t length() const { return index_ != 0 ? index_ : complete_length_; }
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
  };
  static constexpr std::uint8_t kSyncByte = 0xFF;
  static constexpr std::uint8_t kStartByte = 0x55;
  /// A frame that reaches this size before its checksum arrives is dropped.
  static constexpr std::uint32_t kSizeLimit = 1023;

  bool Step(std::uint8_t byte);
  bool Await(State state, std::uint32_t bytes);
  bool AwaitBody(std::uint32_t length);
  bool StartOver();
  bool TakeChecksum();
  bool HoldsWholeFrame(const std::uint8_t* next, const std::uint8_t* end) const;
  bool TakeWholeFrame(const std::uint8_t* frame, std::uint32_t size);

  std::uint8_t buffer_[1024] = {};
  std::uint32_t index_ = 0;         // where the next byte goes
  std::uint32_t stop_ = 1;          // the index at which the state's last byte is there
  std::uint32_t length_index_ = 0;  // where the length byte is; the checksum covers it onward
  std::uint32_t complete_length_ = 0;
  std::uint32_t given_up_ = 0;
  State state_ = State::kHuntSync;
  tagIPOD_PACKET_TYPE type_ = IPOD_PACKET_TYPE_LARGE;
};

// What follows is here so that a caller's loop over bytes keeps the place in the frame in
// registers.

// The next `bytes` bytes belong to `state`.
inline bool FrameAssembler::Await(State state, std::uint32_t bytes) {
  state_ = state;
  stop_ = index_ + bytes;
  return false;
}

inline bool FrameAssembler::StartOver() {
  index_ = 0;
  return Await(State::kHuntSync, 1);
}

inline bool FrameAssembler::GiveUp() {
  given_up_ = index_;
  return StartOver();
}

// A large frame of length 0 has no end of its own: it goes on up to the size limit, as one that
// is too long does.
inline bool FrameAssembler::AwaitBody(std::uint32_t length) {
  const std::uint32_t room = kSizeLimit - index_;
  return Await(State::kBody, length != 0 && length < room ? length : room);
}

// The bytes from the length byte through the checksum sum to 0, or the frame is given up without
// any report.
inline bool FrameAssembler::TakeChecksum() {
  std::uint8_t sum = 0;
  for (std::uint32_t i = length_index_; i < index_; ++i) {
    sum = static_cast<std::uint8_t>(sum + buffer_[i]);
  }
  if (sum != 0) return GiveUp();
  complete_length_ = index_;
  StartOver();
  return true;
}

// `byte` is the last one of its state.
inline bool FrameAssembler::Step(std::uint8_t byte) {
  given_up_ = 0;
  switch (state_) {
    case State::kHuntSync:
      return byte == kSyncByte ? Await(State::kStart, 1) : StartOver();
    case State::kStart:
      // Another byte than 55 empties the buffer but leaves the state: a 55 that follows is then
      // stored at position 0, and the frame is queued without its sync byte, one byte shorter.
      // A frame that follows a lone FF gets through only so, and hosts in the field rely on it.
      if (byte != kStartByte) {
        index_ = 0;
        return Await(State::kStart, 1);
      }
      length_index_ = index_;
      return Await(State::kLength, 1);
    case State::kLength:
      type_ = byte != 0 ? IPOD_PACKET_TYPE_SMALL : IPOD_PACKET_TYPE_LARGE;
      return byte != 0 ? AwaitBody(byte) : Await(State::kLengthHigh, 1);
    case State::kLengthHigh:
      return Await(State::kLengthLow, 1);
    case State::kLengthLow:
      return AwaitBody(buffer_[index_ - 2] * 256U + byte);
    case State::kBody:
      return index_ == kSizeLimit ? GiveUp() : Await(State::kChecksum, 1);
    case State::kChecksum:
      return TakeChecksum();
  }
  return false;
}

}  // namespace ipodcomm
