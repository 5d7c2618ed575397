// SPDX-License-Identifier: MIT
// Writes workouts through the legacy interface's three operations.
#include "workout/legacy_writer.h"

#include <cstdlib>
#include <nlohmann/json.hpp>

#include "console/failure.h"
#include "console/text.h"
#include "ipod/refusal.h"

namespace ipodctl {

namespace {

// The interface sends the low byte of each character, so a character for each byte puts UTF-8 into
// the document.
std::wstring ByteByByte(const std::string& utf8) {
  std::wstring wide;
  for (const char byte : utf8) wide += static_cast<wchar_t>(static_cast<unsigned char>(byte));
  return wide;
}

unsigned char EquipmentCode(tagIPOD_EQUIPMENT_TYPE type) {
  return static_cast<unsigned char>(type + ipod::IPOD_SPORTS_WORKOUTTYPE_TREADMILL);
}

unsigned char EventCode(tagIPOD_INTERVAL_TYPE event) {
  switch (event) {
    case IPOD_INTERVAL_TYPE_START:
      return ipod::IPOD_SPORTS_INTERVAL_TYPE_START;
    case IPOD_INTERVAL_TYPE_PAUSE:
      return ipod::IPOD_SPORTS_INTERVAL_TYPE_PAUSE;
    case IPOD_INTERVAL_TYPE_RESUME:
      return ipod::IPOD_SPORTS_INTERVAL_TYPE_RESUME;
    case IPOD_INTERVAL_TYPE_END:
      return ipod::IPOD_SPORTS_INTERVAL_TYPE_END;
    default:
      return ipod::IPOD_SPORTS_INTERVAL_TYPE_CONTINUE;
  }
}

unsigned Whole(double number) { return number > 0 ? static_cast<unsigned>(number) : 0; }

// Equipment that counts steps or revolutions has no pace of its own; the mean so far stands for it.
unsigned PaceOf(const Recording& recording, const Reading& reading) {
  if (recording.speed_type == IPOD_SPEED_TYPE_PACE) return Whole(reading.speed);
  constexpr double kTooShortKm = 0.01;
  return reading.distance < kTooShortKm ? 0 : Whole(reading.seconds / reading.distance);
}

}  // namespace

LegacyWorkoutWriter::LegacyWorkoutWriter(LegacySession& session, Output& output,
                                         const DockLine& dock)
    : WorkoutLog(dock), session_(session), output_(output) {}

void LegacyWorkoutWriter::RequireRoom(std::size_t /*largest_piece*/, std::size_t /*file_size*/) {
  const WorkoutSupport workouts = session_.AcceptsWorkouts();
  if (workouts.accepted) return;
  if (workouts.refusal) {
    throw CommandFailure(kFailed, Refusal("tell whether it takes workouts; try without --legacy",
                                          *workouts.refusal));
  }
  session_.RequireAnswers();
  throw CommandFailure(kFailed,
                       "this iPod does not take workouts from the legacy interface; dock one that "
                       "does, or leave out --legacy");
}

// A workout that has begun is saved, also after Ctrl-C.
void LegacyWorkoutWriter::Start(const WorkoutHeader& header) {
  const ToTheEnd saved(session_.ctrl_c());
  std::wstring manufacturer = ByteByByte(header.manufacturer_id);
  std::wstring model = ByteByByte(header.model);
  std::wstring serial_number = ByteByByte(header.serial_number);
  std::wstring nothing;
  const int started = session_.interface().startworkout(
      EquipmentCode(header.equipment), manufacturer.data(), nothing.data(), model.data(),
      serial_number.data(), nothing.data(), nothing.data(), static_cast<float>(header.weight_kg));
  if (started == 0) FailAt("to begin the workout", "the beginning of the workout");
  NoteOpened();
  NoteHeader();
  ShowProgress();
}

void LegacyWorkoutWriter::Write(const Recording& recording, const Interval& interval) {
  const ToTheEnd saved(session_.ctrl_c());
  const Reading& reading = interval.reading;
  const int written = session_.interface().intervalworkout(
      EventCode(interval.event), Whole(reading.seconds), Whole(reading.kcal),
      static_cast<float>(reading.distance), 0, PaceOf(recording, reading), 0, 0, Whole(reading.bpm),
      static_cast<float>(reading.incline), Whole(reading.level));
  if (written == 0) {
    const std::string place =
        "the interval at " + Clock(static_cast<std::uint64_t>(reading.seconds));
    FailAt(place, place);
  }
  NoteInterval(reading.seconds);
  ShowProgress();
}

void LegacyWorkoutWriter::Finish(const Recording& /*recording*/, const Summary& summary) {
  const ToTheEnd saved(session_.ctrl_c());
  const int finished = session_.interface().finishworkout(
      Whole(summary.seconds), Whole(summary.kcal), static_cast<float>(summary.distance), 0,
      Whole(summary.speed), 0, 0, Whole(summary.bpm));
  // The result is the same for a refused summary and a refused close.
  if (finished == 0) FailAt("to finish the workout", "the end of the workout");
  NoteSummary();
  NoteClosed();
}

std::size_t LegacyWorkoutWriter::Written() { return session_.interface().getworkoutsize(); }

bool LegacyWorkoutWriter::Answers() { return session_.Answers(); }

// What was tried last, or with which status the iPod acknowledged it. A line of the document comes
// with its indentation and its end.
std::string LegacyWorkoutWriter::Tried() {
  return Printable(Trimmed(Utf8(session_.interface().getlasttry())));
}

// A pending acknowledgement is no refusal, nor is one that did not come, or was lost.
void LegacyWorkoutWriter::FailAt(const std::string& refused, const std::string& unconfirmed) {
  const std::string tried = Tried();
  const std::string value = ", value is ";
  const std::size_t told =
      tried.rfind("Error in Ack", 0) == 0 ? tried.find(value) : std::string::npos;
  constexpr int kLastRefusal = 5;
  const int status = told == std::string::npos ? 0 : std::atoi(tried.c_str() + told + value.size());
  const bool is_refusal = status > 0 && status <= kLastRefusal;
  Fail((is_refusal ? "refused " + refused : "did not confirm " + unconfirmed) + " ('" + tried +
       "')");
}

void LegacyWorkoutWriter::ShowProgress() {
  const std::string text = Tried();
  if (text == shown_) return;
  shown_ = text;
  output_.Line(text);
  output_.Object({{"event", "progress"}, {"text", text}});
}

}  // namespace ipodctl
