// SPDX-License-Identifier: MIT
// Lets the player run and sends play-status notifications.

#include "notifications.h"

#include <algorithm>

namespace ipodsim {
namespace {

constexpr std::uint16_t kNotification = extended::kPlayStatusChangeNotification;

// The first byte of a notification.
enum Type : std::uint8_t {
  kStopped = 0x00,
  kTrackIndex = 0x01,
  kMilliseconds = 0x04,
  kStatus = 0x06,
  kSeconds = 0x07,
};

// The second byte of one about the status.
enum Status : std::uint8_t {
  kStatusStopped = 0x02,
  kStatusFastForward = 0x05,
  kStatusRewind = 0x06,
  kStatusFastEnded = 0x07,
  kStatusPlaying = 0x0A,
  kStatusPaused = 0x0B,
};

}  // namespace

void Notifications::SetMask(std::uint32_t mask) {
  mask_ = mask;
  next_position_at_.reset();
  last_told_second_ = -1;
}

// A period of nothing would hold the clock still.
Microseconds Notifications::PositionPeriod() const {
  return std::max(settings_.position_period, kMillisecond);
}

bool Notifications::TellsPosition() const {
  const PlayerState state = player_->state();
  const bool moves = state == PlayerState::kPlaying || state == PlayerState::kFastForward ||
                     state == PlayerState::kFastRewind;
  return moves && (mask_ & (kMillisecondsBit | kSecondsBit)) != 0;
}

// In steps, so that what happens in between is told at its own time and in its own order.
void Notifications::Advance(Microseconds now) {
  TellEvents();
  while (true) {
    if (!TellsPosition()) {
      next_position_at_.reset();
    } else if (!next_position_at_) {
      next_position_at_ = link_->now() + PositionPeriod();
    }
    const auto change = player_->NextChange();
    Microseconds step = now;
    if (change) step = std::min(step, *change);
    if (next_position_at_) step = std::min(step, *next_position_at_);
    link_->SetNow(std::max(step, link_->now()));
    player_->Advance(step);
    TellEvents();
    if (HasCome(next_position_at_, step)) {
      if (TellsPosition()) TellPosition(step);
      next_position_at_ = step + PositionPeriod();
    }
    if (step == now) return;
  }
}

std::optional<Microseconds> Notifications::NextEvent() const {
  if (mask_ == 0) return std::nullopt;
  const auto change = player_->NextChange();
  if (!change || !next_position_at_) return change ? change : next_position_at_;
  return std::min(*change, *next_position_at_);
}

void Notifications::TellEvents() {
  for (const PlayerEvent& event : player_->PopEvents()) Tell(event);
}

void Notifications::Tell(const PlayerEvent& event) {
  using Kind = PlayerEvent::Kind;
  switch (event.kind) {
    case Kind::kStopped:
      if ((mask_ & kStoppedBit) != 0) link_->Send(kExtended, kNotification, {kStopped}, event.at);
      TellStatus(kStatusStopped, event.at);
      break;
    case Kind::kPlaying:
      TellStatus(kStatusPlaying, event.at);
      break;
    case Kind::kPaused:
      TellStatus(kStatusPaused, event.at);
      break;
    case Kind::kFastForward:
      TellStatus(kStatusFastForward, event.at);
      break;
    case Kind::kRewind:
      TellStatus(kStatusRewind, event.at);
      break;
    case Kind::kEndedFast:
      TellStatus(kStatusFastEnded, event.at);
      break;
    case Kind::kTrackChanged:
      TellTrack(event.at);
      break;
  }
}

void Notifications::TellStatus(std::uint8_t status, Microseconds at) {
  if ((mask_ & kStatusBit) != 0) link_->Send(kExtended, kNotification, {kStatus, status}, at);
}

void Notifications::TellTrack(Microseconds at) {
  last_told_second_ = -1;
  if ((mask_ & kTrackBit) == 0) return;
  Bytes data = {kTrackIndex};
  Put32(data, player_->index());
  link_->Send(kExtended, kNotification, data, at);
}

void Notifications::TellPosition(Microseconds at) {
  const std::int64_t position_ms = player_->position_ms(at);
  if ((mask_ & kMillisecondsBit) != 0) {
    Bytes data = {kMilliseconds};
    Put32(data, static_cast<std::uint32_t>(position_ms));
    link_->Send(kExtended, kNotification, data, at);
  }
  const std::int64_t second = position_ms / 1000;
  if ((mask_ & kSecondsBit) != 0 && second != last_told_second_) {
    last_told_second_ = second;
    Bytes data = {kSeconds};
    Put32(data, static_cast<std::uint32_t>(second));
    link_->Send(kExtended, kNotification, data, at);
  }
}

}  // namespace ipodsim
