// SPDX-License-Identifier: MIT
// Writes a workout to the iPod as its clock goes on, and ends it early on Ctrl-C.
#include "workout/workout.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <utility>

#include "console/failure.h"
#include "console/interrupt.h"
#include "console/text.h"
#include "workout/csv_recording.h"
#include "workout/file_estimate.h"
#include "workout/legacy_writer.h"
#include "workout/session_writer.h"
#include "workout/workout_clock.h"
#include "workout/workout_view.h"

namespace ipodctl {

namespace {

constexpr unsigned kLookMs = 100;

class Workout {
 public:
  Workout(const Context& context, Recording recording, WorkoutLog& log);

  void Run();

 private:
  void Prepare();
  void Log();
  bool WaitFor(int seconds, const WorkoutClock& clock);
  void EndEarly(const WorkoutClock& clock);
  void Finish(int seconds);
  void ShowSaved(const Summary& summary);

  const Context& context_;
  const WorkoutOptions& options_;
  Recording recording_;
  std::vector<Interval> intervals_;
  WorkoutHeader header_;
  WorkoutLog& log_;
  WorkoutView view_;
  int ended_early_s_ = -1;
};

Workout::Workout(const Context& context, Recording recording, WorkoutLog& log)
    : context_(context),
      options_(context.options.workout),
      recording_(std::move(recording)),
      intervals_(IntervalsOf(recording_, options_.interval_s)),
      header_(HeaderFor(context.options)),
      log_(log),
      view_(context.output, recording_) {}

void Workout::Run() {
  Prepare();
  Log();
  if (ended_early_s_ < 0) return;
  throw CommandFailure(kInterrupted, "interrupted at " +
                                         Clock(static_cast<std::uint64_t>(ended_early_s_)) +
                                         "; the workout until then is complete in " + log_.Place());
}

void Workout::Prepare() {
  const int last_s = intervals_.back().reading.seconds;
  const Summary summary = SummaryAt(recording_, last_s);
  const FileEstimate file = EstimateFile(header_, recording_, intervals_, summary);
  log_.RequireRoom(file.largest_piece, file.total);
  StopIfInterrupted();
  context_.output.Line("Workout on " + options_.equipment + ", " +
                       Clock(static_cast<std::uint64_t>(last_s)) + ", written to the iPod in " +
                       Counted(intervals_.size(), "interval"));
}

void Workout::Log() {
  log_.Start(header_);
  const WorkoutClock clock(intervals_.front().reading.seconds, options_.speed);
  for (const Interval& interval : intervals_) {
    // The start is written at once: a log that has a header has a start, too.
    const bool starts = interval.event == IPOD_INTERVAL_TYPE_START;
    if (!starts && !WaitFor(interval.reading.seconds, clock)) return EndEarly(clock);
    log_.Write(recording_, interval);
    view_.ShowInterval(interval, log_.bytes());
  }
  Finish(intervals_.back().reading.seconds);
}

// False when interrupted.
bool Workout::WaitFor(int seconds, const WorkoutClock& clock) {
  for (unsigned left_ms = clock.MsUntil(seconds); left_ms != 0; left_ms = clock.MsUntil(seconds)) {
    view_.ShowReading(ReadingAt(recording_, clock.Seconds()), log_.bytes());
    if (!PauseMs(std::min(left_ms, kLookMs))) return false;
  }
  return !Interrupted();
}

// A log is complete with an end and a summary, however early.
void Workout::EndEarly(const WorkoutClock& clock) {
  // When the line is slower than the clock, the next interval to write is where the log ends.
  const std::size_t written = log_.intervals();
  const int next_s = intervals_[written].reading.seconds;
  ended_early_s_ = std::min(static_cast<int>(clock.Seconds()), next_s);
  Interval end = {IPOD_INTERVAL_TYPE_END, ReadingAt(recording_, ended_early_s_)};
  end.reading.seconds = ended_early_s_;
  log_.Write(recording_, end);
  view_.ShowInterval(end, log_.bytes());
  Finish(ended_early_s_);
}

void Workout::Finish(int seconds) {
  const Summary summary = SummaryAt(recording_, seconds);
  log_.Finish(recording_, summary);
  view_.Hide();
  ShowSaved(summary);
}

void Workout::ShowSaved(const Summary& summary) {
  const std::string path = log_.Path();
  const bool forgotten = context_.dock.simulated() && path.empty();
  context_.output.Line(log_.SavedText());
  if (forgotten) context_.output.Line("That memory is gone now; --storage DIR keeps files.");
  nlohmann::ordered_json json = {{"event", "saved"},
                                 {"seconds", summary.seconds},
                                 {"intervals", log_.intervals()},
                                 {"bytes", log_.bytes()},
                                 {"kept", !forgotten}};
  json["file"] = path.empty() ? nlohmann::ordered_json() : nlohmann::ordered_json(path);
  context_.output.Object(json);
}

}  // namespace

Recording RecordingFor(const WorkoutOptions& options) {
  const Equipment equipment = *EquipmentByName(options.equipment);
  if (!options.recording.empty()) return LoadCsvRecording(options.recording, equipment);
  return GenerateRecording(equipment, options.duration_s, options.weight_kg);
}

// A file that cannot be read is reported before anything is sent to the iPod.
void RunWorkout(const Context& context) {
  Recording recording = RecordingFor(context.options.workout);
  Session session(context.options, context.dock);
  session.Identify();
  SessionWorkoutWriter writer(session, context.dock);
  Workout(context, std::move(recording), writer).Run();
}

void RunLegacyWorkout(const Context& context, LegacySession& session) {
  LegacyWorkoutWriter writer(session, context.output, context.dock);
  Workout(context, RecordingFor(context.options.workout), writer).Run();
}

}  // namespace ipodctl
