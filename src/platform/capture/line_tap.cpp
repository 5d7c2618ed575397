// SPDX-License-Identifier: MIT
// One line's part of a recording.
#include "platform/capture/line_tap.h"

#include <algorithm>
#include <new>
#include <utility>

namespace ipodcomm::capture {
namespace {

constexpr Nanoseconds kLongSilence = 250'000'000;

Event EventOf(Direction direction) {
  return direction == Direction::kSent ? Event::kSent : Event::kReceived;
}

Packet PacketOf(Event event, Nanoseconds time) {
  Packet packet;
  packet.event = event;
  packet.time = time;
  return packet;
}

}  // namespace

LineTap::LineTap(std::shared_ptr<Recording> recording, std::string name)
    : recording_(std::move(recording)) {
  line_.name = std::move(name);
}

LineTap::~LineTap() {
  const std::lock_guard lock(mutex_);
  if (!statistics_) return;
  LoseWithoutMemory([&] {
    EndInterface();
    Add(PacketOf(Event::kComplete, statistics_->ended));
  });
}

void LineTap::Configure(std::uint32_t baud, const std::string& description, Nanoseconds now) {
  const std::lock_guard lock(mutex_);
  if (statistics_ && line_.baud == baud && line_.description == description) return;
  LoseWithoutMemory([&] {
    if (statistics_) EndInterface();
    line_.baud = baud;
    line_.description = description;
    Statistics statistics;
    statistics.interface_number = recording_->Add(line_);
    statistics.started = now;
    statistics.ended = now;
    statistics_ = statistics;
  });
}

void LineTap::Record(Direction direction, const void* bytes, std::size_t count, Nanoseconds now) {
  const std::lock_guard lock(mutex_);
  LoseWithoutMemory([&] {
    const auto* const first = static_cast<const std::uint8_t*>(bytes);
    const bool is_sent = direction == Direction::kSent;
    EndLongSilence(now, is_sent && sent_.GoesOn(first, count));
    FrameSplitter& splitter = is_sent ? sent_ : received_;
    std::vector<ByteRun> ended;
    std::for_each(first, first + count,
                  [&](std::uint8_t byte) { splitter.Push(byte, now, &ended); });
    AddRuns(direction, ended);
  });
}

void LineTap::Record(Event event, Nanoseconds now, const std::string& comment) {
  const std::lock_guard lock(mutex_);
  LoseWithoutMemory([&] {
    Packet packet = PacketOf(event, now);
    if (!comment.empty()) packet.comments = {comment};
    Add(std::move(packet));
  });
}

void LineTap::set_control_lines(std::uint8_t lines) {
  const std::lock_guard lock(mutex_);
  control_lines_ = lines;
}

// A session goes on when there is no memory for its recording.
template <class Action>
void LineTap::LoseWithoutMemory(const Action& action) {
  try {
    action();
  } catch (const std::bad_alloc&) {
    ++missing_;
  }
}

// The library pauses behind the sync byte of what it sends, and a busy system makes that longer: it
// is one frame all the same.
void LineTap::EndLongSilence(Nanoseconds now, bool sent_goes_on) {
  if (now - received_.last_byte_at() > kLongSilence) EndRun(Direction::kReceived);
  if (now - sent_.last_byte_at() > kLongSilence && !sent_goes_on) EndRun(Direction::kSent);
}

void LineTap::EndRun(Direction direction) {
  std::vector<ByteRun> ended;
  (direction == Direction::kSent ? sent_ : received_).Flush(&ended);
  AddRuns(direction, ended);
}

void LineTap::AddRuns(Direction direction, const std::vector<ByteRun>& runs) {
  for (const ByteRun& run : runs) {
    Packet packet = PacketOf(EventOf(direction), run.time);
    packet.direction = direction;
    packet.bad_checksum = run.bad_checksum;
    packet.bytes = run.bytes;
    if (!run.is_frame) packet.comments = {"no frame"};
    Add(std::move(packet));
  }
}

void LineTap::Add(Packet packet) {
  if (!statistics_) return;
  packet.interface_number = statistics_->interface_number;
  packet.control_lines = control_lines_;
  statistics_->ended = std::max(statistics_->ended, packet.time);
  if (AddLoss(packet) && recording_->Add(packet)) {
    ++statistics_->recorded;
  } else {
    ++missing_;
    ++statistics_->lost;
  }
}

// What is missing is told before the next packet. False when there is no room for that either.
bool LineTap::AddLoss(const Packet& next) {
  if (missing_ == 0) return true;
  Packet loss = PacketOf(Event::kLost, next.time);
  loss.interface_number = next.interface_number;
  loss.comments = {"missing here: " + std::to_string(missing_) + " packets"};
  if (!recording_->Add(loss)) return false;
  missing_ = 0;
  return true;
}

void LineTap::EndInterface() {
  EndRun(Direction::kReceived);
  EndRun(Direction::kSent);
  recording_->Add(*statistics_);
}

}  // namespace ipodcomm::capture
