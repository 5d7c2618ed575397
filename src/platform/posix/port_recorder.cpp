// SPDX-License-Identifier: MIT
// Records an open port, for those who ask for it with IPODCOMM_CAPTURE=FILE.
#include "platform/posix/port_recorder.h"

#include <linux/serial.h>
#include <sys/ioctl.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <utility>

namespace ipodcomm::platform {
namespace {

using capture::Event;

constexpr char kVariable[] = "IPODCOMM_CAPTURE";

class TerminalStatus : public LineStatus {
 public:
  explicit TerminalStatus(int line) : line_(line) {}

  bool GetErrors(LineErrors* errors) override {
    serial_icounter_struct counts = {};
    if (ioctl(line_, TIOCGICOUNT, &counts) != 0) return false;
    errors->framing = static_cast<std::uint32_t>(counts.frame);
    errors->parity = static_cast<std::uint32_t>(counts.parity);
    errors->breaks = static_cast<std::uint32_t>(counts.brk);
    errors->overflows = static_cast<std::uint32_t>(counts.overrun + counts.buf_overrun);
    return true;
  }

  bool GetControlLines(std::uint8_t* lines) override {
    int bits = 0;
    if (ioctl(line_, TIOCMGET, &bits) != 0) return false;
    *lines = 0;
    if ((bits & TIOCM_CTS) != 0) *lines |= capture::kCts;
    if ((bits & TIOCM_CAR) != 0) *lines |= capture::kDcd;
    if ((bits & TIOCM_DSR) != 0) *lines |= capture::kDsr;
    if ((bits & TIOCM_RTS) != 0) *lines |= capture::kRts;
    if ((bits & TIOCM_DTR) != 0) *lines |= capture::kDtr;
    if ((bits & TIOCM_RNG) != 0) *lines |= capture::kRing;
    return true;
  }

 private:
  const int line_;
};

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

// The process's recording: one file takes all that it does on its lines. It is written out when the
// process ends in order.
class ProcessRecording {
 public:
  ~ProcessRecording() {
    if (recording_ != nullptr) recording_->Drain();
  }

  std::shared_ptr<capture::Recording> To(const std::string& file) {
    const std::lock_guard lock(mutex_);
    if (file == file_) return recording_;
    file_ = file;
    std::string error;
    recording_ = capture::Recording::Start(file, &error);
    if (recording_ == nullptr) {
      std::fprintf(stderr, "ipodcomm: nothing is recorded, %s: %s\n", file.c_str(), error.c_str());
    }
    return recording_;
  }

 private:
  std::mutex mutex_;  // guards what follows
  std::string file_;
  std::shared_ptr<capture::Recording> recording_;
};

}  // namespace

std::unique_ptr<LineStatus> StatusOfTerminal(int line) {
  return std::make_unique<TerminalStatus>(line);
}

std::unique_ptr<PortRecorder> RecorderOfEnvironment(const std::string& device, int line) {
  static ProcessRecording process;
  const char* const file = std::getenv(kVariable);
  if (file == nullptr || *file == '\0') return nullptr;
  const auto recording = process.To(file);
  if (recording == nullptr) return nullptr;
  return std::make_unique<PortRecorder>(std::make_unique<capture::LineTap>(recording, device),
                                        StatusOfTerminal(line));
}

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

void PortRecorder::Gone(int error) {
  const std::lock_guard lock(mutex_);
  if (gone_) return;
  gone_ = true;
  tap_->Record(Event::kStatus, capture::WallClock(),
               std::string("the line is gone: ") + (error == 0 ? "hung up" : std::strerror(error)));
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
