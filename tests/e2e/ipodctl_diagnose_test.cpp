// SPDX-License-Identifier: MIT
// ipodctl diagnose, run as a program.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <termios.h>
#include <unistd.h>

#include <nlohmann/json.hpp>

#include "docked_ipod.h"
#include "support/json_lines.h"
#include "support/process.h"
#include "support/temporary_folder.h"

using nlohmann::json;
using test::Ended;
using test::Ipodctl;
using ::testing::AllOf;
using ::testing::ContainsRegex;
using ::testing::HasSubstr;
using ::testing::MatchesRegex;
using ::testing::Not;

namespace {

// The first object in which there is such a member.
json ObjectWith(const std::string& output, const char* member) {
  for (const json& object : test::Objects(output)) {
    if (object.contains(member)) return object;
  }
  return {};
}

TEST(DiagnoseCommand, TellsEachStepAndFindsNothingWhereTheIpodAccepts) {
  const Ended ended = Ipodctl({"--simulated", "diagnose"});
  EXPECT_EQ(ended.status, 0) << ended.err;
  EXPECT_THAT(ended.out, MatchesRegex("Identifying to what is docked on [^\n]* \\.\\.\\.\n"
                                      "  StartIDPS +answered[^\n]*\n"
                                      "(  [A-Z][^\n]* answered[^\n]*\n)+"
                                      "Outcome: the iPod accepted the accessory by tokens\\.\n"
                                      "\n"
                                      "Nothing that went wrong is recorded\\.\n"));
}

TEST(DiagnoseCommand, EndsAsTheAttemptDidAndSaysWhy) {
  const Ended ended = Ipodctl({"--simulated=old", "diagnose"});
  EXPECT_EQ(ended.status, 4);
  EXPECT_EQ(ended.err, "");
  EXPECT_THAT(ended.out, AllOf(ContainsRegex("  StartIDPS +refused \\(status 4, unknown to it\\)"),
                               ContainsRegex("RequestLingoProtocolVersion General +answered"),
                               HasSubstr("Outcome: this iPod is too old to be controlled"),
                               HasSubstr("\n\nE306  The iPod is too old (proved)\n")));
}

TEST(DiagnoseCommand, PrintsStepsOutcomeAndFindingsForMachines) {
  const std::string out = Ipodctl({"--simulated=old", "diagnose", "--json"}).out;
  const json step = ObjectWith(out, "step");
  EXPECT_EQ(step["step"], "StartIDPS");
  EXPECT_EQ(step["result"], "refused");
  EXPECT_EQ(step["ack"], 4);
  EXPECT_EQ(step["attempts"], 1);
  const json outcome = ObjectWith(out, "outcome");
  EXPECT_EQ(outcome["attempt"], "first");
  EXPECT_EQ(outcome["status"], 4);
  EXPECT_EQ(ObjectWith(out, "finding")["finding"], "E306");
  const json failure = test::Objects(out).back();
  EXPECT_EQ(failure.value("error", ""), "ipod-too-old");
  EXPECT_EQ(failure["message"], outcome["outcome"]);
  EXPECT_EQ(failure["status"], 4);
  EXPECT_EQ(failure["finding"], "E306");
}

// It takes no answers at all, so only time might help.
TEST(DiagnoseCommand, TriesAgainLaterWhereNothingAnswers) {
  const Ended ended = Ipodctl({"--simulated=silent", "diagnose"});
  EXPECT_EQ(ended.status, 3);
  EXPECT_THAT(ended.out, AllOf(ContainsRegex("  StartIDPS +no answer"),
                               HasSubstr("\nIdentifying again, after five seconds ...\n"),
                               Not(HasSubstr("without tokens")),
                               HasSubstr("\n\nE201  Nothing came from the iPod (proved)\n")));
}

speed_t RateOf(const std::string& device) {
  const int line = open(device.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
  termios settings = {};
  const int told = tcgetattr(line, &settings);
  close(line);
  return told == 0 ? cfgetospeed(&settings) : B0;
}

TEST(DiagnoseCommand, HearsTheLineAtAnotherRate) {
  const e2e::DockedIpod dock;
  // A pseudo-terminal keeps the rate and passes bytes at any.
  EXPECT_EQ(Ipodctl({"--port", dock.device(), "diagnose"}).status, 0);
  EXPECT_EQ(RateOf(dock.device()), B57600);
  EXPECT_EQ(Ipodctl({"--port", dock.device(), "diagnose", "--baud", "19200"}).status, 0);
  EXPECT_EQ(RateOf(dock.device()), B19200);
  EXPECT_EQ(Ipodctl({"diagnose", "--baud", "300"}).status, 64);
  EXPECT_THAT(Ipodctl({"--capture", "x.pcapng", "diagnose", "--baud", "19200"}).err,
              HasSubstr("--capture excludes --baud"));
}

TEST(DiagnoseCommand, ShowsThePageOfAPortThatDoesNotExist) {
  const Ended ended = Ipodctl({"--port", "/dev/nowhere", "diagnose"});
  EXPECT_EQ(ended.status, 2);
  EXPECT_THAT(ended.out, AllOf(HasSubstr("Outcome: cannot open /dev/nowhere: there is no such"),
                               HasSubstr("\n\nE101  The port does not exist\n")));
}

TEST(DiagnoseCommand, ShowsThePageOfADeviceThatIsNoSerialLine) {
  const Ended ended = Ipodctl({"--port", "/dev/null", "diagnose"});
  EXPECT_EQ(ended.status, 2);
  EXPECT_THAT(ended.out, HasSubstr("\n\nE104  The device is no serial line\n"));
}

TEST(DiagnoseCommand, KeepsTheRecordingThatIsAskedFor) {
  const test::TemporaryFolder folder;
  const std::string file = folder.path("line.pcapng");
  EXPECT_EQ(Ipodctl({"--simulated", "--capture", file, "diagnose"}).status, 0);
  EXPECT_EQ(Ipodctl({"explain", file}).out, "Nothing that went wrong is recorded.\n");
}

TEST(DiagnoseCommand, CannotReadARecordingThatGoesToStandardOutput) {
  const Ended ended = Ipodctl({"--simulated", "--capture", "-", "diagnose"});
  EXPECT_EQ(ended.status, 64);
  EXPECT_THAT(ended.err, HasSubstr("--capture needs a file"));
}

}  // namespace
