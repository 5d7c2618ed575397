// SPDX-License-Identifier: MIT
// What the command line is understood as, and what it is refused for.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "command_line/command_line.h"

using namespace ipodctl;
using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::StartsWith;

namespace {

TEST(CommandLine, TakesGlobalOptionsOnBothSidesOfTheCommand) {
  const CommandLine before = ParseCommandLine({"--json", "--port", "/dev/x", "info"});
  const CommandLine after = ParseCommandLine({"info", "--port", "/dev/x", "--json"});
  ASSERT_TRUE(before.options && after.options);
  for (const CommandLine& line : {before, after}) {
    EXPECT_EQ(line.options->command, "info");
    EXPECT_EQ(line.options->port, "/dev/x");
    EXPECT_TRUE(line.options->json);
    EXPECT_TRUE(line.options->idps);
    EXPECT_FALSE(line.options->simulation);
  }
}

TEST(CommandLine, KnowsOfWrongArgumentsWhetherTheyAreAskedByAMachine) {
  EXPECT_TRUE(ParseCommandLine({"--json", "dance"}).json);
  EXPECT_TRUE(ParseCommandLine({"browse", "artists", "--count", "x", "--json"}).json);
  EXPECT_FALSE(ParseCommandLine({"dance"}).json);
  // A name, not an option.
  EXPECT_FALSE(ParseCommandLine({"--wrong", "play", "tracks", "--", "--json"}).json);
}

TEST(CommandLine, SimulatesOnRequestAndForATourWithoutPort) {
  EXPECT_EQ(ParseCommandLine({"--simulated", "info"}).options->simulation->profile, "nano");
  EXPECT_EQ(ParseCommandLine({"--simulated=old", "info"}).options->simulation->profile, "old");
  EXPECT_EQ(ParseCommandLine({"tour", "--seed", "7"}).options->simulation->seed, 7U);
  EXPECT_FALSE(ParseCommandLine({"tour", "--port", "/dev/x"}).options->simulation);
  EXPECT_FALSE(ParseCommandLine({"info"}).options->simulation);
}

TEST(CommandLine, KeepsNamesApartFromTheProfile) {
  const CommandLine line = ParseCommandLine({"browse", "--simulated", "artists", "-", "nano"});
  ASSERT_TRUE(line.options) << line.text;
  EXPECT_THAT(line.options->path, ElementsAre("artists", "-", "nano"));
  EXPECT_EQ(line.options->simulation->profile, "nano");
}

TEST(CommandLine, ReadsEachCommandsOwnOptions) {
  const CommandLine browse = ParseCommandLine(
      {"browse", "artists", "--from", "3", "--count", "4", "--hierarchy", "video"});
  EXPECT_EQ(browse.options->from, 3U);
  EXPECT_EQ(browse.options->count, 4U);
  EXPECT_EQ(browse.options->hierarchy, 2);
  const CommandLine seek = ParseCommandLine({"seek", "back", "0.5"});
  EXPECT_FALSE(seek.options->forward);
  EXPECT_EQ(seek.options->seek_seconds, 0.5);
  const CommandLine now = ParseCommandLine({"now", "--for", "9"});
  EXPECT_TRUE(now.options->follow);
  EXPECT_EQ(now.options->follow_seconds, 9U);
  const CommandLine prefs = ParseCommandLine({"prefs", "set", "aspect", "16:9"});
  EXPECT_EQ(prefs.options->command, "prefs");
  EXPECT_EQ(prefs.options->preference, "aspect");
  EXPECT_EQ(prefs.options->setting, "16:9");
}

std::string RefusalOf(const std::vector<std::string>& arguments) {
  const CommandLine line = ParseCommandLine(arguments);
  EXPECT_EQ(line.status, 64);
  EXPECT_FALSE(line.options);
  return line.text;
}

TEST(CommandLine, RefusesWhatNamesNoRecord) {
  for (const char* step : {"", "@", "@-1", "@+1", "@1x", "@99999999999999999999999"}) {
    EXPECT_EQ(RefusalOf({"play", "tracks", step}),
              "'" + std::string(step) +
                  "' names no record (a name does, or @ and its number from 0 on); see 'ipodctl "
                  "play --help'");
  }
  for (const char* step : {"@0", "@17", "@home", "1x", "a@1"}) {
    EXPECT_TRUE(ParseCommandLine({"browse", "artists", step}).options) << step;
  }
}

TEST(CommandLine, RefusesNumbersThatAreNone) {
  for (const char* option : {"--count", "--from"}) {
    EXPECT_THAT(RefusalOf({"browse", "tracks", option, "-1"}),
                StartsWith(std::string(option) + ": '-1' is not a whole number, 0 or more; "));
    EXPECT_THAT(RefusalOf({"browse", "tracks", option, "1.5"}),
                StartsWith(std::string(option) + ": '1.5' is not a whole number, 0 or more; "));
  }
  EXPECT_THAT(RefusalOf({"tour", "--seed", "99999999999999999999"}),
              StartsWith("--seed: 99999999999999999999 is too large; 18446744073709551615 is the "
                         "largest; "));
  EXPECT_TRUE(ParseCommandLine({"tour", "--seed", "18446744073709551615"}).options);
  for (const char* seconds : {"nan", "inf", "0", "601", "1e999", "2s", ""}) {
    EXPECT_THAT(RefusalOf({"seek", "forward", seconds}),
                HasSubstr("'" + std::string(seconds) + "' is not a number from 0.1 to 600; "));
  }
}

TEST(CommandLine, ReadsAWorkout) {
  const CommandLine line = ParseCommandLine(
      {"workout", "--equipment", "bike", "--duration", "1:02:03", "--interval", "10", "--speed",
       "2.5", "--weight", "68.5", "--manufacturer", "M", "--serial-number", "S", "--model", "QZ"});
  ASSERT_TRUE(line.options) << line.text;
  const WorkoutOptions& workout = line.options->workout;
  EXPECT_EQ(workout.equipment, "bike");
  EXPECT_EQ(workout.duration_s, 3723);
  EXPECT_EQ(workout.interval_s, 10);
  EXPECT_EQ(workout.speed, 2.5);
  EXPECT_EQ(workout.weight_kg, 68.5);
  EXPECT_EQ(workout.manufacturer, "M");
  EXPECT_EQ(workout.serial_number, "S");
  EXPECT_EQ(line.options->model, "QZ");
  EXPECT_EQ(ParseCommandLine({"workout", "--duration", "90"}).options->workout.duration_s, 90);
  EXPECT_EQ(ParseCommandLine({"workout", "--duration", "24:00:00"}).options->workout.duration_s,
            86400);
  EXPECT_EQ(ParseCommandLine({"workout", "--from", "x.csv"}).options->workout.recording, "x.csv");
}

TEST(CommandLine, RefusesImpossibleWorkouts) {
  const auto refusal = [](std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "workout");
    const CommandLine line = ParseCommandLine(arguments);
    EXPECT_EQ(line.status, 64);
    EXPECT_FALSE(line.options);
    EXPECT_THAT(line.text, EndsWith("; see 'ipodctl workout --help'"));
    return line.text;
  };
  for (const char* duration :
       {"0", "", "-5", "1:", ":30", "1:60", "1:2:3:4", "24:00:01", "9999999999", "ten"}) {
    EXPECT_THAT(refusal({"--duration", duration}), HasSubstr("is not a duration")) << duration;
  }
  EXPECT_THAT(refusal({"--equipment", "boat"}), HasSubstr("boat"));
  EXPECT_THAT(refusal({"--interval", "0"}), HasSubstr("--interval"));
  EXPECT_THAT(refusal({"--speed", "0"}), HasSubstr("--speed"));
  EXPECT_THAT(refusal({"--speed", "nan"}), HasSubstr("--speed"));
  EXPECT_THAT(refusal({"--weight", "0"}), HasSubstr("--weight"));
  EXPECT_THAT(refusal({"--weight", "nan"}), HasSubstr("--weight"));
  EXPECT_THAT(refusal({"--from", "x.csv", "--duration", "9"}), HasSubstr("--duration"));
  EXPECT_THAT(refusal({"--manufacturer", std::string(201, 'x')}),
              StartsWith("--manufacturer is too long"));
  EXPECT_THAT(refusal({"--serial-number", std::string(41, '&')}),
              StartsWith("--serial-number is too long"));
  EXPECT_THAT(refusal({"--model", std::string(201, 'x')}), StartsWith("--model is too long"));
}

