// SPDX-License-Identifier: MIT
// Builds frames, and finds them in a stream of bytes.

#include "frame.h"

#include "simulator/protocol/commands.h"

namespace ipodsim {
namespace {

constexpr std::uint8_t kSync = 0xFF;
constexpr std::uint8_t kStart = 0x55;
constexpr std::size_t kLongestShortContent = 255;

std::uint8_t SumFrom(const Bytes& wire, std::size_t begin) {
  std::uint32_t sum = 0;
  for (std::size_t i = begin; i < wire.size(); ++i) sum += wire[i];
  return static_cast<std::uint8_t>(sum & 0xFF);
}

// A sender that leaves out the last two bytes lets the receiver take the next frame's first two for
// them. The rest of that frame is then lost with it.
bool SwallowedABeginning(const Bytes& wire) {
  return wire[wire.size() - 2] == kSync && wire[wire.size() - 1] == kStart;
}

std::size_t ContentStart(const Bytes& wire) { return wire[2] == 0 ? 5 : 3; }

}  // namespace

Bytes BuildFrame(const Frame& frame, bool large) {
  Bytes content;
  Put8(content, frame.lingo);
  if (frame.lingo == kExtended) Put8(content, frame.command >> 8);
  Put8(content, frame.command);
  content.insert(content.end(), frame.data.begin(), frame.data.end());

  Bytes wire = {kSync, kStart};
  const auto size = static_cast<std::uint32_t>(content.size());
  if (large || size > kLongestShortContent) {
    Put8(wire, 0);
    Put16(wire, size);
  } else {
    Put8(wire, size);
  }
  wire.insert(wire.end(), content.begin(), content.end());
  wire.push_back(static_cast<std::uint8_t>((0x100 - SumFrom(wire, 2)) & 0xFF));
  return wire;
}

bool ParseFrame(const Bytes& wire, Frame* frame) {
  if (wire.size() < 6 || wire[0] != kSync || wire[1] != kStart) return false;
  std::size_t at = ContentStart(wire);
  const std::size_t end = wire.size() - 1;
  if (at >= end) return false;
  frame->lingo = wire[at++];
  const std::size_t command_size = frame->lingo == kExtended ? 2 : 1;
  if (at + command_size > end) return false;
  frame->command = command_size == 2 ? Get16(wire, at) : wire[at];
  at += command_size;
  frame->data.assign(wire.begin() + static_cast<std::ptrdiff_t>(at),
                     wire.begin() + static_cast<std::ptrdiff_t>(end));
  return true;
}

void FrameReader::Feed(std::uint8_t byte, Microseconds now) {
  if (wire_.size() >= 2 && now - last_byte_at_ > kLongestGap) Finish();
  last_byte_at_ = now;
  if (wire_.size() < 2) {
    FeedOutside(byte);
  } else {
    FeedInside(byte);
  }
}

void FrameReader::Finish() {
  if (wire_.size() >= 2) {
    on_problem(FramingProblem::kTruncated,
               "a frame ended after " + std::to_string(wire_.size()) + " bytes");
  }
  Reset();
}

void FrameReader::Reset() {
  wire_.clear();
  reported_stray_ = false;
}

void FrameReader::FeedOutside(std::uint8_t byte) {
  if (byte == kSync) {
    wire_ = {kSync};
    return;
  }
  if (!wire_.empty() && byte == kStart) {
    wire_.push_back(byte);
    reported_stray_ = false;
    return;
  }
  wire_.clear();
  if (reported_stray_) return;
  reported_stray_ = true;
  on_problem(FramingProblem::kStrayBytes,
             "byte " + std::to_string(byte) + " and maybe more outside any frame");
}

void FrameReader::FeedInside(std::uint8_t byte) {
  wire_.push_back(byte);
  const std::size_t expected = ExpectedSize();
  if (expected != 0 && wire_.size() == expected) Complete();
}

std::size_t FrameReader::ExpectedSize() const {
  if (wire_[2] != 0) return std::size_t{4} + wire_[2];
  if (wire_.size() < 5) return 0;
  return std::size_t{6} + Get16(wire_, 3);
}

void FrameReader::Complete() {
  Bytes wire;
  wire.swap(wire_);
  Frame frame;
  if (SumFrom(wire, 2) != 0) {
    on_problem(FramingProblem::kBadChecksum,
               "the sum of a frame of " + std::to_string(wire.size()) + " bytes is not 0" +
                   (SwallowedABeginning(wire) ? "; its last two begin another frame" : ""));
  } else if (!ParseFrame(wire, &frame)) {
    on_problem(FramingProblem::kNoCommand, "a frame too short to hold a command");
  } else {
    on_frame(frame, wire);
  }
}

}  // namespace ipodsim
