// SPDX-License-Identifier: MIT
// The legacy workout document: its bytes, its codes, and the texts that tell how far the writer
// is.
#include "support/packets.h"
#include "workout_test.h"

namespace {

using test::kCloseOfNone;
using test::kHandle;
using test::kOpen;
using test::kSportsRequest;
using test::kStorageRequest;
using test::WorkoutTest;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class WorkoutDocument : public WorkoutTest {
 protected:
  // The texts that the status shows one after the other.
  template <class Action>
  std::vector<std::string> TextsShown(Action action) {
    const std::string before = "StringCchCopyW(256, \"";
    world_.Record({"StringCchCopyW"});
    action();
    std::vector<std::string> texts;
    for (const std::string& call : world_.DrainRecord()) {
      EXPECT_EQ(call.substr(0, before.size()), before);
      texts.push_back(call.substr(before.size(), call.size() - before.size() - 2));
    }
    return texts;
  }
};

// ---- The header

TEST_F(WorkoutDocument, HeaderIsWrittenALinePerFrame) {
  EXPECT_EQ(Start(), 1);
  EXPECT_THAT(
      answering_.DrainFrames(),
      ElementsAre(kCloseOfNone, kSportsRequest, kStorageRequest, kOpen,
                  "FF 55 2E 0C 07 00 00 00 00 2B 3C 3F 78 6D 6C 20 76 65 72 73 69 6F 6E 3D 22 31 "
                  "2E 30 22 20 65 6E 63 6F 64 69 6E 67 3D 22 55 54 46 2D 38 22 3F 3E 0A CF",
                  "FF 55 12 0C 07 00 00 00 27 2B 09 3C 67 79 6D 44 61 74 61 3E 0A 35",
                  "FF 55 17 0C 07 00 00 00 32 2B 09 3C 76 65 72 73 3E 31 3C 2F 76 65 72 73 3E 0A "
                  "92",
                  "FF 55 18 0C 07 00 00 00 42 2B 09 3C 65 71 75 69 70 6D 65 6E 74 49 6E 66 6F 3E "
                  "0A 77",
                  "FF 55 2F 0C 07 00 00 00 53 2B 09 09 3C 6D 61 6E 75 66 61 63 74 75 72 65 72 49 "
                  "44 3E 30 30 34 32 3C 2F 6D 61 6E 75 66 61 63 74 75 72 65 72 49 44 3E 0A 07",
                  "FF 55 1B 0C 07 00 00 00 7B 2B 09 09 3C 74 79 70 65 3E 42 69 6B 65 3C 2F 74 79 "
                  "70 65 3E 0A EE",
                  "FF 55 1B 0C 07 00 00 00 8F 2B 09 09 3C 6D 6F 64 65 6C 3E 42 37 3C 2F 6D 6F 64 "
                  "65 6C 3E 0A 3E",
                  "FF 55 2C 0C 07 00 00 00 A3 2B 09 09 3C 73 65 72 69 61 6C 4E 75 6D 62 65 72 3E "
                  "31 32 33 2D 34 3C 2F 73 65 72 69 61 6C 4E 75 6D 62 65 72 3E 0A EB",
                  "FF 55 21 0C 07 00 00 00 C8 2B 09 09 3C 67 79 6D 4E 61 6D 65 3E 4E 6F 72 64 3C "
                  "2F 67 79 6D 4E 61 6D 65 3E 0A 6B",
                  "FF 55 2B 0C 07 00 00 00 E2 2B 09 09 3C 67 79 6D 4C 6F 63 61 74 69 6F 6E 3E 48 "
                  "61 6C 6C 20 32 3C 2F 67 79 6D 4C 6F 63 61 74 69 6F 6E 3E 0A 97",
                  "FF 55 19 0C 07 00 00 01 06 2B 09 3C 2F 65 71 75 69 70 6D 65 6E 74 49 6E 66 6F "
                  "3E 0A 82",
                  "FF 55 13 0C 07 00 00 01 18 2B 09 3C 75 73 65 72 49 6E 66 6F 3E 0A BE",
                  "FF 55 1C 0C 07 00 00 01 24 2B 09 09 3C 6B 67 3E 37 32 2E 35 30 30 30 30 30 3C "
                  "2F 6B 67 3E 0A E2",
                  "FF 55 14 0C 07 00 00 01 39 2B 09 3C 2F 75 73 65 72 49 6E 66 6F 3E 0A 6D"));
  EXPECT_EQ(Status(), "Start Workout Good");
  EXPECT_THAT(DrainDebugOutput(), IsEmpty());
}

TEST_F(WorkoutDocument, HeaderReadsSo) {
  EXPECT_EQ(Start(), 1);
  EXPECT_THAT(answering_.DrainLines(kHandle, 0),
              ElementsAre("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n", "\t<gymData>\n",
                          "\t<vers>1</vers>\n", "\t<equipmentInfo>\n",
                          "\t\t<manufacturerID>0042</manufacturerID>\n", "\t\t<type>Bike</type>\n",
                          "\t\t<model>B7</model>\n", "\t\t<serialNumber>123-4</serialNumber>\n",
                          "\t\t<gymName>Nord</gymName>\n",
                          "\t\t<gymLocation>Hall 2</gymLocation>\n", "\t</equipmentInfo>\n",
                          "\t<userInfo>\n", "\t\t<kg>72.500000</kg>\n", "\t</userInfo>\n"));
}

TEST_F(WorkoutDocument, HeaderTellsItsSteps) {
  EXPECT_THAT(
      TextsShown([&] { Start(); }),
      ElementsAre("Makeing sure iPod supports workout", "Opening iPod Workout File",
                  "Getting File Handle From iPod", "Writing Workout XML File Information",
                  "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n", "\t<gymData>\n",
                  "\t<vers>1</vers>\n", "\t<equipmentInfo>\n",
                  "\t\t<manufacturerID>0042</manufacturerID>\n", "\t\t<type>Bike</type>\n",
                  "\t\t<model>B7</model>\n", "\t\t<serialNumber>123-4</serialNumber>\n",
                  "\t\t<gymName>Nord</gymName>\n", "\t\t<gymLocation>Hall 2</gymLocation>\n",
                  "\t</equipmentInfo>\n", "\t<userInfo>\n", "\t\t<kg>72.500000</kg>\n",
                  "\t</userInfo>\n", "Start Workout Good"));
}

struct Code {
  const char* name;
  unsigned char code;
  const char* line;
};
void PrintTo(const Code& row, std::ostream* out) { *out << row.name; }

class EquipmentCodes : public WorkoutTest, public ::testing::WithParamInterface<Code> {};

TEST_P(EquipmentCodes, WriteTheirTypeLine) {
  EXPECT_EQ(Start(GetParam().code), 1);
  const std::vector<std::string> lines = answering_.DrainLines(kHandle, 0);
  ASSERT_EQ(lines.size(), 14U);
  EXPECT_EQ(lines[4], "\t\t<manufacturerID>0042</manufacturerID>\n");
  EXPECT_EQ(lines[5], GetParam().line);
  EXPECT_EQ(lines[6], "\t\t<model>B7</model>\n");
}

INSTANTIATE_TEST_SUITE_P(Rows, EquipmentCodes,
                         ::testing::Values(Code{"treadmill", 1, "\t\t<type>Treadmill</type>\n"},
                                           Code{"elliptical", 2, "\t\t<type>Elliptical</type>\n"},
                                           Code{"stepper", 3, "\t\t<type>Stepper</type>\n"},
                                           Code{"bike", 4, "\t\t<type>Bike</type>\n"},
                                           Code{"other", 5, "\t\t<type>Other</type>\n"}),
                         test::RowName());

class UnknownEquipment : public WorkoutTest, public ::testing::WithParamInterface<int> {};

TEST_P(UnknownEquipment, EndsTheHeaderBeforeItsType) {
  EXPECT_EQ(Start(static_cast<unsigned char>(GetParam())), 0);
  EXPECT_THAT(answering_.DrainLines(kHandle, 0),
              ElementsAre("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n", "\t<gymData>\n",
                          "\t<vers>1</vers>\n", "\t<equipmentInfo>\n",
                          "\t\t<manufacturerID>0042</manufacturerID>\n"));
  EXPECT_EQ(Status(), "\t\t<manufacturerID>0042</manufacturerID>\n");
}

INSTANTIATE_TEST_SUITE_P(Codes, UnknownEquipment, ::testing::Values(0, 6, 7, 255));

// ---- An interval

TEST_F(WorkoutDocument, IntervalReadsSo) {
  Begin();
  EXPECT_EQ(Interval(), 1);
  EXPECT_THAT(
      answering_.DrainLines(kHandle, kHeaderBytes),
      ElementsAre("\t<interval>\n", "\t\t<event>start</event>\n", "\t\t<sec>61</sec>\n",
                  "\t\t<kCal>12</kCal>\n", "\t\t<km>0.250000</km>\n", "\t\t<pace>245</pace>\n",
                  "\t\t<bpm>131</bpm>\n", "\t\t<incline>1.500000</incline>\n",
                  "\t\t<level>7</level>\n", "\t</interval>\n"));
  EXPECT_EQ(Status(), "Internval Write Good");
}

TEST_F(WorkoutDocument, IntervalTellsItsSteps) {
  Begin();
  EXPECT_THAT(
      TextsShown([&] { Interval(); }),
      ElementsAre("Starting Interval Write", "\t<interval>\n", "Writing Event if Needed",
                  "\t\t<event>start</event>\n", "\t\t<sec>61</sec>\n", "\t\t<kCal>12</kCal>\n",
                  "\t\t<km>0.250000</km>\n", "\t\t<pace>245</pace>\n", "\t\t<bpm>131</bpm>\n",
                  "\t\t<incline>1.500000</incline>\n", "\t\t<level>7</level>\n", "\t</interval>\n",
                  "Internval Write Good"));
}

TEST_F(WorkoutDocument, IntervalWritesEveryElementAlsoWhenItIsZero) {
  Begin();
  EXPECT_EQ(legacy_.intervalworkout(6, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0), 1);
  EXPECT_THAT(answering_.DrainLines(kHandle, kHeaderBytes),
              ElementsAre("\t<interval>\n", "\t\t<sec>0</sec>\n", "\t\t<kCal>0</kCal>\n",
                          "\t\t<km>0.000000</km>\n", "\t\t<pace>0</pace>\n", "\t\t<bpm>0</bpm>\n",
                          "\t\t<incline>0.000000</incline>\n", "\t\t<level>0</level>\n",
                          "\t</interval>\n"));
}

class EventCodes : public WorkoutTest, public ::testing::WithParamInterface<Code> {};

TEST_P(EventCodes, WriteTheirEventLine) {
  Begin();
  EXPECT_EQ(Interval(GetParam().code), 1);
  const std::vector<std::string> lines = answering_.DrainLines(kHandle, kHeaderBytes);
  ASSERT_EQ(lines.size(), 10U);
  EXPECT_EQ(lines[1], GetParam().line);
  EXPECT_EQ(Status(), "Internval Write Good");
}

INSTANTIATE_TEST_SUITE_P(Rows, EventCodes,
                         ::testing::Values(Code{"start", 1, "\t\t<event>start</event>\n"},
                                           Code{"end", 2, "\t\t<event>end</event>\n"},
                                           Code{"continue_", 3, "\t\t<event>continue</event>\n"},
                                           Code{"pause", 4, "\t\t<event>pause</event>\n"},
                                           Code{"resume", 5, "\t\t<event>resume</event>\n"}),
                         test::RowName());

TEST_F(WorkoutDocument, IntervalInProcessHasNoEventLine) {
  Begin();
  EXPECT_EQ(Interval(ipod::IPOD_SPORTS_INTERVAL_TYPE_INPROCESS), 1);
  const std::vector<std::string> lines = answering_.DrainLines(kHandle, kHeaderBytes);
  ASSERT_EQ(lines.size(), 9U);
  EXPECT_EQ(lines[1], "\t\t<sec>61</sec>\n");
  EXPECT_EQ(Status(), "Internval Write Good");
}

class UnknownEvent : public WorkoutTest, public ::testing::WithParamInterface<int> {};

TEST_P(UnknownEvent, EndsTheIntervalBehindItsFirstLine) {
  Begin();
  EXPECT_EQ(Interval(static_cast<unsigned char>(GetParam())), 0);
  EXPECT_THAT(answering_.DrainLines(kHandle, kHeaderBytes), ElementsAre("\t<interval>\n"));
  EXPECT_EQ(Status(), "Writing Event if Needed");
}

INSTANTIATE_TEST_SUITE_P(Codes, UnknownEvent, ::testing::Values(0, 7, 255));

// ---- The summary

TEST_F(WorkoutDocument, SummaryIsWrittenALinePerFrameAndTheFileClosed) {
  Begin();
  EXPECT_EQ(Finish(), 1);
  EXPECT_THAT(
      answering_.DrainFrames(),
      ElementsAre("FF 55 19 0C 07 00 00 01 46 2B 09 3C 77 6F 72 6B 6F 75 74 53 75 6D 6D 61 72 79 "
                  "3E 0A CC",
                  "FF 55 19 0C 07 00 00 01 58 2B 09 09 3C 73 65 63 3E 31 38 30 30 3C 2F 73 65 63 "
                  "3E 0A D2",
                  "FF 55 1A 0C 07 00 00 01 6A 2B 09 09 3C 6B 43 61 6C 3E 33 32 30 3C 2F 6B 43 61 "
                  "6C 3E 0A 73",
                  "FF 55 1B 0C 07 00 00 01 7D 2B 09 09 3C 6B 6D 3E 36 2E 31 32 35 30 30 30 3C 2F "
                  "6B 6D 3E 0A AE",
                  "FF 55 1A 0C 07 00 00 01 91 2B 09 09 3C 70 61 63 65 3E 32 39 34 3C 2F 70 61 63 "
                  "65 3E 0A 06",
                  "FF 55 18 0C 07 00 00 01 A4 2B 09 09 3C 62 70 6D 3E 31 32 38 3C 2F 62 70 6D 3E "
                  "0A AD",
                  "FF 55 1A 0C 07 00 00 01 B5 2B 09 3C 2F 77 6F 72 6B 6F 75 74 53 75 6D 6D 61 72 "
                  "79 3E 0A 2D",
                  "FF 55 03 0C 08 2B BE"));
  EXPECT_EQ(Status(), "\t</workoutSummary>\n");
}

TEST_F(WorkoutDocument, SummaryReadsSo) {
  Begin();
  EXPECT_EQ(Finish(), 1);
  EXPECT_THAT(answering_.DrainLines(kHandle, kHeaderBytes),
              ElementsAre("\t<workoutSummary>\n", "\t\t<sec>1800</sec>\n", "\t\t<kCal>320</kCal>\n",
                          "\t\t<km>6.125000</km>\n", "\t\t<pace>294</pace>\n",
                          "\t\t<bpm>128</bpm>\n", "\t</workoutSummary>\n"));
}

TEST_F(WorkoutDocument, ClosedFileLeavesNeitherHandleNorOffset) {
  Begin();
  EXPECT_EQ(Finish(), 1);
  EXPECT_EQ(ipodPeer::StorageFileHandle(legacy_), 0);
  EXPECT_EQ(ipodPeer::StorageWriteOffset(legacy_), 0U);
}

}  // namespace
