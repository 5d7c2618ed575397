// SPDX-License-Identifier: MIT
// Writes workouts through the legacy interface's three operations, and measures what they write.
#include "workout/legacy_writer.h"

#include <cstdio>
#include <cstring>
#include <nlohmann/json.hpp>

#include "console/failure.h"
#include "console/text.h"

namespace ipodctl {

namespace {

constexpr const char* kHeaderFrame =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n\t<gymData>\n\t<vers>1</vers>\n"
    "\t<equipmentInfo>\n\t\t<gymName></gymName>\n\t\t<gymLocation></gymLocation>\n"
    "\t</equipmentInfo>\n\t<userInfo>\n\t</userInfo>\n";

// The interface sends the low byte of each character: one for each byte puts UTF-8 into the
// document.
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

// Equipment that counts steps or revolutions has no pace of its own: the mean one so far then.
unsigned PaceOf(const Recording& recording, const Reading& reading) {
  if (recording.speed_type == IPOD_SPEED_TYPE_PACE) return Whole(reading.speed);
  constexpr double kTooShortKm = 0.01;
  return reading.distance < kTooShortKm ? 0 : Whole(reading.seconds / reading.distance);
}

std::size_t Element(const char* name, std::size_t value) {
  return std::strlen("\t\t<></>\n") + 2 * std::strlen(name) + value;
}
std::size_t Element(const char* name, unsigned value) {
  return Element(name, std::to_string(value).size());
}
std::size_t Element(const char* name, float value) {
  return Element(
      name, static_cast<std::size_t>(std::snprintf(nullptr, 0, "%f", static_cast<double>(value))));
}

std::size_t HeaderSizeOf(const DocumentHeader& header) {
  return std::strlen(kHeaderFrame) + Element("manufacturerID", header.manufacturer_id.size()) +
         Element("type", std::strlen(EquipmentByType(header.equipment).name)) +
         Element("model", header.model.size()) +
         Element("serialNumber", header.serial_number.size()) +
         Element("kg", static_cast<float>(header.weight_kg));
}

/// What an interval and a summary have in common.
struct Figures {
  unsigned seconds;
  unsigned kcal;
  float km;
  unsigned pace;
  unsigned bpm;

  std::size_t size() const {
    return Element("sec", seconds) + Element("kCal", kcal) + Element("km", km) +
           Element("pace", pace) + Element("bpm", bpm);
  }
};

}  // namespace

LegacyWorkoutWriter::LegacyWorkoutWriter(LegacySession& session, Output& output,
                                         const DockLine& dock)
    : WorkoutLog(dock), session_(session), output_(output) {}

void LegacyWorkoutWriter::RequireRoom(std::size_t /*largest_piece*/, std::size_t /*file_size*/) {
  if (session_.AcceptsWorkouts()) return;
  session_.RequireAnswers();
  throw CommandFailure(kFailed,
                       "this iPod does not take workouts from the legacy interface; dock one that "
                       "does, or leave out --legacy");
}

void LegacyWorkoutWriter::Start(const DocumentHeader& header) {
  std::wstring manufacturer = ByteByByte(header.manufacturer_id);
  std::wstring model = ByteByByte(header.model);
  std::wstring serial_number = ByteByByte(header.serial_number);
  std::wstring nothing;
  const int started = session_.interface().startworkout(
      EquipmentCode(header.equipment), manufacturer.data(), nothing.data(), model.data(),
      serial_number.data(), nothing.data(), nothing.data(), static_cast<float>(header.weight_kg));
  if (started == 0) FailAt("refused to begin the workout");
  NoteOpened();
  NoteHeader(HeaderSizeOf(header));
  ShowProgress();
}

void LegacyWorkoutWriter::Write(const Recording& recording, const Interval& interval) {
  const Reading& reading = interval.reading;
  const Figures figures = {Whole(reading.seconds), Whole(reading.kcal),
                           static_cast<float>(reading.distance), PaceOf(recording, reading),
                           Whole(reading.bpm)};
  const auto incline = static_cast<float>(reading.incline);
  const unsigned level = Whole(reading.level);
  const int written = session_.interface().intervalworkout(
      EventCode(interval.event), figures.seconds, figures.kcal, figures.km, 0, figures.pace, 0, 0,
      figures.bpm, incline, level);
  if (written == 0) {
    FailAt("refused the interval at " + Clock(static_cast<std::uint64_t>(reading.seconds)));
  }
  NoteInterval(std::strlen("\t<interval>\n\t</interval>\n") +
                   Element("event", std::strlen(EventName(interval.event))) + figures.size() +
                   Element("incline", incline) + Element("level", level),
               reading.seconds);
  ShowProgress();
}

void LegacyWorkoutWriter::Finish(const Recording& /*recording*/, const Summary& summary) {
  const Figures figures = {Whole(summary.seconds), Whole(summary.kcal),
                           static_cast<float>(summary.distance), Whole(summary.speed),
                           Whole(summary.bpm)};
  const int finished = session_.interface().finishworkout(figures.seconds, figures.kcal, figures.km,
                                                          0, figures.pace, 0, 0, figures.bpm);
  // The result does not tell the summary from the closing.
  if (finished == 0) FailAt("refused to finish the workout");
  NoteSummary(std::strlen("\t<workoutSummary>\n\t</workoutSummary>\n") + figures.size());
  NoteClosed();
}

bool LegacyWorkoutWriter::Answers() { return session_.Answers(); }

// What was tried last, or with which status the iPod refused it.
void LegacyWorkoutWriter::FailAt(const std::string& what) {
  std::string tried = Printable(Utf8(session_.interface().getlasttry()));
  Fail(what + " ('" + tried + "')");
}

void LegacyWorkoutWriter::ShowProgress() {
  const std::string text = Utf8(session_.interface().getlasttry());
  if (text == shown_) return;
  shown_ = text;
  output_.Line(Printable(text));
  output_.Object({{"event", "progress"}, {"text", text}});
}

}  // namespace ipodctl
