// SPDX-License-Identifier: MIT
// ipodctl explain, run as a program.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "support/process.h"
#include "support/temporary_folder.h"

using nlohmann::json;
using test::Ended;
using test::Ipodctl;
using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::StartsWith;

namespace {

// Records `command` on an iPod of that profile.
std::string Record(const test::TemporaryFolder& folder, const std::string& profile,
                   const std::string& command) {
  const std::string file = folder.path(profile + ".pcapng");
  Ipodctl({"--simulated=" + profile, "--capture", file, command});
  return file;
}

TEST(ExplainCommand, FindsNothingInASessionThatWentWell) {
  const test::TemporaryFolder folder;
  const Ended ended = Ipodctl({"explain", Record(folder, "nano", "info")});
  EXPECT_EQ(ended.status, 0) << ended.err;
  EXPECT_EQ(ended.out, "Nothing that went wrong is recorded.\n");
}

TEST(ExplainCommand, SaysThatAnIpodIsTooOldAndByWhichVersion) {
  const test::TemporaryFolder folder;
  const Ended ended = Ipodctl({"explain", Record(folder, "old", "info")});
  EXPECT_EQ(ended.status, 0) << ended.err;
  EXPECT_THAT(ended.out, StartsWith("E306  The iPod is too old (proved)\n"
                                    "  Tried               The accessory identified itself to the "
                                    "iPod.\n"
                                    "  Seen                General has version 1.01 and "
                                    "needs 1.02 (packet "));
  EXPECT_THAT(ended.out, HasSubstr("\n\nE302  The iPod does not identify accessories by tokens"));
}

TEST(ExplainCommand, SaysThatNothingCame) {
  const test::TemporaryFolder folder;
  const Ended ended = Ipodctl({"explain", Record(folder, "silent", "info")});
  EXPECT_EQ(ended.status, 0) << ended.err;
  EXPECT_THAT(ended.out, StartsWith("E201  Nothing came from the iPod (proved)\n"));
}

TEST(ExplainCommand, PrintsAnObjectForEachFinding) {
  const test::TemporaryFolder folder;
  const Ended ended = Ipodctl({"explain", Record(folder, "old", "info"), "--json"});
  const json finding = json::parse(ended.out.substr(0, ended.out.find('\n')));
  EXPECT_EQ(finding["finding"], "E306");
  EXPECT_EQ(finding["certainty"], "proved");
  EXPECT_EQ(finding["title"], "The iPod is too old");
  EXPECT_TRUE(finding["packets"].is_array());
  for (const char* text : {"seen", "tried", "means", "what_to_do"}) {
    EXPECT_FALSE(finding[text].get<std::string>().empty()) << text;
  }
}

TEST(ExplainCommand, ShowsThePageOfACode) {
  const Ended ended = Ipodctl({"explain", "e102"});
  EXPECT_EQ(ended.status, 0);
  EXPECT_THAT(ended.out,
              AllOf(StartsWith("E102  The port is in use\n"), HasSubstr("modem manager")));
  EXPECT_EQ(json::parse(Ipodctl({"explain", "E102", "--json"}).out)["title"], "The port is in use");
}

TEST(ExplainCommand, KnowsNoOtherCodes) {
  const Ended ended = Ipodctl({"explain", "E999"});
  EXPECT_EQ(ended.status, 64);
  EXPECT_EQ(ended.err, "ipodctl: there is no finding E999; the first is E101, the last E504.\n");
}

TEST(ExplainCommand, RefusesWhatIsNoRecording) {
  const test::TemporaryFolder folder;
  const Ended text = Ipodctl({"explain", folder.Write("notes.txt", "nothing but words")});
  EXPECT_EQ(text.status, 66);
  EXPECT_EQ(text.out, "");
  EXPECT_THAT(text.err, HasSubstr("notes.txt is no recording"));
  EXPECT_EQ(Ipodctl({"explain", "/nowhere/line.pcapng"}).status, 66);
}

}  // namespace
