// SPDX-License-Identifier: MIT
// The play-status notifications, and the player's clock with them.

#pragma once

#include "simulator/player/player.h"
#include "simulator/wire/link.h"

namespace ipodsim {

class Notifications {
 public:
  /// Bits of the 32-bit mask of SetPlayStatusChangeNotification.
  static constexpr std::uint32_t kStoppedBit = 0x01;
  static constexpr std::uint32_t kStatusBit = 0x02;
  static constexpr std::uint32_t kTrackBit = 0x04;
  static constexpr std::uint32_t kMillisecondsBit = 0x08;
  static constexpr std::uint32_t kSecondsBit = 0x10;
  static constexpr std::uint32_t kAllBits =
      kStoppedBit | kStatusBit | kTrackBit | kMillisecondsBit | kSecondsBit;
  /// What the one-byte form of the command switches on.
  static constexpr std::uint32_t kBasicBits = kStoppedBit | kTrackBit | kMillisecondsBit;

  Notifications(Link* link, Player* player, const Settings& settings)
      : link_(link), player_(player), settings_(settings) {}

  void SetMask(std::uint32_t mask);
  std::uint32_t mask() const { return mask_; }

  /// Lets the player run up to `now` and tells what it did, each thing at its own time.
  void Advance(Microseconds now);
  std::optional<Microseconds> NextEvent() const;

 private:
  void TellEvents();
  void Tell(const PlayerEvent& event);
  void TellStatus(std::uint8_t status, Microseconds at);
  void TellTrack(Microseconds at);
  void TellPosition(Microseconds at);
  bool TellsPosition() const;
  Microseconds PositionPeriod() const;

  Link* link_;
  Player* player_;
  const Settings& settings_;
  std::uint32_t mask_ = 0;
  std::optional<Microseconds> next_position_at_;
  std::int64_t last_told_second_ = -1;
};

}  // namespace ipodsim
