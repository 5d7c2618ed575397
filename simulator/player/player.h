// SPDX-License-Identifier: MIT
// The player: a list of tracks, a place in it, and a position that moves with the clock.

#pragma once

#include <optional>
#include <vector>

#include "simulator/base/clock.h"
#include "simulator/base/random.h"
#include "simulator/media/library.h"

namespace ipodsim {

enum class PlayerState : std::uint8_t {
  kStopped = 0,
  kPlaying = 1,
  kPaused = 2,
  kFastForward = 3,
  kFastRewind = 4,
};

enum class PlayControl : std::uint8_t {
  kPlayPause = 1,
  kStop = 2,
  kNextTrack = 3,
  kPreviousTrack = 4,
  kStartFastForward = 5,
  kStartRewind = 6,
  kEndFast = 7,
  kNext = 8,
  kPrevious = 9,
  kPlay = 10,
  kPause = 11,
};

enum class Shuffle : std::uint8_t { kOff = 0, kTracks = 1, kAlbums = 2 };
enum class Repeat : std::uint8_t { kOff = 0, kOne = 1, kAll = 2 };

/// Something that an accessory may want to hear of.
struct PlayerEvent {
  enum class Kind { kStopped, kPlaying, kPaused, kFastForward, kRewind, kEndedFast, kTrackChanged };
  Kind kind;
  Microseconds at;
};

class Player {
 public:
  static constexpr std::uint32_t kNothing = 0xFFFFFFFF;
  static constexpr int kFastFactor = 8;
  /// Going back later than this into a track returns to its start.
  static constexpr Microseconds kBackToStartAfter = 3 * kSecond;

  Player(const Library* library, std::uint64_t seed);

  /// Plays the list from one of its tracks. The index is below the list's size.
  void Start(std::vector<std::size_t> tracks, std::size_t index, Microseconds now);
  /// False when the control makes no sense now, such as a skip with nothing loaded.
  bool Control(PlayControl control, Microseconds now);
  /// Moves to another place of the list and plays it. The index is below size().
  void Jump(std::uint32_t index, Microseconds now);
  void SetShuffle(Shuffle shuffle, Microseconds now);
  void SetRepeat(Repeat repeat) { repeat_ = repeat; }

  /// Lets the clock run: tracks end, the next ones begin.
  void Advance(Microseconds now);
  /// When the current track ends or its rewinding reaches the start, if it is moving at all.
  std::optional<Microseconds> NextChange() const;
  std::vector<PlayerEvent> PopEvents();

  PlayerState state() const { return state_; }
  Shuffle shuffle() const { return shuffle_; }
  Repeat repeat() const { return repeat_; }
  std::uint32_t size() const { return static_cast<std::uint32_t>(list_.size()); }
  /// The place in the list, or kNothing when none is loaded.
  std::uint32_t index() const {
    return list_.empty() ? kNothing : static_cast<std::uint32_t>(index_);
  }
  const Track* current() const { return at(index()); }
  /// The track at a place of the list; null when there is none.
  const Track* at(std::uint32_t index) const;
  std::int64_t position_ms(Microseconds now) const { return Position(now) / kMillisecond; }
  std::int64_t length_ms() const { return Length() / kMillisecond; }

 private:
  int Rate() const;
  Microseconds Position(Microseconds now) const;
  Microseconds Length() const;
  void Anchor(Microseconds position, Microseconds now);
  void SetState(PlayerState state, PlayerEvent::Kind kind, Microseconds now);
  void MoveTo(std::size_t index, Microseconds now);
  void Stop(Microseconds now);
  bool Resume(PlayControl control, Microseconds now);
  void Step(bool forward, Microseconds now);
  void TrackEnded(Microseconds now);
  void Arrange();
  void ArrangeByAlbum(std::size_t current);

  const Library* library_;
  Random random_;
  std::vector<std::size_t> original_;  // as it was given
  std::vector<std::size_t> list_;      // as it is played
  std::size_t index_ = 0;
  PlayerState state_ = PlayerState::kStopped;
  Shuffle shuffle_ = Shuffle::kOff;
  Repeat repeat_ = Repeat::kOff;
  Microseconds anchor_position_ = 0;
  Microseconds anchor_time_ = 0;
  std::vector<PlayerEvent> events_;
};

}  // namespace ipodsim
