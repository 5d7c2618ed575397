// SPDX-License-Identifier: MIT
// Records the lines of a world, for those who ask for it with IPODCOMM_CAPTURE=FILE.
#pragma once

#include <memory>
#include <string>

#include "platform/capture/line_tap.h"
#include "world/clock.h"

namespace ipodcomm::virtual_platform {

/// The recording of one world, which begins the file anew. Its times are those of the world's
/// clock, as if the world had begun in 1970.
class LineRecording {
 public:
  /// Does nothing unless the environment asks for it. Prints why a file cannot be made.
  LineRecording();

  /// What records a line; null when nothing is recorded.
  std::unique_ptr<capture::LineTap> Tap(const std::string& line) const;

 private:
  std::shared_ptr<capture::Recording> recording_;
};

/// As a recording tells it.
capture::Nanoseconds RecordedTime(const Clock& clock);

}  // namespace ipodcomm::virtual_platform