TEST(CommandLine, ReadsWhatTheSimulatedIpodIsLike) {
  const CommandLine line =
      ParseCommandLine({"--simulated=strict", "--habit", "no-name", "--habit", "long-title",
                        "--fault", "junk", "--baud", "57600", "info"});
  ASSERT_TRUE(line.options) << line.text;
  EXPECT_EQ(line.options->command, "info");
  EXPECT_EQ(line.options->simulation->profile, "strict");
  EXPECT_THAT(line.options->simulation->habits, ElementsAre("no-name", "long-title"));
  EXPECT_THAT(line.options->simulation->faults, ElementsAre("junk"));
  EXPECT_EQ(line.options->simulation->baud, 57600U);
  EXPECT_EQ(ParseCommandLine({"tour"}).options->simulation->baud, 0U);
  EXPECT_THAT(ParseCommandLine({"--habit", "no-name", "info"}).text,
              AllOf(StartsWith("--habit"), HasSubstr("needs --simulated")));
}

TEST(CommandLine, ReadsUserDataAndTheStorageFolder) {
  const CommandLine line =
      ParseCommandLine({"userdata", "--weight", "65535", "--simulated", "--storage", "files"});
  ASSERT_TRUE(line.options) << line.text;
  EXPECT_EQ(line.options->user_weight, 65535U);
  EXPECT_EQ(line.options->simulation->storage_folder, "files");
  EXPECT_FALSE(ParseCommandLine({"userdata"}).options->user_weight);
  EXPECT_EQ(ParseCommandLine({"userdata", "--weight", "65536"}).status, 64);
  EXPECT_EQ(ParseCommandLine({"userdata", "--weight", "-1"}).status, 64);
  EXPECT_THAT(ParseCommandLine({"userdata", "--storage", "files"}).text,
              AllOf(StartsWith("--storage"), HasSubstr("needs --simulated")));
}

}  // namespace
