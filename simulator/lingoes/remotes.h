// SPDX-License-Identifier: MIT
// The Simple Remote lingo's buttons and the Display Remote lingo's questions about tracks.

#pragma once

#include "playback.h"

namespace ipodsim {

class Remotes {
 public:
  Remotes(Link* link, Player* player, Playback* playback)
      : link_(link), player_(player), playback_(playback) {}

  bool Handle(const Request& request);
  void Forget() { held_ = 0; }

 private:
  bool HandleButtons(const Request& request);
  void Press(std::uint32_t button);
  void Release(std::uint32_t button);

  Link* link_;
  Player* player_;
  Playback* playback_;
  std::uint32_t held_ = 0;
};

}  // namespace ipodsim
