// SPDX-License-Identifier: MIT
// The self-test on iPods that fail it: every action failing in turn, and a silent iPod.
#include "self_test_test.h"
#include "support/packets.h"

namespace {

using test::kControlRefused;
using test::kMillisecond;
using test::kStopped;
using test::SelfTestTest;
using ::testing::ElementsAre;

constexpr const char* kSilent = "";
constexpr const char* kSelectRefused = "FF 55 06 04 00 01 04 00 17 DA";
constexpr const char* kNoRecords = "FF 55 07 04 00 19 00 00 00 00 DC";
constexpr const char* kNoName = "FF 55 08 04 00 1B 00 00 00 00 00 D9";
constexpr const char* kOtherTitle = "FF 55 0B 04 00 21 48 61 72 62 6F 75 72 00 FD";
constexpr const char* kTitleInLowerCase = "FF 55 0A 04 00 21 65 6E 67 69 6E 65 00 5B";

// An answer that makes an action fail, and the detail text that then stands.
struct Failure {
  const char* name;
  unsigned step;
  const char* request;
  unsigned nth;  // 0: always
  const char* answer;
  const char* detail;
};
void PrintTo(const Failure& row, std::ostream* out) { *out << row.name; }

class SelfTestFailure : public SelfTestTest, public ::testing::WithParamInterface<Failure> {};

TEST_P(SelfTestFailure, EndsTheStepAndNamesTheAction) {
  answering_.AnswerNth(GetParam().request, GetParam().nth, GetParam().answer);
  const Step step = Perform(GetParam().step);
  EXPECT_EQ(step.more, 1);
  EXPECT_EQ(step.result, 0);
  EXPECT_EQ(step.detail, GetParam().detail);
  EXPECT_EQ(ipodPeer::SelfTestStep(legacy_), GetParam().step + 1);
}

INSTANTIATE_TEST_SUITE_P(Connection, SelfTestFailure,
                         ::testing::Values(Failure{"no_remote_mode", 0, "00 05", 0, kSilent,
                                                   "Enter Remote UI mode"}),
                         test::RowName());

INSTANTIATE_TEST_SUITE_P(
    Information, SelfTestFailure,
    ::testing::Values(Failure{"no_model_name", 1, "00 0D", 1, kSilent, "Getting Model Name"},
                      Failure{"no_name", 1, "00 07", 0, kSilent, "Getting Ipod Name"},
                      Failure{"no_serial_number", 1, "00 0B", 0, kSilent, "Getting Serial Num"},
                      Failure{"no_version", 1, "00 09", 0, kSilent, "Getting Software Version"},
                      Failure{"version_0", 1, "00 09", 0, "FF 55 05 00 0A 00 02 01 EE",
                              "Getting Software Version"},
                      Failure{"no_model_number", 1, "00 0D", 2, kSilent,
                              "Getting Software Version"}),
    test::RowName());

INSTANTIATE_TEST_SUITE_P(
    Albums, SelfTestFailure,
    ::testing::Values(
        Failure{"no_ack_of_top", 2, "04 00 16", 0, kSilent, "Select Top Album Both"},
        Failure{"top_refused", 2, "04 00 16", 0, "FF 55 06 04 00 01 02 00 16 DD",
                "Select Top Album Both"},
        Failure{"no_count_of_albums", 2, "04 00 18 03", 0, kSilent, "Select Top Album Both"},
        Failure{"no_albums", 2, "04 00 18 03", 0, kNoRecords, "Select Top Album Both"},
        Failure{"no_album_record", 2, "04 00 1A 03", 0, kSilent,
                "Get Next Catorgized DB Record Index 0 Album"},
        Failure{"no_album_name", 2, "04 00 1A 03", 0, kNoName,
                "Get Next Catorgized DB Record Index 0 Album"},
        Failure{"no_ack_of_album", 2, "04 00 17 03", 0, kSilent, "Select Album Index 0"},
        Failure{"album_refused", 2, "04 00 17 03", 0, kSelectRefused, "Select Album Index 0"},
        Failure{"no_count_of_tracks", 2, "04 00 18 05", 0, kSilent, "Select Album Index 0"},
        Failure{"no_tracks", 2, "04 00 18 05", 0, kNoRecords, "Checking count > 0"}),
    test::RowName());

INSTANTIATE_TEST_SUITE_P(
    FirstTrack, SelfTestFailure,
    ::testing::Values(
        Failure{"no_record", 2, "04 00 1A 05 00 00 00 00", 0, kSilent,
                "Get Next Catorgized DB Record Index 0 Track"},
        Failure{"not_stopped", 2, "04 00 29 02", 1, kControlRefused, "Select Track 0"},
        Failure{"no_index", 2, "04 00 1E", 1, kSilent, "Get Indexed Playing Track Title"},
        Failure{"no_title", 2, "04 00 20 00 00 00 00", 0, kSilent,
                "Get Indexed Playing Track Title"},
        Failure{"another_plays", 2, "04 00 20 00 00 00 00", 0, kOtherTitle,
                "Compare Playing Track 0 Name to Selected Track Name"},
        Failure{"case_differs", 2, "04 00 20 00 00 00 00", 0, kTitleInLowerCase,
                "Compare Playing Track 0 Name to Selected Track Name"}),
    test::RowName());

INSTANTIATE_TEST_SUITE_P(
    SecondTrack, SelfTestFailure,
    ::testing::Values(
        Failure{"no_record", 2, "04 00 1A 05 00 00 00 01", 0, kSilent,
                "Get Next Catorgized DB Record Index 1 Track"},
        Failure{"not_stopped", 2, "04 00 29 02", 2, kControlRefused, "Select Track 1"},
        Failure{"no_index", 2, "04 00 1E", 2, kSilent, "Get Indexed Playing Track Title"},
        Failure{"no_title", 2, "04 00 20 00 00 00 01", 0, kSilent,
                "Get Indexed Playing Track Title"},
        Failure{"another_plays", 2, "04 00 20 00 00 00 01", 0, kOtherTitle,
                "Compare Playing Track 1 Name to Selected Track Name"}),
    test::RowName());

INSTANTIATE_TEST_SUITE_P(
    Playback, SelfTestFailure,
    ::testing::Values(
        Failure{"no_state_first", 3, "04 00 1C", 1, kSilent, "Setting to Play"},
        Failure{"play_refused", 3, "04 00 29 0A", 0, kControlRefused, "Setting to Play"},
        Failure{"no_state_after_play", 3, "04 00 1C", 2, kSilent, "Setting to Play"},
        Failure{"does_not_play", 3, "04 00 1C", 2, kStopped, "Setting to Play"},
        Failure{"pause_refused", 3, "04 00 29 01", 0, kControlRefused, "Setting to Pause"},
        Failure{"no_state_after_pause", 3, "04 00 1C", 3, kSilent, "Setting to Pause"},
        Failure{"stop_refused", 3, "04 00 29 02", 0, kControlRefused, "Setting to Stop"},
        Failure{"no_state_after_stop", 3, "04 00 1C", 4, kSilent, "Setting to Stop"}),
    test::RowName());

// ---- Requests that cannot be sent

struct Unsent {
  const char* name;
  unsigned write;  // two for each request before
  const char* detail;
};
void PrintTo(const Unsent& row, std::ostream* out) { *out << row.name; }

class UnsentRequest : public SelfTestTest, public ::testing::WithParamInterface<Unsent> {};

TEST_P(UnsentRequest, EndsTheFirstStepAndIsNamed) {
  world_.FailOnce("WriteFile", GetParam().write, 31);
  const Step step = Perform(0);
  EXPECT_EQ(step.result, 0);
  EXPECT_EQ(step.title, "Set Up Connection Test");
  EXPECT_EQ(step.detail, GetParam().detail);
}

INSTANTIATE_TEST_SUITE_P(Rows, UnsentRequest,
                         ::testing::Values(Unsent{"request_mode", 1,
                                                  "Request Remote UI Mode For Communcation"},
                                           Unsent{"exit_mode", 3, "Exit Remote UI Mode"},
                                           Unsent{"identify", 9, "Identify Device Lingos"},
                                           Unsent{"enter_mode", 11, "Enter Remote UI mode"}),
                         test::RowName());

class FailingStep : public SelfTestTest {};

TEST_F(FailingStep, WithoutRemoteModeNothingIsSelected) {
  ipodPeer::TopSelectionResult(legacy_) = 77;
  answering_.Answer("00 05", kSilent);
  Perform(0);
  EXPECT_EQ(ipodPeer::TopSelectionResult(legacy_), 77);
  EXPECT_EQ(answering_.DrainFrames().back(), "FF 55 02 00 05 F9");
}

TEST_F(FailingStep, InformationThatIsNotWholeLeavesTheTitle) {
  answering_.AnswerNth("00 0D", 2, kSilent);
  EXPECT_EQ(Perform(1).title, "Get Information Test");
}

TEST_F(FailingStep, EndFailsWhenItCannotBeSentAndClosesThePortAllTheSame) {
  world_.FailOnce("WriteFile", 1, 31);
  const Step step = Perform(4);
  EXPECT_EQ(step.more, 0);
  EXPECT_EQ(step.result, 0);
  EXPECT_EQ(step.title, "End of Regression Test");
  EXPECT_FALSE(world_.line().open());
}

// ---- A silent iPod

TEST_F(FailingStep, SilentIpodFailsEachStepAfterASilenceForEachAnswer) {
  constexpr std::int64_t kSending = 5 * kMillisecond;
  world_.line().Unplug();
  legacy_.closeport();
  EXPECT_EQ(legacy_.startregressiontest(detail_), 1);

  Step step;
  // Six requests; the model and twice the ACK are awaited, with a pause before the second wait.
  EXPECT_EQ(Elapsed([&] { step = Next(); }),
            6 * kSending + 3 * test::kEmptyReadsUs + 20 * kMillisecond);
  EXPECT_EQ(step.result, 0);
  EXPECT_EQ(step.detail, "Enter Remote UI mode");
  EXPECT_EQ(Elapsed([&] { step = Next(); }), kSending + test::kEmptyReadsUs);
  EXPECT_EQ(step.result, 0);
  EXPECT_EQ(step.detail, "Getting Model Name");
  EXPECT_EQ(Elapsed([&] { step = Next(); }), kSending + test::kEmptyReadsUs);
  EXPECT_EQ(step.result, 0);
  EXPECT_EQ(step.detail, "Select Top Album Both");
  EXPECT_EQ(Elapsed([&] { step = Next(); }), kSending + test::kEmptyReadsUs);
  EXPECT_EQ(step.result, 0);
  EXPECT_EQ(step.detail, "Setting to Play");
  EXPECT_EQ(step.more, 1);
  EXPECT_EQ(Elapsed([&] { step = Next(); }), kSending);
  EXPECT_EQ(step.result, 1);  // a silent iPod does not keep a frame from being sent
  EXPECT_EQ(step.more, 0);
}

TEST_F(FailingStep, ClosedPortFailsEachStepAtOnce) {
  legacy_.closeport();
  std::vector<int> results;
  for (unsigned number = 0; number < 5; ++number) {
    EXPECT_EQ(Elapsed([&] { results.push_back(Perform(number).result); }), 5 * kMillisecond);
  }
  EXPECT_THAT(results, ElementsAre(0, 0, 0, 0, 0));
}

}  // namespace
