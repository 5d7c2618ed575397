// SPDX-License-Identifier: MIT
#include "world/line/line_recording.h"

#include <cstdio>
#include <cstdlib>

namespace ipodcomm::virtual_platform {

LineRecording::LineRecording() {
  const char* const file = std::getenv("IPODCOMM_CAPTURE");
  if (file == nullptr || *file == '\0') return;
  std::string error;
  recording_ = capture::Recording::Start(file, &error);
  if (recording_ != nullptr) return;
  std::fprintf(stderr, "ipodcomm: nothing is recorded, %s: %s\n", file, error.c_str());
}

std::unique_ptr<capture::LineTap> LineRecording::Tap(const std::string& line) const {
  if (recording_ == nullptr) return nullptr;
  return std::make_unique<capture::LineTap>(recording_, line);
}

capture::Nanoseconds RecordedTime(const Clock& clock) { return clock.now_us() * 1000; }

}  // namespace ipodcomm::virtual_platform
