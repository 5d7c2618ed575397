// SPDX-License-Identifier: MIT
// The judge is told lies and finds them.
#include "judge.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "children.h"

namespace truth {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;

Case CaseOf(const char* name) { return *CaseByName(name); }

// A command that ended with 0 and said `out`, to an iPod that nothing has happened to.
Judgement JudgeOutput(const char* name, const std::string& out, Account account = {}) {
  const Case run = CaseOf(name);
  const ipodsim::SimulatedIpod ipod(run.settings());
  return Judge(run, {{0, out, "", 1, false}, std::move(account), {}}, ipod, 0);
}

Judgement JudgeFailure(const char* name, const std::string& message, Account account = {}) {
  const Case run = CaseOf(name);
  const ipodsim::SimulatedIpod ipod(run.settings());
  return Judge(run, {{1, "", message, 1, false}, std::move(account), {}}, ipod, 0);
}

constexpr const char* kArtists =
    R"({"category":"artists","total":5,"records":[{"index":0,"name":"Artist 0"},)"
    R"({"index":1,"name":"Artist 1"},{"index":2,"name":"Artist 2"},)"
    R"({"index":3,"name":"Artist 3"},{"index":4,"name":"Artist 4"}]})";

TEST(Judge, TakesAWholeAndTrueListForRight) {
  EXPECT_EQ(JudgeOutput("browse-artists/nano/fast/none@0/1", kArtists).verdict, Verdict::kRight);
}

TEST(Judge, FindsNamesThatAreShiftedByOne) {
  const Judgement judgement = JudgeOutput(
      "browse-artists/nano/fast/none@0/1",
      R"({"total":5,"records":[{"index":0,"name":"Artist 0"},{"index":1,"name":"Artist 1"},)"
      R"({"index":2,"name":"Artist 1"},{"index":3,"name":"Artist 2"},)"
      R"({"index":4,"name":"Artist 3"}]})");
  EXPECT_EQ(judgement.verdict, Verdict::kLie);
  EXPECT_EQ(judgement.why, R"(record 2 "Artist 1" instead of "Artist 2")");
}

TEST(Judge, FindsAListThatIsNotWhole) {
  const Judgement judgement = JudgeOutput(
      "browse-artists/nano/fast/none@0/1",
      R"({"total":5,"records":[{"index":0,"name":"Artist 0"},{"index":1,"name":"Artist 1"}]})");
  EXPECT_EQ(judgement.verdict, Verdict::kLie);
  EXPECT_EQ(judgement.why, "records 2 instead of 5");
}

TEST(Judge, ReadsAListWithARecordPerLine) {
  EXPECT_EQ(JudgeOutput("browse-artists/nano/fast/none@0/1",
                        "{\"index\":0,\"name\":\"Artist 0\"}\n{\"index\":1,\"name\":\"Artist 1\"}\n"
                        "{\"index\":2,\"name\":\"Artist 2\"}\n{\"index\":3,\"name\":\"Artist 3\"}\n"
                        "{\"index\":4,\"name\":\"Artist 4\"}\n")
                .verdict,
            Verdict::kRight);
}

TEST(Judge, FindsPlayingThatDoesNotPlay) {
  const Judgement judgement =
      JudgeOutput("play-number/nano/fast/none@0/1", R"({"state":"playing","title":"Bridge 122"})");
  EXPECT_EQ(judgement.verdict, Verdict::kLie);
  EXPECT_EQ(judgement.why, "it is stopped");
}

TEST(Judge, FindsAnotherModeAndAnotherPreference) {
  EXPECT_EQ(JudgeOutput("shuffle/nano/fast/none@0/1", R"({"shuffle":"albums"})").why,
            R"(shuffle "albums" instead of "off")");
  EXPECT_EQ(JudgeOutput("shuffle/nano/fast/none@0/1", R"({"shuffle":"off"})").verdict,
            Verdict::kRight);
  EXPECT_EQ(JudgeOutput("prefs-get/nano/fast/none@0/1", R"({"line-out":"on"})").why,
            R"(line-out "on" instead of "off")");
  EXPECT_EQ(JudgeOutput("prefs/nano/fast/none@0/1", R"({"video-out":"off"})").why, "no screen");
}

TEST(Judge, FindsAWorkoutWithoutAFile) {
  EXPECT_EQ(JudgeOutput("workout/nano/fast/none@0/1", R"({"event":"saved","intervals":7})").why,
            "no file");
}

TEST(Judge, FindsSilenceWithASuccess) {
  EXPECT_EQ(JudgeOutput("info/nano/fast/none@0/1", "").verdict, Verdict::kLie);
  EXPECT_EQ(JudgeOutput("info/nano/fast/none@0/1", "hello\n").verdict, Verdict::kLie);
}

TEST(Judge, ExceptsALieThatADamagedFrameTold) {
  Account account;
  account.checksum_held = true;
  EXPECT_EQ(
      JudgeOutput("shuffle/nano/fast/flipped-bit@9/1", R"({"shuffle":"albums"})", account).verdict,
      Verdict::kCollision);
  EXPECT_EQ(
      JudgeOutput("shuffle/nano/fast/flipped-bit@9/1", R"({"shuffle":"off"})", account).verdict,
      Verdict::kRight);
}

TEST(Judge, FindsFalseCauses) {
  const char* const run = "info/nano/fast/late@3/1";
  Account answered;
  answered.requests = 40;
  answered.answers = 39;
  answered.last_request_us = 100;
  answered.last_answer_us = 200;
  for (const char* untrue :
       {"this iPod is too old to be controlled", "no iPod answers on /dev/ttyS1; check",
        "the iPod on /dev/ttyS1 no longer answers", "the iPod refused to tell its name",
        "there is no track 'Bridge 122' here", "it has no Sports service"}) {
    EXPECT_EQ(JudgeFailure(run, untrue, answered).verdict, Verdict::kFalseCause) << untrue;
  }
}

TEST(Judge, LetsTrueCausesStand) {
  EXPECT_EQ(JudgeFailure("info/old/fast/none@0/1", "this iPod is too old to be controlled").verdict,
            Verdict::kHonest);
  Account away;
  away.answers = 39;
  away.cut_off = true;
  EXPECT_EQ(
      JudgeFailure("info/nano/fast/hang-up@9/1", "no iPod answers on /dev/ttyS1", away).verdict,
      Verdict::kHonest);
  Account refused;
  refused.requests = 40;
  refused.refusals = {{38, 0, 0x07, 4}};
  EXPECT_EQ(
      JudgeFailure("info/nano/fast/refused@38/1", "the iPod refused to tell its name", refused)
          .verdict,
      Verdict::kHonest);
  refused.refusals = {{3, 0, 0x07, 4}};
  EXPECT_EQ(JudgeFailure("info/nano/fast/refused@3/1", "the iPod refused to tell its name", refused)
                .verdict,
            Verdict::kFalseCause)
      << "the refusal was of something long before";
}

// A command that was interrupted after it had said `out`.
Judgement JudgeInterrupted(const char* name, const std::string& out) {
  const Case run = CaseOf(name);
  const ipodsim::SimulatedIpod ipod(run.settings());
  Account account;
  account.struck = true;
  return Judge(run, {{130, out, "interrupted before it was done", 1, false}, account, {}}, ipod, 0);
}

TEST(Judge, HoldsWhatWasSaidBeforeAnInterruptAgainstTheTruth) {
  const char* const run = "browse-artists/nano/fast/interrupt@9/1";
  EXPECT_EQ(JudgeInterrupted(run, "").verdict, Verdict::kHonest);
  EXPECT_EQ(JudgeInterrupted(run, R"({"index":0,"name":"Artist 0"})").verdict, Verdict::kHonest);
  const Judgement lie = JudgeInterrupted(run, R"({"index":0,"name":"Artist 1"})");
  EXPECT_EQ(lie.verdict, Verdict::kLie);
  EXPECT_EQ(lie.why, R"(record 0 "Artist 1" instead of "Artist 0")");
  EXPECT_EQ(JudgeInterrupted("browse-artists/nano/fast/late@9/1", "").verdict, Verdict::kFalseCause)
      << "nobody interrupted it";
}

TEST(Judge, FindsAStepOfTheTourThatIsMissingOrWrong) {
  EXPECT_EQ(JudgeOutput("tour/nano/fast/none@0/1", R"({"step":"close"})").why, "only close ");
  const Judgement wrong =
      JudgeOutput("tour/nano/fast/none@0/1", R"({"step":"artists","total":6,"names":[]})");
  EXPECT_EQ(wrong.verdict, Verdict::kLie);
  EXPECT_EQ(wrong.why, "artists: total 6 instead of 5");
}

TEST(Judge, ReadsWhatIsPrintedForPeople) {
  const char* const run = "browse-artists/nano/fast/none@0/1/text";
  EXPECT_EQ(JudgeOutput(run,
                        "artists (5)\n  0  Artist 0\n  1  Artist 1\n  2  Artist 2\n"
                        "  3  Artist 3\n  4  Artist 4\n")
                .verdict,
            Verdict::kRight);
  EXPECT_EQ(JudgeOutput(run,
                        "artists (5)\n  0  Artist 0\n  1  Artist 1\n  2  Artist 2\n"
                        "  3  (no name)\n  4  Artist 4\n")
                .why,
            R"(record 3 "" instead of "Artist 3")");
  EXPECT_EQ(JudgeOutput(run, "artists (4)\n  0  Artist 0\n").why, "total 4 instead of 5");
  EXPECT_EQ(JudgeOutput(run, "artists (5)\nhello\n").why, "not understood: hello");
  EXPECT_EQ(JudgeOutput("shuffle/nano/fast/none@0/1/text", "Shuffle: albums\n").why,
            R"(shuffle "albums" instead of "off")");
  EXPECT_EQ(JudgeOutput("legacy-prefs-set/nano/fast/none@0/1/text", "line-out: Enabled\n").why,
            "it is off");
  EXPECT_EQ(JudgeOutput("now/nano/fast/none@0/1/text", "Playing  Bridge 104\n").why,
            R"(state "playing" instead of "stopped")");
  EXPECT_EQ(
      JudgeOutput("legacy-now/nano/fast/none@0/1/text", "  State               Stopped\n").verdict,
      Verdict::kRight);
  EXPECT_EQ(JudgeOutput("workout/nano/fast/none@0/1/text",
                        "Saved as gym.xml: 7 intervals and a summary, 1,577 bytes\n")
                .verdict,
            Verdict::kLie);
}

constexpr const char* kFacts =
    "  Model               MB598LL (0x00140000)\n"
    "  Colour              number 2\n"
    "  Serial number       5U8250SIM01\n"
    "  Software version    1.0.4\n"
    "  Identified by       lingoes\n"
    "  Workouts            supported\n"
    "  Maximum payload     506 bytes\n"
    "  General             1.09\n"
    "  Simple Remote       1.02\n"
    "  Display Remote      1.05\n"
    "  Extended Interface  1.14\n"
    "  Sports              1.01\n";

TEST(Judge, FindsALingoThatIsSaidToBeLackingAndIsNot) {
  const char* const run = "info/nano/fast/refused@9/1/text";
  const std::string heading = "Zoë's iPod on /dev/ttyS1\n";
  EXPECT_EQ(JudgeOutput(run, heading + kFacts + "  Storage             1.02\n").why, "");
  const std::string lacking = heading + kFacts + "  Storage             not supported\n";
  EXPECT_EQ(JudgeOutput(run, lacking).why, "Storage is said to be lacking");
  // 0F is the question for a lingo's version, status 2 tells nothing of the lingo, and 4 does.
  Account account;
  account.refusals = {{20, 0, 0x0F, 2}};
  EXPECT_EQ(JudgeOutput(run, lacking, account).why, "Storage is said to be lacking");
  EXPECT_EQ(JudgeOutput(run,
                        heading + kFacts +
                            "  Storage             not told (status 2, out of "
                            "resources)\n",
                        account)
                .why,
            "");
  account.refusals = {{20, 0, 0x0F, 4}};
  EXPECT_EQ(JudgeOutput(run, lacking, account).why, "");
}

TEST(Judge, FindsFactsThatAreMissingOrWrong) {
  const char* const run = "info/nano/fast/none@0/1/text";
  const std::string whole =
      "Zoë's iPod on /dev/ttyS1\n" + std::string(kFacts) + "  Storage             1.02\n";
  const auto with = [&whole](const std::string& fact, const std::string& instead) {
    std::string changed = whole;
    return changed.replace(changed.find(fact), fact.size(), instead);
  };
  EXPECT_EQ(JudgeOutput(run, whole).why, "");
  EXPECT_EQ(JudgeOutput(run, with("5U8250SIM01", "5U8250SIM0")).why,
            R"(serial_number "5U8250SIM0" instead of "5U8250SIM01")");
  EXPECT_EQ(JudgeOutput(run, with("  Serial number       5U8250SIM01\n", "")).why,
            "no serial_number");
  EXPECT_EQ(JudgeOutput(run, with("1.0.4", "1.0.0")).why,
            R"(software_version "1.0.0" instead of "1.0.4")");
}

TEST(Judge, FindsASelfTestThatPassedWithSomethingUntrue) {
  const std::string passed =
      "Regression Test Started, port opened\npass  Set Up Connection Test\n      Enter Remote UI "
      "mode\npass  Ipod Information Zoë's iPod MB598LL 0014|0000 5U8250SIM01 1.0.4\n"
      "pass  Select Tracks from Album 0 Test\npass  Play Pause Stop Test\n"
      "pass  End of Regression Test\nAll 5 steps passed\n";
  const char* const run = "selftest/nano/fast/none@0/1/text";
  EXPECT_EQ(JudgeOutput(run, passed).why, "");
  std::string wrong = passed;
  wrong.replace(wrong.find("1.0.4"), 5, "1.0.0");
  EXPECT_EQ(JudgeOutput(run, wrong).verdict, Verdict::kLie);
  std::string failed = passed;
  failed.replace(failed.find("pass  Play"), 4, "FAIL");
  EXPECT_EQ(JudgeOutput(run, failed).why, R"("Play Pause Stop Test" failed)");
}

TEST(Judge, CallsWhatLastsTenMinutesAHang) {
  const Case run = CaseOf("info/nano/fast/none@0/1");
  const ipodsim::SimulatedIpod ipod(run.settings());
  EXPECT_EQ(Judge(run, {{1, "", "the iPod refused", 601, false}, {}, {}}, ipod, 0).verdict,
            Verdict::kHang);
  EXPECT_EQ(Judge(run, {{-1, "", "host waits for ever", 5, true}, {}, {}}, ipod, 0).verdict,
            Verdict::kHang);
}

// An iPod that gives out a name which is not its own lies as a shifted answer would, and through
// every layer.
TEST(Judge, FindsAWrongNameThatTheWholeProgramTells) {
  static const Trouble kLies = {
      "lies", Meddling::kNone, true, true,
      [](ipodsim::Settings& settings) { settings.name = "Somebody else's"; }};
  Case run = CaseOf("info/nano/fast/none@0/1");
  run.trouble = &kLies;
  std::vector<Report> reports;
  RunInChildren({run, CaseOf("info/nano/fast/none@0/1")}, 1,
                [&reports](const Report& report) { reports.push_back(report); });
  ASSERT_EQ(reports.size(), 2U);
  EXPECT_EQ(reports[0].judgement.verdict, Verdict::kLie);
  EXPECT_THAT(reports[0].judgement.why, HasSubstr("Somebody else's"));
  EXPECT_EQ(reports[1].judgement.verdict, Verdict::kRight);
  EXPECT_THAT(reports[1].judgement.why, IsEmpty());
}

TEST(Judge, KnowsEveryRunByItsName) {
  for (std::uint64_t number = 0; number < 500; ++number) {
    Case run = CaseByNumber(number, 3);
    run.place = 7;
    run.text = number % 2 != 0;
    const auto again = CaseByName(run.name());
    ASSERT_TRUE(again) << run.name();
    EXPECT_EQ(again->name(), run.name());
    EXPECT_EQ(again->arguments(), run.arguments());
  }
  EXPECT_FALSE(CaseByName("info/nano/fast/nothing@0/1"));
  EXPECT_FALSE(CaseByName("info"));
}

}  // namespace
}  // namespace truth
