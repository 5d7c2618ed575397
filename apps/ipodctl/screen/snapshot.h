// SPDX-License-Identifier: MIT
// What the session's thread knows of the iPod at one moment. It is never changed: the thread makes
// another one, so that the screen looks at it without a lock.
#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "playing/player.h"
#include "workout/recording.h"
#include "workout/workout_clock.h"

namespace ipodctl::screen {

/// A record on the way into the library.
struct Step {
  unsigned long index;
  std::string name;  // as it was read, to notice that the library is another one now

  friend bool operator<(const Step& a, const Step& b) {
    return a.index != b.index ? a.index < b.index : a.name < b.name;
  }
  friend bool operator==(const Step& a, const Step& b) {
    return a.index == b.index && a.name == b.name;
  }
};

/// A list of the library: a category of the whole, or of the records walked into.
struct Place {
  unsigned char top = 0;  // the category that the way begins with; 0: the list of categories
  std::vector<Step> steps;

  bool is_overview() const { return top == 0; }
  /// Of the list's records.
  unsigned char category() const;

  friend bool operator<(const Place& a, const Place& b) {
    return a.top != b.top ? a.top < b.top : a.steps < b.steps;
  }
  friend bool operator==(const Place& a, const Place& b) {
    return a.top == b.top && a.steps == b.steps;
  }
};

/// A list as far as it is read: a page of names at a time.
struct RecordList {
  static constexpr unsigned long kPage = 32;
  using Page = std::shared_ptr<const std::vector<std::string>>;

  unsigned long count = 0;
  std::map<unsigned long, Page> pages;  // by their first record divided by kPage

  /// Nothing while it is not read.
  const std::string* NameOf(unsigned long index) const;
};

/// The lists that have been looked at.
struct LibrarySnapshot {
  std::map<unsigned char, unsigned long> counts;  // of the overview's categories
  std::map<Place, std::shared_ptr<const RecordList>> lists;
  std::string problem;  // why the list that is looked at cannot be read; empty: it can
};

struct WorkoutSnapshot {
  enum class State { kNone, kRunning, kSaved, kFailed };

  State state = State::kNone;
  std::string equipment;
  std::shared_ptr<const Recording> recording;  // null only for kNone
  std::optional<WorkoutClock> clock;           // while it runs
  int ended_s = 0;                             // afterwards
  std::size_t intervals = 0;                   // that are on the iPod
  std::size_t bytes = 0;
  std::string outcome;  // a sentence, afterwards

  /// What the equipment shows now, though the iPod be slow.
  int Seconds() const;
};

struct Snapshot {
  bool docked = false;
  std::string trouble;  // while none is docked: why, or what is done about it
  std::string ipod;     // its name

  std::string doing;  // that the iPod is asked for, empty when it is asked for nothing
  std::chrono::microseconds doing_since{0};
  std::string message;  // what the last wish came to, when it is worth telling

  NowPlaying now;
  std::optional<unsigned long> playing_count;  // tracks of the list that is played
  LibrarySnapshot library;
  WorkoutSnapshot workout;
};

}  // namespace ipodctl::screen
