// SPDX-License-Identifier: MIT
// ipodctl diagnose, run as a program.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>
#include <sstream>

#include "support/process.h"
#include "support/temporary_folder.h"

using nlohmann::json;
using test::Ended;
using test::Ipodctl;
using ::testing::AllOf;

using ::testing::HasSubstr;
using ::testing::MatchesRegex;

namespace {

TEST(DiagnoseCommand, HasNothingToFindWhereTheIpodAccepts) {
  const Ended ended = Ipodctl({"--simulated", "diagnose"});
  EXPECT_EQ(ended.status, 0) << ended.err;
  EXPECT_THAT(ended.out, MatchesRegex("Identifying to what is docked on [^\n]* \\.\\.\\.\n"
                                      "Outcome: the iPod accepted the accessory by tokens\\.\n"
                                      "\n"
                                      "Nothing that went wrong is recorded\\.\n"));
}

TEST(DiagnoseCommand, EndsAsTheAttemptDidAndSaysWhy) {
  const Ended ended = Ipodctl({"--simulated=old", "diagnose"});
  EXPECT_EQ(ended.status, 4);
  EXPECT_EQ(ended.err, "");
  EXPECT_THAT(ended.out, AllOf(HasSubstr("Outcome: this iPod is too old to be controlled"),
                               HasSubstr("\n\nE306  The iPod is too old (proved)\n")));
}

TEST(DiagnoseCommand, PrintsTheOutcomeAndTheFindingsForMachines) {
  std::istringstream lines(Ipodctl({"--simulated=old", "diagnose", "--json"}).out);
  std::string line;
  ASSERT_TRUE(std::getline(lines, line));
  EXPECT_EQ(json::parse(line)["status"], 4);
  ASSERT_TRUE(std::getline(lines, line));
  EXPECT_EQ(json::parse(line)["code"], "E306");
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
