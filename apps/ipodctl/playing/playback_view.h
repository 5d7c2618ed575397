// SPDX-License-Identifier: MIT
// Shows playback as it goes: a moving bar on a terminal, else a line now and then.
#pragma once

#include "console/output.h"
#include "console/progress.h"
#include "playing/now.h"

namespace ipodctl {

class PlaybackView {
 public:
  /// @param plain_every_s without a terminal, positions at least so far apart get a line
  PlaybackView(Output& output, unsigned plain_every_s)
      : output_(output), plain_every_s_(plain_every_s) {}

  /// Shows an event of a Follower.
  void Show(const char* event, const NowPlaying& now);

 private:
  void ShowPosition(const NowPlaying& now);

  Output& output_;
  unsigned plain_every_s_;
  std::uint64_t plain_position_s_ = 0;
  StatusLine line_;
};

}  // namespace ipodctl
