// SPDX-License-Identifier: MIT
// The Extended Interface's commands about what is playing, and its play-status notifications.

#pragma once

#include "link.h"
#include "player.h"

namespace ipodsim {

class Playback {
 public:
  // Bits of the 32-bit mask of SetPlayStatusChangeNotification, and the type of each notification.
  //   bit 0  0x00  playback stopped
  //   bit 1  0x06  extended play status (stopped 2, fast 5, rewind 6, fast ended 7, playing 10,
  //                paused 11)
  //   bit 2  0x01  track index
  //   bit 3  0x04  position in milliseconds
  //   bit 4  0x07  position in seconds
  // The one-byte form 1 switches on types 0x00, 0x01 and 0x04.
  static constexpr std::uint32_t kStoppedBit = 0x01;
  static constexpr std::uint32_t kStatusBit = 0x02;
  static constexpr std::uint32_t kTrackBit = 0x04;
  static constexpr std::uint32_t kMillisecondsBit = 0x08;
  static constexpr std::uint32_t kSecondsBit = 0x10;

  Playback(Link* link, Player* player, const Settings& settings);

  bool Handle(const Request& request);
  void Forget();

  // A control from any lingo; starts all music when nothing is loaded yet.
  bool Control(PlayControl control);

  // Lets the player run up to `now` and tells what it did.
  void Advance(Microseconds now);
  std::optional<Microseconds> NextEvent() const;
  std::uint32_t notification_mask() const { return mask_; }

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
  void Refuse(const Request& request, MistakeKind kind, const std::string& detail);

  void TellEvents();
  void Tell(const PlayerEvent& event);
  void TellStatus(std::uint8_t status, Microseconds at);
  void TellPosition(Microseconds at);
  bool TellsPosition() const;
  Microseconds PositionPeriod() const;

  Link* link_;
  Player* player_;
  const Settings& settings_;
  const Traits& traits_;
  std::uint32_t mask_ = 0;
  std::optional<Microseconds> next_position_at_;
  std::int64_t last_told_second_ = -1;
  std::uint8_t audiobook_speed_ = 0;
};

// Answers "which track" questions of both remote lingoes: null after refusing the index.
const Track* TrackOrRefusal(Link* link, const Player& player, const Request& request,
                            std::uint32_t index);

}  // namespace ipodsim
