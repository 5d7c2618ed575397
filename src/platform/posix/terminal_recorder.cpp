// SPDX-License-Identifier: MIT
// Records an open terminal, for those who ask for it with IPODCOMM_CAPTURE=FILE.
#include "platform/posix/terminal_recorder.h"

#include <linux/serial.h>
#include <sys/ioctl.h>

#include <cstdlib>

#include "platform/capture/process_recording.h"

namespace ipodcomm::platform {
namespace {

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

}  // namespace

std::unique_ptr<PortRecorder> RecorderOfEnvironment(const std::string& device, int line) {
  // What waits is written out when the process ends in order.
  static capture::ProcessRecording process;
  const char* const file = std::getenv(capture::kVariable);
  if (file == nullptr || *file == '\0') return nullptr;
  const auto recording = process.To(file);
  if (recording == nullptr) return nullptr;
  return std::make_unique<PortRecorder>(std::make_unique<capture::LineTap>(recording, device),
                                        std::make_unique<TerminalStatus>(line));
}

}  // namespace ipodcomm::platform
