// SPDX-License-Identifier: MIT
// Writes a workout to the iPod, and knows at any time what of it is saved.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "debug_listener.h"
#include "dock.h"
#include "session.h"
#include "workout/document.h"
#include "workout/recording.h"

namespace ipodctl {

class WorkoutWriter {
 public:
  WorkoutWriter(Session& session, DebugListener& listener, const Dock& dock);

  /// Throws a CommandFailure unless the iPod takes workouts, and this one: pieces of up to
  /// `largest_piece` bytes and a file of about `file_size`.
  void RequireRoom(std::size_t largest_piece, std::size_t file_size);

  /// Each writes its part of the document, or throws a CommandFailure that says what is saved. Once
  /// one has failed nothing more may be written: it would stand behind a gap.
  void Start(const DocumentHeader& header);
  void Write(const Recording& recording, const Interval& interval);
  void Finish(const Recording& recording, const Summary& summary);

  /// Acknowledged by the iPod so far.
  std::size_t bytes() const { return bytes_; }
  std::size_t intervals() const { return intervals_; }
  /// Where the workout is, to stand in a sentence.
  std::string Place() const;
  /// A path that people can open, else empty.
  std::string Path() const;

 private:
  void RequireSports();
  void RequireStorage(std::size_t largest_piece, std::size_t file_size);
  void RequireSpace();
  [[noreturn]] void Fail(const std::string& what);
  std::string Saved() const;

  Session& session_;
  DebugListener& listener_;
  const Dock& dock_;
  std::size_t bytes_ = 0;
  std::size_t intervals_ = 0;
  int last_s_ = 0;  // of the last interval
  bool opened_ = false;
  bool header_saved_ = false;
  bool summary_saved_ = false;
  bool closed_ = false;
};

}  // namespace ipodctl
