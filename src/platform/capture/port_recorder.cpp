// SPDX-License-Identifier: MIT
// Records an open port.
#include "platform/capture/port_recorder.h"

#include <utility>

namespace ipodcomm::platform {
namespace {

using capture::Event;

const char* ParityName(std::uint8_t parity) {
  constexpr const char* kNames[] = {"no", "odd", "even"};
  return parity < 3 ? kNames[parity] : "other";
}

const char* StopBitsName(std::uint8_t code) {
  constexpr const char* kCounts[] = {"1", "1.5", "2"};
  return code < 3 ? kCounts[code] : "other";
}

std::string Describe(const DCB& settings) {
  return std::to_string(settings.BaudRate) + " baud, " + std::to_string(settings.ByteSize) +
         " data bits, " + ParityName(settings.Parity) + " parity, " +
         StopBitsName(settings.StopBits) + " stop bits";
}

}  // namespace

PortRecorder::PortRecorder(std::unique_ptr<capture::LineTap> tap,
                           std::unique_ptr<LineStatus> status)
    : tap_(std::move(tap)),
      status_(std::move(status)),
      tells_errors_(status_->GetErrors(&errors_)) {}

void PortRecorder::Configured(const DCB& settings) {
  tap_->Configure(settings.BaudRate, Describe(settings), capture::WallClock());
}

void PortRecorder::Received(const void* bytes, std::size_t count) {
  RecordStatus();
  tap_->Record(capture::Direction::kReceived, bytes, count, capture::WallClock());
}

void PortRecorder::Sent(const void* bytes, std::size_t count, capture::Nanoseconds began) {
  tap_->Record(capture::Direction::kSent, bytes, count, began);
}

void PortRecorder::Gone(const std::string& reason) {
  const std::lock_guard lock(mutex_);
  if (gone_) return;
  gone_ = true;
  tap_->Record(Event::kStatus, capture::WallClock(), "the line is gone: " + reason);
}

// A driver that does not tell once is not asked again.
void PortRecorder::RecordStatus() {
  const std::lock_guard lock(mutex_);
  std::uint8_t lines = 0;
  tells_control_lines_ = tells_control_lines_ && status_->GetControlLines(&lines);
  if (tells_control_lines_) tap_->set_control_lines(lines);
  const LineErrors before = errors_;
  tells_errors_ = tells_errors_ && status_->GetErrors(&errors_);
  if (errors_.framing != before.framing) tap_->Record(Event::kFraming, capture::WallClock());
  if (errors_.parity != before.parity) tap_->Record(Event::kParity, capture::WallClock());
  if (errors_.breaks != before.breaks) tap_->Record(Event::kBreak, capture::WallClock());
  if (errors_.overflows != before.overflows) tap_->Record(Event::kOverflow, capture::WallClock());
}

}  // namespace ipodcomm::platform
