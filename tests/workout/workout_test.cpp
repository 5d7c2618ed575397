// SPDX-License-Identifier: MIT
// Whole workouts on the wire: every frame of a document, the checks before it in their order, and
// what is told when the iPod refuses or falls silent at any step.
#include "support/answering_ipod.h"
#include "support/session_test.h"

namespace {

using test::AnsweringIpod;
using test::kMillisecond;
using test::kSecond;
using test::SessionTest;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;
using ::testing::SizeIs;

constexpr const char* kSilence = "";
constexpr const char* kWriteRefusal = "FF 55 05 0C 00 05 07 2A B9";
constexpr const char* kWriteAck = "FF 55 05 0C 00 00 07 2A BE";

class Workout : public SessionTest {
 protected:
  // The iPod knows workouts and acknowledges everything; the file's handle is 2A.
  Workout() {
    answering_.Answer("09 83", "FF 55 05 09 84 00 03 05 66");
    answering_.Answer("0C 01",
                      "FF 55 18 0C 02 00 00 00 00 40 00 00 00 00 10 00 00 00 F0 00 00 00 00 00 00 "
                      "01 02 97");
    answering_.Answer("0C 10", "FF 55 0A 0C 11 00 00 00 00 40 00 00 00 99");
    answering_.Answer("0C 12", "FF 55 03 0C 04 2A C3");
    answering_.Answer("0C 07", kWriteAck);
    answering_.Answer("0C 08", "FF 55 05 0C 00 00 08 2A BD");
    world_.line().Plug(answering_);
  }
  ~Workout() override { world_.line().Unplug(); }

  int Start(const wchar_t* model = L"T9",
            tagIPOD_EQUIPMENT_TYPE equipment = IPOD_EQUIPMENT_TYPE_ELLIPTICAL) {
    return session_.Sports_StartWorkout(L"AC&amp;ME", L"Zo\u00EB <\u6771>&", model, L"SN-0042",
                                        equipment, 70.5);
  }
  int Interval(double kcal = 0) {
    return session_.Sports_IntervalWorkout(IPOD_INTERVAL_TYPE_START, 0, kcal, 0,
                                           IPOD_DISTANCE_TYPE_KM, 0, IPOD_SPEED_TYPE_PACE, 0, 0,
                                           -1);
  }
  int Finish(tagIPOD_SPEED_TYPE speed_type = IPOD_SPEED_TYPE_SPM) {
    return session_.Sports_FinishWorkout(3600, 450.25, 120.5, IPOD_DISTANCE_TYPE_FLOORS, 96.9,
                                         speed_type, 140);
  }
  std::vector<std::string> DrainFrames() {
    world_.Advance(50 * kMillisecond);
    return answering_.DrainFrames();
  }
  std::vector<std::string> DrainKinds() {
    world_.Advance(50 * kMillisecond);
    return answering_.DrainKinds();
  }
  std::vector<AnsweringIpod::Write> DrainWrites() {
    world_.Advance(50 * kMillisecond);
    return answering_.DrainWrites();
  }
  std::uint32_t Offset() { return CIpodCommPeer::StorageWriteOffset(session_); }
  int Handle() { return CIpodCommPeer::OpenFileHandle(session_); }

