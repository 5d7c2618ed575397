// SPDX-License-Identifier: MIT
// The command that logs a workout.
#include <charconv>

#include "command_line/flags.h"
#include "usage/numbers.h"
#include "workout/recording.h"
#include "workout/workout_header.h"

namespace ipodctl {

namespace {

constexpr int kLongestWorkoutS = 86400;
constexpr int kLongestIntervalS = 3600;
constexpr const char* kAllEquipment = "treadmill|elliptical|stepper|bike|other";

constexpr const char* kWorkoutFooter =
    "Writes a document with the start, an interval every few seconds, a pause, the end and a\n"
    "summary. The workout is made up, or comes from a CSV file: a header line that names the\n"
    "columns in any order, then a line for each reading. Its columns are seconds, distance, "
    "energy,\n"
    "one of pace, spm and rpm, and if you like incline, heart rate, level, and event (pause or\n"
    "resume). Distance is in kilometres, on a stepper in floors; energy in kilocalories; pace in\n"
    "seconds per kilometre. Semicolons or tabs may stand between the cells, and quotes around "
    "them;\n"
    "other columns are named and ignored.\n"
    "Ctrl-C ends the workout early, and what was done by then is saved; so do closing the "
    "terminal\n"
    "and a reader of the output that leaves.\n"
    "A simulated iPod keeps the file in the folder --storage names, else in memory only.\n"
    "\n"
    "Examples:\n"
    "  ipodctl workout --equipment bike --duration 30:00\n"
    "  ipodctl workout --from ride.csv --equipment bike --weight 68.5\n"
    "  ipodctl --simulated --storage files workout --duration 10:00 --speed 60";

// One part of "1:02:03". Nothing unless it is all digits.
std::optional<int> ClockPart(const std::string& text) {
  int number = 0;
  const char* const end = text.data() + text.size();
  const std::from_chars_result result = std::from_chars(text.data(), end, number);
  if (result.ec != std::errc() || result.ptr != end || number < 0) return std::nullopt;
  return number;
}

// Seconds of "90", "1:30" or "1:02:03".
std::optional<int> DurationOf(const std::string& text) {
  int seconds = 0;
  const std::vector<std::string> parts = CLI::detail::split(text, ':');
  if (parts.size() > 3 || text.empty() || text.back() == ':') return std::nullopt;
  for (const std::string& part : parts) {
    const std::optional<int> number = ClockPart(part);
    if (!number || *number > kLongestWorkoutS) return std::nullopt;
    if (parts.size() > 1 && &part != &parts.front() && *number > 59) return std::nullopt;
    seconds = seconds * 60 + *number;
    if (seconds > kLongestWorkoutS) return std::nullopt;
  }
  return seconds == 0 ? std::nullopt : std::optional<int>(seconds);
}

void ParseDuration(const std::string& text, WorkoutOptions* workout) {
  const std::optional<int> seconds = DurationOf(text);
  if (!seconds) {
    throw UsageProblem{"'" + text + "' is not a duration of up to a day (90, 1:30 or 1:02:03 are)"};
  }
  workout->duration_s = *seconds;
}

void CheckName(const char* option, const std::string& name) {
  constexpr std::size_t kLongest = 200;
  if (EscapedText(name).size() <= kLongest) return;
  throw UsageProblem{std::string(option) + " is too long; a workout takes names of up to " +
                     std::to_string(kLongest) + " bytes"};
}

}  // namespace

void AddWorkoutOptions(CommandLineParser& parser, CLI::App* command) {
  WorkoutOptions& workout = parser.options().workout;
  std::vector<std::string> names;
  for (const Equipment& equipment : AllEquipment()) names.emplace_back(equipment.name);
  command->add_option("--equipment", workout.equipment, "What is worked out on")
      ->check(CLI::IsMember(names))
      ->option_text(kAllEquipment);
  CLI::Option* duration =
      command
          ->add_option_function<std::string>(
              "--duration", [&workout](const std::string& text) { ParseDuration(text, &workout); },
              "How long, in seconds or as a clock shows it (10:00)")
          ->option_text("TIME");
  command->add_option("--interval", workout.interval_s, "Seconds between intervals (5)")
      ->check(CLI::Range(1, kLongestIntervalS))
      ->option_text("SECONDS");
  command->add_option("--speed", workout.speed, "How much faster than real time (1)")
      ->check(usage::NumberBetween(0.1, 1000))
      ->option_text("N");
  command->add_option("--from", workout.recording, "A recorded workout (-: standard input)")
      ->excludes(duration)
      ->option_text("FILE.csv");
  command->add_option("--weight", workout.weight_kg, "Weight of who works out (75)")
      ->check(usage::NumberBetween(1, 999))
      ->option_text("KG");
  command->add_option("--manufacturer", workout.manufacturer, "Who made the equipment")
      ->option_text("NAME");
  command->add_option("--serial-number", workout.serial_number, "The equipment's")
      ->option_text("TEXT");
  parser.AddCheck([&parser, command] {
    if (!command->parsed()) return;
    CheckName("--manufacturer", parser.options().workout.manufacturer);
    CheckName("--serial-number", parser.options().workout.serial_number);
    CheckName("--model", parser.options().model);
  });
}

void AddWorkoutCommand(CommandLineParser& parser) {
  AddWorkoutOptions(parser, parser.AddCommand("workout", "Workouts", "Log a workout on the iPod",
                                              "[OPTIONS]", kWorkoutFooter));
}

}  // namespace ipodctl
