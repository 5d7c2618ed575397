// SPDX-License-Identifier: MIT
// Plays a list of tracks against the clock that it is handed.

#include "player.h"

#include <algorithm>
#include <map>

namespace ipodsim {

Player::Player(const Library* library, std::uint64_t seed) : library_(library), random_(seed, 2) {}

const Track* Player::at(std::uint32_t index) const {
  return index < list_.size() ? &library_->tracks[list_[index]] : nullptr;
}

void Player::Start(std::vector<std::size_t> tracks, std::size_t index, Microseconds now) {
  original_ = std::move(tracks);
  list_ = original_;
  index_ = index;
  Arrange();
  MoveTo(index_, now);
  SetState(PlayerState::kPlaying, PlayerEvent::Kind::kPlaying, now);
}

void Player::Jump(std::uint32_t index, Microseconds now) {
  MoveTo(index, now);
  SetState(PlayerState::kPlaying, PlayerEvent::Kind::kPlaying, now);
}

bool Player::Control(PlayControl control, Microseconds now) {
  Advance(now);
  if (control == PlayControl::kStop) {
    Stop(now);
    return true;
  }
  if (list_.empty()) return Resume(control, now);
  const bool fast = state_ == PlayerState::kFastForward || state_ == PlayerState::kFastRewind;
  const bool moving = fast || state_ == PlayerState::kPlaying;
  switch (control) {
    case PlayControl::kPlayPause:
      return Control(moving ? PlayControl::kPause : PlayControl::kPlay, now);
    case PlayControl::kPlay:
      SetState(PlayerState::kPlaying, PlayerEvent::Kind::kPlaying, now);
      return true;
    case PlayControl::kPause:
      if (state_ != PlayerState::kStopped) {
        SetState(PlayerState::kPaused, PlayerEvent::Kind::kPaused, now);
      }
      return true;
    case PlayControl::kNextTrack:
    case PlayControl::kNext:
      Step(true, now);
      return true;
    case PlayControl::kPreviousTrack:
    case PlayControl::kPrevious:
      Step(false, now);
      return true;
    case PlayControl::kStartFastForward:
      SetState(PlayerState::kFastForward, PlayerEvent::Kind::kFastForward, now);
      return true;
    case PlayControl::kStartRewind:
      SetState(PlayerState::kFastRewind, PlayerEvent::Kind::kRewind, now);
      return true;
    case PlayControl::kEndFast:
      if (fast) {
        SetState(PlayerState::kPlaying, PlayerEvent::Kind::kEndedFast, now);
        events_.push_back({PlayerEvent::Kind::kPlaying, now});
      }
      return true;
    case PlayControl::kStop:
      break;
  }
  return false;
}

void Player::SetShuffle(Shuffle shuffle, Microseconds now) {
  Advance(now);
  shuffle_ = shuffle;
  Arrange();
}

// The track that plays keeps playing: shuffled, it comes first; unshuffled, it is found again.
void Player::Arrange() {
  if (list_.empty()) return;
  const std::size_t current = list_[index_];
  list_ = original_;
  if (shuffle_ != Shuffle::kOff) {
    for (std::size_t left = list_.size(); left > 1; --left) {
      std::swap(list_[left - 1], list_[random_.Below(static_cast<std::uint32_t>(left))]);
    }
    if (shuffle_ == Shuffle::kAlbums) {
      ArrangeByAlbum(current);
    } else {
      std::iter_swap(list_.begin(), std::find(list_.begin(), list_.end(), current));
    }
  }
  index_ = static_cast<std::size_t>(std::find(list_.begin(), list_.end(), current) - list_.begin());
}

// The albums follow each other in the order in which the drawn list first names them, the current
// one first; inside an album the tracks keep their given order.
void Player::ArrangeByAlbum(std::size_t current) {
  std::map<std::string, std::size_t> place;
  place[library_->tracks[current].album] = 0;
  for (const std::size_t track : list_) place.emplace(library_->tracks[track].album, place.size());
  list_ = original_;
  std::stable_sort(list_.begin(), list_.end(), [&](std::size_t left, std::size_t right) {
    return place[library_->tracks[left].album] < place[library_->tracks[right].album];
  });
}

void Player::Advance(Microseconds now) {
  for (auto change = NextChange(); HasCome(change, now); change = NextChange()) {
    if (state_ == PlayerState::kFastRewind) {
      Anchor(0, *change);
      SetState(PlayerState::kPlaying, PlayerEvent::Kind::kEndedFast, *change);
      events_.push_back({PlayerEvent::Kind::kPlaying, *change});
    } else {
      TrackEnded(*change);
    }
  }
}

std::optional<Microseconds> Player::NextChange() const {
  const int rate = Rate();
  if (rate == 0) return std::nullopt;
  const Microseconds distance = rate > 0 ? Length() - anchor_position_ : anchor_position_;
  const int speed = rate > 0 ? rate : -rate;
  return anchor_time_ + (distance + speed - 1) / speed;
}

std::vector<PlayerEvent> Player::PopEvents() {
  std::vector<PlayerEvent> events;
  events.swap(events_);
  return events;
}

int Player::Rate() const {
  switch (state_) {
    case PlayerState::kPlaying:
      return 1;
    case PlayerState::kFastForward:
      return kFastFactor;
    case PlayerState::kFastRewind:
      return -kFastFactor;
    default:
      return 0;
  }
}

Microseconds Player::Position(Microseconds now) const {
  const Microseconds position = anchor_position_ + Rate() * (now - anchor_time_);
  return std::clamp<Microseconds>(position, 0, Length());
}

Microseconds Player::Length() const {
  if (list_.empty()) return 0;
  // A track without a length would end in the moment it begins, for ever.
  return std::max<std::int64_t>(library_->tracks[list_[index_]].length_ms, 1) * kMillisecond;
}

void Player::Anchor(Microseconds position, Microseconds now) {
  anchor_position_ = position;
  anchor_time_ = now;
}

void Player::SetState(PlayerState state, PlayerEvent::Kind kind, Microseconds now) {
  Anchor(Position(now), now);
  if (state == state_) return;
  state_ = state;
  events_.push_back({kind, now});
}

void Player::MoveTo(std::size_t index, Microseconds now) {
  index_ = index;
  Anchor(0, now);
  events_.push_back({PlayerEvent::Kind::kTrackChanged, now});
}

// Nothing is the current track then; what was played before is kept for the next Play.
void Player::Stop(Microseconds now) {
  SetState(PlayerState::kStopped, PlayerEvent::Kind::kStopped, now);
  list_.clear();
  index_ = 0;
  Anchor(0, now);
}

bool Player::Resume(PlayControl control, Microseconds now) {
  const bool plays = control == PlayControl::kPlay || control == PlayControl::kPlayPause;
  if (!plays || original_.empty()) return false;
  Start(original_, 0, now);
  return true;
}

void Player::Step(bool forward, Microseconds now) {
  if (!forward && Position(now) > kBackToStartAfter) {
    Anchor(0, now);
    return;
  }
  if (forward && index_ + 1 == list_.size()) {
    if (repeat_ == Repeat::kAll) {
      MoveTo(0, now);
    } else {
      Stop(now);
    }
    return;
  }
  if (!forward && index_ == 0) {
    MoveTo(repeat_ == Repeat::kAll ? list_.size() - 1 : 0, now);
    return;
  }
  MoveTo(forward ? index_ + 1 : index_ - 1, now);
}

void Player::TrackEnded(Microseconds now) {
  if (repeat_ == Repeat::kOne) {
    MoveTo(index_, now);
    return;
  }
  Step(true, now);
}

}  // namespace ipodsim