  AnsweringIpod answering_;
};

constexpr const char* kAskSportsCaps = "FF 55 02 09 83 72";
constexpr const char* kAskStorageCaps = "FF 55 02 0C 01 F1";
constexpr const char* kAskFreeSpace = "FF 55 02 0C 10 E2";
// Gym equipment, options 0000000B, </gymData>
constexpr const char* kOpen = "FF 55 11 0C 12 02 00 00 00 0B 3C 2F 67 79 6D 44 61 74 61 3E 54";
constexpr const char* kClose = "FF 55 03 0C 08 2A BF";

constexpr const char* kHeader[] = {
    // <?xml version="1.0" encoding="UTF-8"?>
    "FF 55 2E 0C 07 00 00 00 00 2A 3C 3F 78 6D 6C 20 76 65 72 73 69 6F 6E 3D 22 31 2E 30 "
    "22 20 65 6E 63 6F 64 69 6E 67 3D 22 55 54 46 2D 38 22 3F 3E 0A D0",
    // <gymData>
    "FF 55 11 0C 07 00 00 00 27 2A 3C 67 79 6D 44 61 74 61 3E 0A 40",
    // <vers>1</vers>
    "FF 55 17 0C 07 00 00 00 31 2A 09 3C 76 65 72 73 3E 31 3C 2F 76 65 72 73 3E 0A 94",
    // <equipmentInfo>
    "FF 55 18 0C 07 00 00 00 41 2A 09 3C 65 71 75 69 70 6D 65 6E 74 49 6E 66 6F 3E 0A 79",
    // <manufacturerID>AC&amp;ME</manufacturerID>
    "FF 55 34 0C 07 00 00 00 52 2A 09 09 3C 6D 61 6E 75 66 61 63 74 75 72 65 72 49 44 3E "
    "41 43 26 61 6D 70 3B 4D 45 3C 2F 6D 61 6E 75 66 61 63 74 75 72 65 72 49 44 3E 0A 15",
    // <manufacturerName>Zoë <東>&</manufacturerName>
    "FF 55 3A 0C 07 00 00 00 7F 2A 09 09 3C 6D 61 6E 75 66 61 63 74 75 72 65 72 4E 61 6D "
    "65 3E 5A 6F C3 AB 20 3C E6 9D B1 3E 26 3C 2F 6D 61 6E 75 66 61 63 74 75 72 65 72 4E "
    "61 6D 65 3E 0A 84",
    // <type>Elliptical</type>
    "FF 55 21 0C 07 00 00 00 B2 2A 09 09 3C 74 79 70 65 3E 45 6C 6C 69 70 74 69 63 61 6C "
    "3C 2F 74 79 70 65 3E 0A 2A",
    // <model>T9</model>
    "FF 55 1B 0C 07 00 00 00 CC 2A 09 09 3C 6D 6F 64 65 6C 3E 54 39 3C 2F 6D 6F 64 65 6C "
    "3E 0A EE",
    // <serialNumber>SN-0042</serialNumber>
    "FF 55 2E 0C 07 00 00 00 E0 2A 09 09 3C 73 65 72 69 61 6C 4E 75 6D 62 65 72 3E 53 4E "
    "2D 30 30 34 32 3C 2F 73 65 72 69 61 6C 4E 75 6D 62 65 72 3E 0A 10",
    // </equipmentInfo>
    "FF 55 19 0C 07 00 00 01 07 2A 09 3C 2F 65 71 75 69 70 6D 65 6E 74 49 6E 66 6F 3E 0A "
    "82",
    // <userInfo>
    "FF 55 13 0C 07 00 00 01 19 2A 09 3C 75 73 65 72 49 6E 66 6F 3E 0A BE",
    // <kg>70.5</kg>
    "FF 55 17 0C 07 00 00 01 25 2A 09 09 3C 6B 67 3E 37 30 2E 35 3C 2F 6B 67 3E 0A D9",
    // </userInfo>
    "FF 55 14 0C 07 00 00 01 35 2A 09 3C 2F 75 73 65 72 49 6E 66 6F 3E 0A 72",
};
constexpr const char* kStart =
    "FF 55 94 0C 07 00 00 01 42 2A 09 3C 69 6E 74 65 72 76 61 6C 3E 0A 09 09 3C 65 76 65 "
    "6E 74 3E 73 74 61 72 74 3C 2F 65 76 65 6E 74 3E 0A 09 09 3C 73 65 63 3E 30 3C 2F 73 "
    "65 63 3E 0A 09 09 3C 6B 43 61 6C 3E 30 2E 30 30 3C 2F 6B 43 61 6C 3E 0A 09 09 3C 6B "
    "6D 3E 30 2E 30 30 3C 2F 6B 6D 3E 0A 09 09 3C 70 61 63 65 3E 30 3C 2F 70 61 63 65 3E "
    "0A 09 09 3C 69 6E 63 6C 69 6E 65 3E 30 2E 30 3C 2F 69 6E 63 6C 69 6E 65 3E 0A 09 3C "
    "2F 69 6E 74 65 72 76 61 6C 3E 0A 71";
constexpr const char* kContinue =
    "FF 55 C8 0C 07 00 00 01 CF 2A 09 3C 69 6E 74 65 72 76 61 6C 3E 0A 09 09 3C 65 76 65 "
    "6E 74 3E 63 6F 6E 74 69 6E 75 65 3C 2F 65 76 65 6E 74 3E 0A 09 09 3C 73 65 63 3E 33 "
    "36 30 30 3C 2F 73 65 63 3E 0A 09 09 3C 6B 43 61 6C 3E 34 35 30 2E 32 35 3C 2F 6B 43 "
    "61 6C 3E 0A 09 09 3C 66 6C 6F 6F 72 73 3E 31 32 30 2E 35 3C 2F 66 6C 6F 6F 72 73 3E "
    "0A 09 09 3C 73 70 6D 3E 39 36 3C 2F 73 70 6D 3E 0A 09 09 3C 69 6E 63 6C 69 6E 65 3E "
    "32 2E 35 3C 2F 69 6E 63 6C 69 6E 65 3E 0A 09 09 3C 62 70 6D 3E 31 34 30 3C 2F 62 70 "
    "6D 3E 0A 09 09 3C 6C 65 76 65 6C 3E 30 3C 2F 6C 65 76 65 6C 3E 0A 09 3C 2F 69 6E 74 "
    "65 72 76 61 6C 3E 0A 19";
constexpr const char* kSummary =
    "FF 55 8E 0C 07 00 00 02 90 2A 09 3C 77 6F 72 6B 6F 75 74 53 75 6D 6D 61 72 79 3E 0A "
    "09 09 3C 73 65 63 3E 33 36 30 30 3C 2F 73 65 63 3E 0A 09 09 3C 6B 43 61 6C 3E 34 35 "
    "30 2E 32 35 3C 2F 6B 43 61 6C 3E 0A 09 09 3C 66 6C 6F 6F 72 73 3E 31 32 30 2E 35 3C "
    "2F 66 6C 6F 6F 72 73 3E 0A 09 09 3C 73 70 6D 3E 39 36 3C 2F 73 70 6D 3E 0A 09 09 3C "
    "62 70 6D 3E 31 34 30 3C 2F 62 70 6D 3E 0A 09 3C 2F 77 6F 72 6B 6F 75 74 53 75 6D 6D "
    "61 72 79 3E 0A 68";

constexpr const char* kIntervalText =
    "\t<interval>\n\t\t<event>start</event>\n\t\t<sec>0</sec>\n\t\t<kCal>0.00</kCal>\n"
    "\t\t<km>0.00</km>\n\t\t<pace>0</pace>\n\t\t<incline>0.0</incline>\n\t</interval>\n";
constexpr const char* kSummaryText =
    "\t<workoutSummary>\n\t\t<sec>3600</sec>\n\t\t<kCal>450.25</kCal>\n"
    "\t\t<floors>120.5</floors>\n\t\t<spm>96</spm>\n\t\t<bpm>140</bpm>\n\t</workoutSummary>\n";

std::string Report(const std::string& text) {
  return "Failed to write xml file data! [" + text + "]\r\n";
}

// ---- A document ---------------------------------------------------------------------------------

TEST_F(Workout, IsWrittenFrameByFrame) {
  EXPECT_EQ(Start(), 1);
  std::vector<std::string> sent = {kAskSportsCaps, kAskStorageCaps, kAskFreeSpace, kOpen};
  sent.insert(sent.end(), std::begin(kHeader), std::end(kHeader));
  EXPECT_THAT(DrainFrames(), ElementsAreArray(sent));
  EXPECT_EQ(Offset(), 322U);
  EXPECT_EQ(Handle(), 0x2A);

  EXPECT_EQ(Interval(), 1);
  EXPECT_THAT(DrainFrames(), ElementsAre(kStart));
  EXPECT_EQ(session_.Sports_IntervalWorkout(IPOD_INTERVAL_TYPE_CONTINUE, 3600, 450.25, 120.5,
                                            IPOD_DISTANCE_TYPE_FLOORS, 96.9, IPOD_SPEED_TYPE_SPM,
                                            2.5, 140, 0),
            1);
  EXPECT_THAT(DrainFrames(), ElementsAre(kContinue));
  EXPECT_EQ(Offset(), 656U);

  EXPECT_EQ(Finish(), 1);
  EXPECT_THAT(DrainFrames(), ElementsAre(kSummary, kClose));
  EXPECT_EQ(Offset(), 791U);
  EXPECT_THAT(DrainDebugOutput(), IsEmpty());
  EXPECT_THAT(test::DrainTraceLog(), IsEmpty());
}

TEST_F(Workout, WriteTakesTheSyncPauseAndTheAnswersBytes) {
  // 20 ms after the sync byte; 2 ms for each of the answer's 9 bytes; 154 bytes out and the first
  // one back at 57600 baud need 27 ms.
  const auto elapsed_us = Elapsed([&] { EXPECT_EQ(Interval(), 1); });
  EXPECT_GE(elapsed_us, (20 + 8 * 2) * kMillisecond);
  EXPECT_LE(elapsed_us, (20 + 9 * 2 + 27 + 6) * kMillisecond);
}

TEST_F(Workout, HeaderNamesTheEquipment) {
  const char* const lines[] = {"\t\t<type>Treadmill</type>\n", "\t\t<type>Elliptical</type>\n",
                               "\t\t<type>Stepper</type>\n", "\t\t<type>Bike</type>\n",
                               "\t\t<type>Other</type>\n"};
  for (int type = 0; type < 5; ++type) {
    EXPECT_EQ(Start(L"T9", static_cast<tagIPOD_EQUIPMENT_TYPE>(type)), 1);
    const auto writes = DrainWrites();
    ASSERT_THAT(writes, SizeIs(13));
    EXPECT_EQ(writes[6].text, lines[type]);
  }
  EXPECT_EQ(Start(L"T9", static_cast<tagIPOD_EQUIPMENT_TYPE>(7)), 1);
  const auto writes = DrainWrites();
  ASSERT_THAT(writes, SizeIs(12));
  EXPECT_EQ(writes[6].text, "\t\t<model>T9</model>\n");
}

TEST_F(Workout, SecondStartBeginsANewFile) {
  EXPECT_EQ(Start(), 1);
  EXPECT_EQ(Interval(), 1);
  DrainWrites();
  answering_.Answer("0C 12", "FF 55 03 0C 04 2B C2");
  EXPECT_EQ(Start(), 1);
  const auto writes = DrainWrites();
  EXPECT_EQ(writes[0].offset, 0U);
  for (const auto& write : writes) EXPECT_EQ(write.handle, 0x2B);
  EXPECT_EQ(Offset(), 322U);
}

TEST_F(Workout, IntervalAndFinishUseTheHandleThereIsWithoutAStart) {
  EXPECT_EQ(Interval(), 1);
  EXPECT_EQ(Finish(), 1);
  world_.Advance(50 * kMillisecond);
  const auto frames = answering_.DrainFrames();
  ASSERT_THAT(frames, SizeIs(3));
  EXPECT_EQ(frames[0].substr(0, 29), "FF 55 94 0C 07 00 00 00 00 00");  // offset 0, handle 0
  EXPECT_EQ(frames[1].substr(0, 29), "FF 55 8E 0C 07 00 00 00 8D 00");
  EXPECT_EQ(frames[2], "FF 55 03 0C 08 00 E9");
}

TEST_F(Workout, SummaryIgnoresTheSpeedType) {
  for (const int type : {0, 1, 2, 7}) {
    EXPECT_EQ(Finish(static_cast<tagIPOD_SPEED_TYPE>(type)), 1);
    const auto writes = DrainWrites();
    ASSERT_THAT(writes, SizeIs(1));
    EXPECT_EQ(writes[0].text, kSummaryText);
  }
}

// ---- The checks before it, in their order -------------------------------------------------------

TEST_F(Workout, WithoutAnswerAboutSportsIsNotStarted) {
  answering_.Answer("09 83", kSilence);
  EXPECT_EQ(Start(), 0);
  EXPECT_THAT(DrainKinds(), ElementsAre("09 83", "09 83", "09 83"));
  EXPECT_THAT(DrainDebugOutput(), IsEmpty());
}

TEST_F(Workout, WithoutTheGymCapabilityIsNotStartedAndSaysSo) {
  for (const char* caps : {"FF 55 05 09 84 00 00 00 6E", "FF 55 05 09 84 00 02 00 6C"}) {
    answering_.Answer("09 83", caps);
    EXPECT_EQ(Start(), 0);
    EXPECT_THAT(DrainKinds(), ElementsAre("09 83"));
    EXPECT_THAT(DrainDebugOutput(), ElementsAre("Gym caps not supported!\r\n"));
  }
}

TEST_F(Workout, NeedsTheGymCapabilityOnly) {
  for (const char* caps : {"FF 55 05 09 84 00 01 00 6D", "FF 55 05 09 84 80 01 00 ED"}) {
    answering_.Answer("09 83", caps);
    EXPECT_EQ(Start(), 1);
  }
  EXPECT_THAT(DrainDebugOutput(), IsEmpty());
}

TEST_F(Workout, WithoutAnswerAboutStorageIsNotStarted) {
  answering_.Answer("0C 01", kSilence);
  EXPECT_EQ(Start(), 0);
  EXPECT_THAT(DrainKinds(), ElementsAre("09 83", "0C 01", "0C 01", "0C 01"));
  EXPECT_THAT(DrainDebugOutput(), IsEmpty());
}

TEST_F(Workout, WithWritesBelow128BytesIsNotStartedAndSaysSo) {
  answering_.Answer("0C 01",
                    "FF 55 18 0C 02 00 00 00 00 40 00 00 00 00 10 00 00 00 7F 00 00 00 "
                    "00 00 00 01 02 08");
  EXPECT_EQ(Start(), 0);
  EXPECT_THAT(DrainKinds(), ElementsAre("09 83", "0C 01"));
  EXPECT_THAT(DrainDebugOutput(), ElementsAre("Storage write size too small!\r\n"));
}

TEST_F(Workout, IsStartedWithWritesOf128Bytes) {
  answering_.Answer("0C 01",
                    "FF 55 18 0C 02 00 00 00 00 40 00 00 00 00 10 00 00 00 80 00 00 00 "
                    "00 00 00 01 02 07");
  EXPECT_EQ(Start(), 1);
  EXPECT_THAT(DrainDebugOutput(), IsEmpty());
}

TEST_F(Workout, WithTooLittleSpaceIsNotStartedAndSaysNothing) {
  for (const char* space :
       {"FF 55 0A 0C 11 00 00 00 00 00 4F FF FF 8C",     // a byte below 5 MiB
        "FF 55 0A 0C 11 80 00 00 00 00 00 00 00 59",     // the least number there is
        "FF 55 0A 0C 11 FF 00 00 00 00 00 00 00 DA"}) {  // negative
    answering_.Answer("0C 10", space);
    EXPECT_EQ(Start(), 0);
    EXPECT_THAT(DrainKinds(), ElementsAre("09 83", "0C 01", "0C 10"));
    EXPECT_THAT(DrainDebugOutput(), IsEmpty());
  }
}

TEST_F(Workout, IsStartedWithSpaceOfFiveMebibytes) {
  answering_.Answer("0C 10", "FF 55 0A 0C 11 00 00 00 00 00 50 00 00 89");
  EXPECT_EQ(Start(), 1);
}

TEST_F(Workout, IsStartedThoughTheFreeSpaceIsNotTold) {
  answering_.Answer("0C 10", kSilence);
  EXPECT_EQ(Start(), 1);
  EXPECT_THAT(DrainWrites(), SizeIs(13));
  answering_.Answer("0C 10", "FF 55 05 0C 00 05 10 00 DA");
  EXPECT_EQ(Start(), 1);
  EXPECT_THAT(DrainDebugOutput(), IsEmpty());
}

TEST_F(Workout, RefusedFileIsReportedAndNothingIsWritten) {
  CIpodCommPeer::OpenFileHandle(session_) = 7;
  answering_.Answer("0C 12", "FF 55 05 0C 00 05 12 2A AE");
  EXPECT_EQ(Start(), 0);
  EXPECT_THAT(DrainKinds(), ElementsAre("09 83", "0C 01", "0C 10", "0C 12", "0C 12", "0C 12"));
  EXPECT_THAT(DrainDebugOutput(), ElementsAre("Failed to open iPod feature file!\r\n"));
  EXPECT_EQ(Handle(), 7);
}

TEST_F(Workout, FileThatIsNotOpenedInTimeIsReported) {
  answering_.Answer("0C 12", kSilence);
  EXPECT_EQ(Start(), 0);
  EXPECT_THAT(DrainDebugOutput(), ElementsAre("Failed to open iPod feature file!\r\n"));
}

TEST_F(Workout, ChecksAreRepeatedLikeAnyCommand) {
  answering_.AnswerInTurn("09 83", {kSilence, "FF 55 05 09 84 00 03 05 66"});
  answering_.AnswerInTurn("0C 12", {kSilence, kSilence, "FF 55 03 0C 04 2A C3"});
  EXPECT_EQ(Start(), 1);
  EXPECT_EQ(Handle(), 0x2A);
}

// ---- Failures on the way ------------------------------------------------------------------------

TEST_F(Workout, RefusedHeaderLineIsReportedLeavesAGapAndDoesNotCount) {
  answering_.AnswerInTurn("0C 07", {kWriteAck, kWriteRefusal, kWriteAck});
  EXPECT_EQ(Start(), 1);
  EXPECT_THAT(DrainDebugOutput(), ElementsAre(Report("<gymData>\n")));
  const auto writes = DrainWrites();
  ASSERT_THAT(writes, SizeIs(13));
  EXPECT_EQ(writes[1].offset, 39U);
  EXPECT_EQ(writes[2].offset, 49U);
  EXPECT_EQ(writes[2].text, "\t<vers>1</vers>\n");
}

// A write is of at most 512 bytes: 9 of the line and 503 of the name. It fits no frame, so it is a
// gap of that length, reported with the whole line.
TEST_F(Workout, HeaderLineOfALongNameIsCutByItsWriteOnly) {
  const std::wstring model(600, L'x');
  EXPECT_EQ(Start(model.c_str()), 1);
  EXPECT_THAT(DrainDebugOutput(),
              ElementsAre(Report("\t\t<model>" + std::string(600, 'x') + "</model>\n")));
  const auto writes = DrainWrites();
  ASSERT_THAT(writes, SizeIs(12));
  EXPECT_EQ(writes[7].offset, 0xCCU + 512U);
}

TEST_F(Workout, SummaryOfHugeNumbersIsCutByItsWriteOnly) {
  session_.Sports_FinishWorkout(1, 1e308, 1e308, IPOD_DISTANCE_TYPE_KM, 1, IPOD_SPEED_TYPE_PACE, 1);
  EXPECT_EQ(Offset(), 512U);
}

// The file's opening takes the first block, each line one for its text and one for its write.
TEST_F(Workout, HeaderLineForWhichThereIsNoMemoryIsReportedAndTheOthersFollow) {
  world_.FailOnce("LocalAlloc", 4, 8);
  EXPECT_EQ(Start(), 1);
  EXPECT_THAT(DrainDebugOutput(), ElementsAre(Report("(null)")));
  const auto writes = DrainWrites();
  ASSERT_THAT(writes, SizeIs(12));
  EXPECT_EQ(writes[1].offset, 39U);
  EXPECT_EQ(writes[1].text, "\t<vers>1</vers>\n");
  tagIPOD_WORKOUT_FILE file = {};
  session_.GetWorkoutFile(&file);
  EXPECT_EQ(file.failed_writes, 1U);
}

TEST_F(Workout, EveryFailureOfTheHeapIsReportedAndLeavesNothingBehind) {
  const std::size_t before = world_.leftovers().size();
  for (unsigned failing = 1; failing <= 30; ++failing) {
    world_.FailOnce("LocalAlloc", failing, 8);
    const int started = Start();
    const int recorded = Interval();
    const int finished = Finish();
    world_.ClearFaults();
    EXPECT_EQ(DrainDebugOutput().size(), failing <= 29 ? 1U : 0U) << failing;
    EXPECT_EQ(started, failing == 1 ? 0 : 1) << failing;
    EXPECT_EQ(recorded, failing == 28 ? 0 : 1) << failing;
    EXPECT_EQ(finished, 1) << failing;
    EXPECT_EQ(world_.leftovers().size(), before) << failing;
  }
}

TEST_F(Workout, HeaderIsWrittenToTheEndThoughEveryLineIsRefused) {
  answering_.Answer("0C 07", kWriteRefusal);
  EXPECT_EQ(Start(), 1);
  EXPECT_THAT(
      DrainDebugOutput(),
      ElementsAre(Report("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"), Report("<gymData>\n"),
                  Report("\t<vers>1</vers>\n"), Report("\t<equipmentInfo>\n"),
                  Report("\t\t<manufacturerID>AC&amp;ME</manufacturerID>\n"),
                  Report("\t\t<manufacturerName>Zo\xC3\xAB <\xE6\x9D\xB1>&"
                         "</manufacturerName>\n"),
                  Report("\t\t<type>Elliptical</type>\n"), Report("\t\t<model>T9</model>\n"),
                  Report("\t\t<serialNumber>SN-0042</serialNumber>\n"),
                  Report("\t</equipmentInfo>\n"), Report("\t<userInfo>\n"),
                  Report("\t\t<kg>70.5</kg>\n"), Report("\t</userInfo>\n")));
  EXPECT_EQ(Offset(), 322U);
}

TEST_F(Workout, HeaderLineBeyondAFrameIsReportedAndTheOthersFollowBehindTheGap) {
  const std::wstring model(232, L'x');  // 249 bytes with its element
  EXPECT_EQ(Start(model.c_str()), 1);
  const std::string line = "\t\t<model>" + std::string(232, 'x') + "</model>\n";
  EXPECT_THAT(DrainDebugOutput(), ElementsAre(Report(line)));
  const auto writes = DrainWrites();
  ASSERT_THAT(writes, SizeIs(12));
  EXPECT_EQ(writes[7].text, "\t\t<serialNumber>SN-0042</serialNumber>\n");
  EXPECT_EQ(writes[7].offset, writes[6].offset + writes[6].text.size() + line.size());
}

TEST_F(Workout, RefusedIntervalIsReportedAndLeavesAGap) {
  answering_.AnswerInTurn("0C 07", {kWriteRefusal, kWriteAck});
  EXPECT_EQ(Interval(), 0);
  EXPECT_EQ(Interval(), 1);
  const auto writes = DrainWrites();
  ASSERT_THAT(writes, SizeIs(2));
  EXPECT_EQ(writes[0].offset, 0U);
  EXPECT_EQ(writes[1].offset, 141U);
  EXPECT_EQ(writes[1].text, kIntervalText);
  EXPECT_THAT(DrainDebugOutput(), ElementsAre(Report(kIntervalText)));
}

TEST_F(Workout, UnansweredIntervalIsTriedThreeTimesAndReported) {
  answering_.Answer("0C 07", kSilence);
  EXPECT_EQ(Interval(), 0);
  const auto writes = DrainWrites();
  ASSERT_THAT(writes, SizeIs(3));
  for (const auto& write : writes) EXPECT_EQ(write.offset, 0U);
  EXPECT_EQ(Offset(), 141U);
  EXPECT_THAT(DrainDebugOutput(), ElementsAre(Report(kIntervalText)));
}

TEST_F(Workout, IntervalOfHugeNumbersIsReportedAndNotSent) {
  EXPECT_EQ(Interval(2e200), 0);
  EXPECT_THAT(DrainFrames(), IsEmpty());
  EXPECT_EQ(Offset(), 341U);  // 201 digits instead of one
  const auto output = DrainDebugOutput();
  ASSERT_THAT(output, SizeIs(1));
  EXPECT_THAT(output[0], ::testing::EndsWith(".00</kCal>\n\t\t<km>0.00</km>\n\t\t<pace>0</pace>\n"
                                             "\t\t<incline>0.0</incline>\n\t</interval>\n]\r\n"));
}

TEST_F(Workout, RefusedSummaryIsReportedAndTheFileClosed) {
  answering_.Answer("0C 07", kWriteRefusal);
  EXPECT_EQ(Finish(), 1);
  EXPECT_THAT(DrainKinds(), ElementsAre("0C 07", "0C 08"));
  EXPECT_THAT(DrainDebugOutput(), ElementsAre(Report(kSummaryText)));
}

// Neither the start's result nor the finish's tells of a missing line.
TEST_F(Workout, FileTellsItsHandleItsOffsetAndWhatWasNotWritten) {
  answering_.AnswerInTurn("0C 07", {kWriteRefusal, kWriteRefusal, kWriteAck});
  EXPECT_EQ(Start(), 1);
  tagIPOD_WORKOUT_FILE file = {};
  EXPECT_EQ(session_.GetWorkoutFile(&file), 1);
  EXPECT_EQ(file.handle, 0x2AU);
  EXPECT_EQ(file.write_offset, 322U);
  EXPECT_EQ(file.failed_writes, 2U);
  answering_.Answer("0C 07", kWriteRefusal);
  EXPECT_EQ(Interval(), 0);
  EXPECT_EQ(Finish(), 1);
  session_.GetWorkoutFile(&file);
  EXPECT_EQ(file.failed_writes, 4U);
}

TEST_F(Workout, NextFileHasNothingMissingYet) {
  answering_.Answer("0C 07", kWriteRefusal);
  EXPECT_EQ(Start(), 1);
  answering_.Answer("0C 07", kWriteAck);
  EXPECT_EQ(Start(), 1);
  tagIPOD_WORKOUT_FILE file = {};
  session_.GetWorkoutFile(&file);
  EXPECT_EQ(file.failed_writes, 0U);
}

TEST_F(Workout, RefusedClosingFailsAndSaysNothing) {
  answering_.Answer("0C 08", "FF 55 05 0C 00 05 08 2A B8");
  EXPECT_EQ(Finish(), 0);
  EXPECT_THAT(DrainKinds(), ElementsAre("0C 07", "0C 08"));
  EXPECT_THAT(DrainDebugOutput(), IsEmpty());
}

TEST_F(Workout, UnansweredClosingFails) {
  answering_.Answer("0C 08", kSilence);
  EXPECT_EQ(Finish(), 0);
  EXPECT_THAT(DrainKinds(), ElementsAre("0C 07", "0C 08", "0C 08", "0C 08"));
}

TEST_F(Workout, UnpluggedOnTheWayFailsInThreeSecondsACommand) {
  EXPECT_EQ(Start(), 1);
  world_.line().Unplug();
  EXPECT_LE(Elapsed([&] { EXPECT_EQ(Interval(), 0); }), 3100 * kMillisecond);
  EXPECT_LE(Elapsed([&] { EXPECT_EQ(Finish(), 0); }), 6200 * kMillisecond);
  EXPECT_THAT(DrainDebugOutput(), ElementsAre(Report(kIntervalText), Report(kSummaryText)));
}

TEST_F(Workout, OnAClosedPortFailsEverywhereAtOnce) {
  session_.Close();
  EXPECT_EQ(Elapsed([&] {
              EXPECT_EQ(Start(), 0);
              EXPECT_EQ(Interval(), 0);
              EXPECT_EQ(Finish(), 0);
            }),
            0);
  EXPECT_THAT(DrainDebugOutput(), ElementsAre(Report(kIntervalText), Report(kSummaryText)));
}

}  // namespace
