// SPDX-License-Identifier: MIT
// The self-test on an iPod that passes it: what each step shows, sends and takes, and how steps
// follow each other.
#include "self_test_test.h"

namespace {

using test::kMillisecond;
using test::kPaused;
using test::kPlaying;
using test::kStopped;
using test::SelfTestTest;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class SelfTest : public SelfTestTest {};

// ---- Starting

TEST_F(SelfTest, StartOpensTheStoredPortAndTheFirstStep) {
  legacy_.closeport();
  ipodPeer::SelfTestStep(legacy_) = 3;
  world_.Record({"CreateFileW"});
  EXPECT_EQ(legacy_.startregressiontest(detail_), 1);
  EXPECT_THAT(world_.DrainRecord(), ElementsAre("CreateFileW(\"COM2:\")"));
  EXPECT_STREQ(detail_, L"Regression Test Started, port opened");
  EXPECT_EQ(ipodPeer::SelfTestStep(legacy_), 0U);
}

TEST_F(SelfTest, StartSaysSoAlsoWhenThePortDoesNotOpen) {
  legacy_.closeport();
  world_.FailOnce("CreateFileW", 1, 2);
  EXPECT_EQ(legacy_.startregressiontest(detail_), 0);
  EXPECT_STREQ(detail_, L"Regression Test Started, port opened");
  EXPECT_EQ(ipodPeer::SelfTestStep(legacy_), 0U);
}

TEST_F(SelfTest, StartWithThePortOpenFailsAndLeavesThatOpenOutOfReach) {
  EXPECT_EQ(legacy_.startregressiontest(detail_), 0);
  EXPECT_STREQ(detail_, L"Regression Test Started, port opened");
  EXPECT_EQ(legacy_.command_requestipodname(), 0);
  EXPECT_EQ(legacy_.closeport(), 1);
  EXPECT_TRUE(world_.line().open());
}

TEST_F(SelfTest, StartSendsNothing) {
  legacy_.closeport();
  EXPECT_EQ(legacy_.startregressiontest(nullptr), 1);
  world_.Advance(50 * kMillisecond);
  EXPECT_THAT(answering_.DrainFrames(), IsEmpty());
}

// ---- The steps

TEST_F(SelfTest, FirstStepSetsUpTheConnection) {
  CaptionFrames();
  const Step step = Perform(0);
  EXPECT_EQ(step.more, 1);
  EXPECT_EQ(step.result, 1);
  EXPECT_EQ(step.title, "Set Up Connection Test");
  EXPECT_EQ(step.detail, "Enter Remote UI mode");
  EXPECT_EQ(ipodPeer::TopSelectionResult(legacy_), 1);
  EXPECT_THAT(answering_.DrainFrames(),
              ElementsAre("Request Remote UI Mode For Communcation: FF 55 02 00 03 FB",
                          "Exit Remote UI Mode: FF 55 02 00 06 F8",
                          "Identify Device Lingos: FF 55 03 00 01 04 F8",
                          "Identify Device Lingos: FF 55 02 00 0D F1",
                          "Identify Device Lingos: FF 55 0E 00 13 00 00 00 1D 00 00 00 00 00 00 00 "
                          "00 C2",
                          "Enter Remote UI mode: FF 55 02 00 05 F9",
                          "Enter Remote UI mode: FF 55 04 04 00 3B 02 BB",
                          "Enter Remote UI mode: FF 55 04 04 00 18 05 DB"));
}

TEST_F(SelfTest, SecondStepGetsInformation) {
  CaptionFrames();
  const Step step = Perform(1);
  EXPECT_EQ(step.more, 1);
  EXPECT_EQ(step.result, 1);
  EXPECT_STREQ(title_, L"Ipod Information Zo\u00EB MA147 000b|0004 8K5 2.0.1");
  EXPECT_EQ(step.detail, "Getting Software Version");
  EXPECT_THAT(answering_.DrainFrames(), ElementsAre("Getting Model Name: FF 55 02 00 0D F1",
                                                    "Getting Ipod Name: FF 55 02 00 07 F7",
                                                    "Getting Serial Num: FF 55 02 00 0B F3",
                                                    "Getting Software Version: FF 55 02 00 09 F5",
                                                    "Getting Software Version: FF 55 02 00 0D F1"));
}

TEST_F(SelfTest, ThirdStepPlaysTwoTracksOfTheFirstAlbum) {
  CaptionFrames();
  const Step step = Perform(2);
  EXPECT_EQ(step.more, 1);
  EXPECT_EQ(step.result, 1);
  EXPECT_EQ(step.title, "Select Tracks from Album 0 Test");
  EXPECT_EQ(step.detail, "Compare Playing Track 1 Name to Selected Track Name");
  EXPECT_THAT(answering_.DrainFrames(),
              ElementsAre("Select Top Album Both: FF 55 03 04 00 16 E3",
                          "Select Top Album Both: FF 55 04 04 00 18 03 DD",
                          "Get Next Catorgized DB Record Index 0 Album: "
                          "FF 55 0C 04 00 1A 03 00 00 00 00 00 00 00 01 D2",
                          "Select Album Index 0: FF 55 08 04 00 17 03 00 00 00 00 DA",
                          "Select Album Index 0: FF 55 04 04 00 18 05 DB",
                          "Get Next Catorgized DB Record Index 0 Track: "
                          "FF 55 0C 04 00 1A 05 00 00 00 00 00 00 00 01 D0",
                          "Select Track 0: FF 55 04 04 00 29 02 CD",
                          "Select Track 0: FF 55 08 04 00 17 05 00 00 00 00 D8",
                          "Get Indexed Playing Track Title: FF 55 03 04 00 1E DB",
                          "Get Indexed Playing Track Title: FF 55 07 04 00 20 00 00 00 00 D5",
                          "Get Next Catorgized DB Record Index 1 Track: "
                          "FF 55 0C 04 00 1A 05 00 00 00 01 00 00 00 01 CF",
                          "Select Track 1: FF 55 04 04 00 29 02 CD",
                          "Select Track 1: FF 55 08 04 00 17 05 00 00 00 01 D7",
                          "Get Indexed Playing Track Title: FF 55 03 04 00 1E DB",
                          "Get Indexed Playing Track Title: FF 55 07 04 00 20 00 00 00 01 D4"));
}

TEST_F(SelfTest, FourthStepPlaysPausesAndStops) {
  CaptionFrames();
  const Step step = Perform(3);
  EXPECT_EQ(step.more, 1);
  EXPECT_EQ(step.result, 1);
  EXPECT_EQ(step.title, "Play Pause Stop Test");
  EXPECT_EQ(step.detail, "Setting to Stop");
  EXPECT_THAT(answering_.DrainFrames(), ElementsAre("Setting to Play: FF 55 03 04 00 1C DD",
                                                    "Setting to Play: FF 55 04 04 00 29 0A C5",
                                                    "Setting to Play: FF 55 03 04 00 1C DD",
                                                    "Setting to Pause: FF 55 04 04 00 29 01 CE",
                                                    "Setting to Pause: FF 55 03 04 00 1C DD",
                                                    "Setting to Stop: FF 55 04 04 00 29 02 CD",
                                                    "Setting to Stop: FF 55 03 04 00 1C DD"));
}

TEST_F(SelfTest, LastStepLeavesTheModeAndClosesThePort) {
  detail_[0] = L'x';
  const Step step = Perform(4);
  EXPECT_EQ(step.more, 0);
  EXPECT_EQ(step.result, 1);
  EXPECT_EQ(step.title, "End of Regression Test");
  EXPECT_EQ(step.detail, "");
  EXPECT_FALSE(world_.line().open());
}

TEST_F(SelfTest, LastStepSendsBeforeItCloses) {
  world_.Record({"WriteFile", "Sleep", "CloseHandle"});
  Perform(4);
  EXPECT_THAT(world_.DrainRecord(),
              ElementsAre("WriteFile(port1, FF)", "Sleep(5)", "WriteFile(port1, 55 02 00 06 F8)",
                          "CloseHandle(port1)"));
}

// ---- What is not looked at

TEST_F(SelfTest, RefusedTopSelectionIsNotedAndDoesNotCount) {
  ipodPeer::TopSelectionResult(legacy_) = 77;
  answering_.Answer("04 00 3B", "FF 55 06 04 00 01 02 00 3B B8");
  EXPECT_EQ(Perform(0).result, 1);
  EXPECT_EQ(ipodPeer::TopSelectionResult(legacy_), 0);
}

TEST_F(SelfTest, PlayingPlayerNeedsNoPlay) {
  answering_.AnswerNth("04 00 1C", 1, kPlaying);
  EXPECT_EQ(Perform(3).result, 1);
  const std::vector<std::string> frames = answering_.DrainFrames();
  ASSERT_EQ(frames.size(), 6U);
  EXPECT_EQ(frames[0], "FF 55 03 04 00 1C DD");
  EXPECT_EQ(frames[1], "FF 55 03 04 00 1C DD");
  EXPECT_EQ(frames[2], "FF 55 04 04 00 29 01 CE");
}

TEST_F(SelfTest, StatesAfterPauseAndStopAreNotCompared) {
  answering_.AnswerNth("04 00 1C", 3, kPlaying);
  answering_.AnswerNth("04 00 1C", 4, kPaused);
  EXPECT_EQ(Perform(3).result, 1);
}

TEST_F(SelfTest, AlbumOfOneTrackEndsWithTheFirstComparison) {
  answering_.Answer("04 00 18 05", "FF 55 07 04 00 19 00 00 00 01 DB");
  const Step step = Perform(2);
  EXPECT_EQ(step.result, 1);
  EXPECT_EQ(step.detail, "Compare Playing Track 0 Name to Selected Track Name");
  EXPECT_EQ(answering_.DrainFrames().size(), 10U);
}

TEST_F(SelfTest, AlbumOfTwoTracksPlaysBoth) {
  answering_.Answer("04 00 18 05", "FF 55 07 04 00 19 00 00 00 02 DA");
  EXPECT_EQ(Perform(2).detail, "Compare Playing Track 1 Name to Selected Track Name");
}

TEST_F(SelfTest, InformationIsCutToTheTitle) {
  std::string name = "FF 55 C8 00 08";  // 198 times 'n', and the checksum
  for (int i = 0; i < 198; ++i) name += " 6E";
  answering_.Answer("00 07", name + " 1C");
  std::string serial = "FF 55 C8 00 0C";
  for (int i = 0; i < 198; ++i) serial += " 73";
  answering_.Answer("00 0B", serial + " 3A");
  EXPECT_EQ(Perform(1).result, 1);
  const std::string begin = "Ipod Information " + std::string(198, 'n') + " MA147 000b|0004 ";
  EXPECT_EQ(Narrow(title_), begin + std::string(255 - begin.size(), 's'));
}

TEST_F(SelfTest, PercentSignsInTheNameStandForThemselves) {
  answering_.Answer("00 07", "FF 55 05 00 08 25 73 00 5B");  // %s
  EXPECT_EQ(Perform(1).result, 1);
  EXPECT_EQ(Narrow(title_), "Ipod Information %s MA147 000b|0004 8K5 2.0.1");
}

// ---- The sequence

TEST_F(SelfTest, FiveCallsReturnOneFourTimesAndThenZero) {
  legacy_.closeport();
  EXPECT_EQ(legacy_.startregressiontest(detail_), 1);
  std::vector<int> more;
  std::vector<int> results;
  for (int i = 0; i < 5; ++i) {
    const Step step = Next();
    more.push_back(step.more);
    results.push_back(step.result);
  }
  EXPECT_THAT(more, ElementsAre(1, 1, 1, 1, 0));
  EXPECT_THAT(results, ElementsAre(1, 1, 1, 1, 1));
}

TEST_F(SelfTest, FurtherCallsEndAgainOnTheClosedPort) {
  Perform(4);
  answering_.DrainFrames();
  world_.Advance(10 * kMillisecond);
  answering_.DrainFrames();
  for (int i = 0; i < 2; ++i) {
    Step step;
    EXPECT_EQ(Elapsed([&] { step = Next(); }), 5 * kMillisecond);
    EXPECT_EQ(step.more, 0);
    EXPECT_EQ(step.result, 0);  // nothing can be sent any more
    EXPECT_EQ(step.title, "End of Regression Test");
    EXPECT_EQ(step.detail, "");
  }
  EXPECT_EQ(ipodPeer::SelfTestStep(legacy_), 7U);
  EXPECT_THAT(answering_.DrainFrames(), IsEmpty());
}

TEST_F(SelfTest, OutputsAreOptional) {
  for (unsigned step = 0; step < 4; ++step) {
    ipodPeer::SelfTestStep(legacy_) = step;
    EXPECT_EQ(legacy_.nextregressiontest(nullptr, nullptr, nullptr), 1);
  }
  EXPECT_EQ(legacy_.nextregressiontest(nullptr, nullptr, nullptr), 0);
}

// ---- Times: 5 ms for each request, what is on the wire while an answer is awaited (173.6 us a
// byte), and the pauses while tracks begin to play

TEST_F(SelfTest, StepsTakeTheirPausesAndTheBytesOnTheWire) {
  EXPECT_EQ(Elapsed([&] { Perform(0); }), 8 * 5'000 + 11'984);
  EXPECT_EQ(Elapsed([&] { Perform(1); }), 5 * 5'000 + 15'111);
  EXPECT_EQ(Elapsed([&] { Perform(2); }), 15 * 5'000 + 49'494 + 2 * 2'000'000);
  EXPECT_EQ(Elapsed([&] { Perform(3); }), 7 * 5'000 + 24'139);
  EXPECT_EQ(Elapsed([&] { Perform(4); }), 5'000);
}

}  // namespace
