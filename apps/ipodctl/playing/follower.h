// SPDX-License-Identifier: MIT
// Follows the player by the iPod's notifications.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "ipod/session.h"
#include "playing/now.h"

namespace ipodctl {

class Follower {
 public:
  /// What a change is about; "start" is the state before any change.
  using Show = std::function<void(const char* event, const NowPlaying& now)>;

  Follower(Session& session, Show show);

  /// Shows what is playing, then every change, until the time is over or Ctrl-C.
  /// @param duration_ms none: until Ctrl-C
  void Run(std::optional<unsigned> duration_ms);

 private:
  void Look();
  void ApplyChanges(const tagIPOD_PLAY_STATUS& status);
  void Ask();
  void ShowChange(const NowPlaying& before);

  Session& session_;
  Show show_;
  NowPlaying now_;
  tagIPOD_PLAY_STATUS last_ = {};
  unsigned quiet_looks_ = 0;  // since the last notification or request
};

}  // namespace ipodctl
