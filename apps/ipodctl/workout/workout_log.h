// SPDX-License-Identifier: MIT
// The log of a workout on the iPod, whichever of the library's interfaces writes it, and what of it
// is saved at any time.
#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "ipod/dock_line.h"
#include "workout/recording.h"
#include "workout/workout_header.h"

namespace ipodctl {

class WorkoutLog {
 public:
  explicit WorkoutLog(const DockLine& dock) : dock_(dock) {}
  virtual ~WorkoutLog() = default;
  WorkoutLog(const WorkoutLog&) = delete;
  WorkoutLog& operator=(const WorkoutLog&) = delete;

  /// Throws a CommandFailure unless the iPod accepts workouts, and one with pieces of up to
  /// `largest_piece` bytes and a file of about `file_size`.
  virtual void RequireRoom(std::size_t largest_piece, std::size_t file_size) = 0;

  /// Each writes its part of the document, or throws a CommandFailure that says what is saved. Once
  /// one has failed nothing more may be written: it would stand behind a gap.
  virtual void Start(const WorkoutHeader& header) = 0;
  virtual void Write(const Recording& recording, const Interval& interval) = 0;
  virtual void Finish(const Recording& recording, const Summary& summary) = 0;

  /// Size of the pieces that are complete on the iPod.
  std::size_t bytes() const { return bytes_; }
  std::size_t intervals() const { return intervals_; }
  /// Where the workout is, to stand in a sentence.
  std::string Place() const;
  /// A path that people can open, else empty.
  std::string Path() const;
  /// "Saved as gym-0001.xml: 14 intervals and a summary, 3,204 bytes", of a finished one.
  std::string SavedText() const;

 protected:
  /// Whether there is still an iPod.
  virtual bool Answers() = 0;
  /// How much of the document the library has written, in bytes.
  virtual std::size_t Written() = 0;

  /// @param number the iPod's for the file, where it is known
  void NoteOpened(std::optional<unsigned> number = std::nullopt);
  /// A piece is complete.
  void NoteHeader();
  void NoteInterval(int seconds);
  void NoteSummary();
  void NoteClosed() { closed_ = true; }
  /// @param what the iPod did, if it is still there
  [[noreturn]] void Fail(const std::string& what);

 private:
  std::string Saved() const;

  const DockLine& dock_;
  std::size_t bytes_ = 0;
  std::size_t intervals_ = 0;
  int last_s_ = 0;  // of the last interval
  bool opened_ = false;
  std::optional<unsigned> number_;
  bool header_saved_ = false;
  bool summary_saved_ = false;
  bool closed_ = false;
};

}  // namespace ipodctl
