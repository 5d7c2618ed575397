// SPDX-License-Identifier: MIT
// Keeps account of what is saved.
#include "workout/workout_log.h"

#include "console/failure.h"
#include "console/text.h"

namespace ipodctl {

void WorkoutLog::NoteOpened(std::optional<unsigned> number) {
  opened_ = true;
  number_ = number;
}

void WorkoutLog::NoteHeader() {
  header_saved_ = true;
  bytes_ = Written();
}

void WorkoutLog::NoteInterval(int seconds) {
  ++intervals_;
  bytes_ = Written();
  last_s_ = seconds;
}

void WorkoutLog::NoteSummary() {
  summary_saved_ = true;
  bytes_ = Written();
}

std::string WorkoutLog::Path() const {
  const std::string file = dock_.NewestFile();
  return file.find('/') == std::string::npos ? std::string() : file;
}

std::string WorkoutLog::Place() const {
  if (!dock_.simulated()) {
    return number_ ? "workout file " + std::to_string(*number_) + " on the iPod"
                   : "a new workout file on the iPod";
  }
  const std::string file = dock_.NewestFile();
  return Path().empty() ? file + " in the simulated iPod's memory" : file;
}

std::string WorkoutLog::SavedText() const {
  return "Saved as " + Place() + ": " + Counted(intervals_, "interval") + " and a summary, " +
         Grouped(bytes_) + " bytes";
}

void WorkoutLog::Fail(const std::string& what) {
  const std::string happened =
      Answers() ? "the iPod " + what : "the iPod on " + dock_.device() + " no longer answers";
  throw CommandFailure(kFailed, happened + "; " + Saved());
}

std::string WorkoutLog::Saved() const {
  if (!opened_) return "nothing was saved";
  if (!header_saved_) return Place() + " holds no more than the beginning of a header";
  std::string what = "the header";
  if (intervals_ != 0) {
    what += summary_saved_ ? ", " : " and ";
    what +=
        Counted(intervals_, "interval") + " up to " + Clock(static_cast<std::uint64_t>(last_s_));
  }
  if (summary_saved_) what += " and the summary";
  std::string lacks;
  if (!summary_saved_)
    lacks = closed_ ? ", but not the summary" : ", but not the summary and the end";
  if (summary_saved_ && !closed_) lacks = ", but perhaps not the end";
  return Place() + " holds " + what + " (" + Grouped(bytes_) + " bytes)" + lacks;
}

}  // namespace ipodctl
