// SPDX-License-Identifier: MIT
// The Extended Interface's commands about what is playing.

#pragma once

#include "notifications.h"
#include "restorable.h"
#include "simulator/player/player.h"
#include "simulator/wire/link.h"

namespace ipodsim {

class Playback {
 public:
  Playback(Link* link, Player* player, Notifications* notifications, const Settings& settings);

  bool Handle(const Request& request);
  /// The accessory is gone: modes are set back where it asked for that.
  void Forget();

  /// A control from any lingo; starts all music when nothing is loaded yet.
  bool Control(PlayControl control);

 private:
  bool HandleStatus(const Request& request);
  bool HandleTexts(const Request& request);
  bool HandleModes(const Request& request);
  void ReturnStatus(const Request& request);
  void ReturnTrackText(const Request& request, const std::string Track::*field);
  void SetNotifications(const Request& request);
  void SetShuffle(const Request& request);
  void SetRepeat(const Request& request);
  void SetAudiobookSpeed(const Request& request);
  bool CheckMode(const Request& request, const char* what, bool known);
  void ControlPlayer(const Request& request);
  bool KnowsPlayAndPause() const;
  void JumpTo(const Request& request);

  Link* link_;
  Player* player_;
  Notifications* notifications_;
  const Settings& settings_;
  const Traits& traits_;
  Restorable<Shuffle> shuffle_;
  Restorable<Repeat> repeat_;
  std::uint8_t audiobook_speed_ = 0;
  Restorable<std::uint8_t> original_speed_;
};

/// Answers "which track" questions of both remote lingoes: null after refusing the index.
const Track* TrackOrRefusal(Link* link, const Player& player, const Request& request,
                            std::uint32_t index);
/// The same for questions of the form type, track, chapter; the chapter is checked too. Chapter 0
/// of a track without chapters is the track itself.
const Track* TrackWithChapterOrRefusal(Link* link, const Player& player, const Request& request);

}  // namespace ipodsim
