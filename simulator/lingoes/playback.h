// SPDX-License-Identifier: MIT
// The Extended Interface's commands about what is playing.

#pragma once

#include "notifications.h"
#include "simulator/player/player.h"
#include "simulator/wire/link.h"

namespace ipodsim {

class Playback {
 public:
  Playback(Link* link, Player* player, Notifications* notifications, const Settings& settings);

  bool Handle(const Request& request);

  // A control from any lingo; starts all music when nothing is loaded yet.
  bool Control(PlayControl control);

 private:
  bool HandleStatus(const Request& request);
  bool HandleTexts(const Request& request);
  bool HandleModes(const Request& request);
  void ReturnStatus(const Request& request);
  void ReturnTrackText(const Request& request, const std::string Track::*field);
  void ReturnTrackInfo(const Request& request);
  void SetNotifications(const Request& request);
  void SetShuffle(const Request& request);
  void SetRepeat(const Request& request);
  void JumpTo(const Request& request);

  Link* link_;
  Player* player_;
  Notifications* notifications_;
  const Settings& settings_;
  const Traits& traits_;
  std::uint8_t audiobook_speed_ = 0;
};

// Answers "which track" questions of both remote lingoes: null after refusing the index.
const Track* TrackOrRefusal(Link* link, const Player& player, const Request& request,
                            std::uint32_t index);

}  // namespace ipodsim
