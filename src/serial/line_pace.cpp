// SPDX-License-Identifier: MIT
// The pauses on the line.
#include <algorithm>

#include "ipodcomm/detail/LinePace.h"

namespace ipodcomm {

void LinePace::Choose(const tagIPOD_CONDUCT& conduct) {
  sync_pause_ms_ = conduct.sync_pause_ms;
  read_pause_ms_ = conduct.read_pause_ms;
  empty_read_pause_ms_ = conduct.empty_read_pause_ms;
  failed_read_pause_ms_ = conduct.failed_read_pause_ms;
  quiet_read_pause_ms_ = conduct.quiet_read_pause_ms;
  bytes_per_read_ = conduct.bytes_per_read;
  sync_pause_until_answered_ = conduct.sync_pause_until_answered;
  rereads_damaged_ = conduct.robust;
}

void LinePace::PortOpened() {
  answered_ = 0;
  quiet_ms_ = 0;
}

std::uint32_t LinePace::sync_pause_ms() const {
  if (sync_pause_until_answered_ != 0 && answered_ != 0) return 0;
  return sync_pause_ms_;
}

std::uint32_t LinePace::PauseAfterBytes() {
  quiet_ms_ = 0;
  return read_pause_ms_;
}

// The longer the line has been quiet, the later a byte may be noticed: up to an eighth of the
// quiet.
std::uint32_t LinePace::PauseAfterNothing() {
  constexpr std::uint32_t kQuietPerPause = 8;
  const std::uint32_t shortest = empty_read_pause_ms_;
  const std::uint32_t longest = std::max<std::uint32_t>(shortest, quiet_read_pause_ms_);
  const std::uint32_t quiet = quiet_ms_;
  const std::uint32_t pause = std::clamp(quiet / kQuietPerPause, shortest, longest);
  if (pause < longest) quiet_ms_ = quiet + pause;
  return pause;
}

}  // namespace ipodcomm
