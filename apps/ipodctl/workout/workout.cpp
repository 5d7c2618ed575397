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
#include "workout/legacy_writer.h"
#include "workout/live_workout.h"
#include "workout/session_writer.h"
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
  bool WaitFor(int seconds);
  void EndEarly();
  void Finish();
  void ShowSaved();

  const Context& context_;
  const WorkoutOptions& options_;
  Recording recording_;
  WorkoutLog& log_;
  LiveWorkout live_;
  WorkoutView view_;
  bool ended_early_ = false;
};

Workout::Workout(const Context& context, Recording recording, WorkoutLog& log)
    : context_(context),
      options_(context.options.workout),
      recording_(std::move(recording)),
      log_(log),
      live_(context.options, recording_, log),
      view_(context.output, recording_) {}

void Workout::Run() {
  Prepare();
  Log();
  if (!ended_early_) return;
  throw CommandFailure(kInterrupted, "interrupted at " +
                                         Clock(static_cast<std::uint64_t>(live_.ended_s())) +
                                         "; the workout until then is complete in " + log_.Place());
}

void Workout::Prepare() {
  const std::vector<Interval>& intervals = live_.intervals();
  const int last_s = intervals.back().reading.seconds;
  live_.RequireRoom();
  StopIfInterrupted();
  context_.output.Line("Workout on " + options_.equipment + ", " +
                       Clock(static_cast<std::uint64_t>(last_s)) + ", written to the iPod in " +
                       Counted(intervals.size(), "interval"));
}

void Workout::Log() {
  live_.Start();
  view_.ShowInterval(live_.intervals().front(), log_.bytes());
  while (!live_.is_at_end()) {
    const Interval& next = live_.next();
    if (!WaitFor(next.reading.seconds)) return EndEarly();
    live_.WriteNext();
    view_.ShowInterval(next, log_.bytes());
  }
  Finish();
}

// False when interrupted.
bool Workout::WaitFor(int seconds) {
  const WorkoutClock& clock = live_.clock();
  for (unsigned left_ms = clock.MsUntil(seconds); left_ms != 0; left_ms = clock.MsUntil(seconds)) {
    view_.ShowReading(ReadingAt(recording_, clock.Seconds()), log_.bytes());
    if (!PauseMs(std::min(left_ms, kLookMs))) return false;
  }
  return !Interrupted();
}

void Workout::EndEarly() {
  ended_early_ = true;
  const Interval end = live_.EndEarly();
  view_.ShowInterval(end, log_.bytes());
  Finish();
}

void Workout::Finish() {
  live_.Finish();
  view_.Hide();
  ShowSaved();
}

void Workout::ShowSaved() {
  const std::string path = log_.Path();
  const bool forgotten = context_.dock.simulated() && path.empty();
  context_.output.Line(log_.SavedText());
  if (forgotten) context_.output.Line("That memory is gone now; --storage DIR keeps files.");
  nlohmann::ordered_json json = {{"event", "saved"},
                                 {"seconds", live_.ended_s()},
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
