// SPDX-License-Identifier: MIT
// Proves what the iPod asks of an accessory that logs a workout: that it looks first, writes a
// whole document and closes it.

#include <gtest/gtest.h>

#include "tests/simulator/ipod_under_test.h"
#include "tests/simulator/workouts.h"

namespace ipodsim {
namespace {

constexpr char kAskSports[] = "FF 55 02 09 83 72";
constexpr char kAskStorage[] = "FF 55 02 0C 01 F1";
constexpr char kAskSpace[] = "FF 55 02 0C 10 E2";
// Of a workout file that the iPod ends with its own elements and "</gymData>".
constexpr char kOpen[] = "FF 55 11 0C 12 02 00 00 00 0B 3C 2F 67 79 6D 44 61 74 61 3E 54";
constexpr char kClose[] = "FF 55 03 0C 08 01 E8";
constexpr char kClosed[] = "FF 55 04 0C 00 00 08 E8";

class WorkoutTest : public testing::Test {
 protected:
  // Announces General, Display Remote, Extended Interface, Sports and Storage.
  static void Identify(IpodUnderTest& dock) {
    dock.Exchange("FF 55 0E 00 13 00 00 12 19 00 00 00 00 00 00 00 00 B4");
  }
  static void Prepare(IpodUnderTest& dock) {
    dock.Exchange(kAskSports);
    dock.Exchange(kAskStorage);
    dock.Exchange(kAskSpace);
  }
  static void Write(IpodUnderTest& dock, const std::string& text) {
    for (const Bytes& write : WritesOf(text)) {
      EXPECT_EQ(dock.Exchange(ToHex(write)), "FF 55 04 0C 00 00 07 E9");
    }
  }
  // A workout from identification to the closing of its file.
  static void WorkOut(IpodUnderTest& dock, const std::string& text) {
    Identify(dock);
    Prepare(dock);
    dock.Exchange(kOpen);
    Write(dock, text);
    EXPECT_EQ(dock.Exchange(kClose), kClosed);
  }

  IpodUnderTest dock;
};

TEST_F(WorkoutTest, WholeWorkoutOfEitherFormIsNoMistake) {
  WorkOut(dock, kNewerWorkout);
  IpodUnderTest older;
  WorkOut(older, kOlderWorkout);
  dock.ipod.Finish(dock.now);
  older.ipod.Finish(older.now);
  EXPECT_EQ(dock.Mistakes() + older.Mistakes(), "");
}

TEST_F(WorkoutTest, DocumentWithALineMissingIsNamedWhenItIsClosed) {
  std::string text = kNewerWorkout;
  const std::string line = "\t\t<kg>70.0</kg>\n";
  text.erase(text.find(line), line.size());
  WorkOut(dock, text);
  EXPECT_EQ(dock.Mistakes(), "bad workout document");
  EXPECT_EQ(dock.ipod.mistakes()[0].detail, "gym-0001.xml: line 12: <kg> expected");
}

TEST_F(WorkoutTest, DocumentThatTheIpodIsNotToEndIsNamed) {
  Identify(dock);
  Prepare(dock);
  dock.Exchange("FF 55 07 0C 12 02 00 00 00 0A CF");
  EXPECT_EQ(dock.Mistakes(), "");
  dock.Exchange("FF 55 0B 0C 12 02 00 00 00 0B 3C 2F 78 3E A9");
  EXPECT_EQ(dock.Mistakes(), "");
  Write(dock, kNewerWorkout);
  dock.Exchange(kClose);
  EXPECT_EQ(dock.Mistakes(), "bad workout document");
  EXPECT_EQ(dock.ipod.mistakes()[0].detail,
            "gym-0001.xml: the file was not opened with </gymData> as its ending");
}

TEST_F(WorkoutTest, DocumentThatTheIpodRefusedToStoreIsNotTheAccessorysMistake) {
  Settings settings = QuietSettings();
  settings.storage.failing_writes[7] = AckStatus::kFailed;
  IpodUnderTest failing(settings);
  Identify(failing);
  Prepare(failing);
  failing.Exchange(kOpen);
  const std::vector<Bytes> writes = WritesOf(kNewerWorkout);
  for (std::size_t i = 0; i < 7; ++i) failing.Exchange(ToHex(writes[i]));
  EXPECT_EQ(failing.Exchange(kClose), kClosed);
  EXPECT_EQ(failing.Mistakes(), "");
}

TEST_F(WorkoutTest, GapAndOpenFileAfterARefusedWriteAreNotTheAccessorysMistakes) {
  Settings settings = QuietSettings();
  settings.storage.failing_writes[2] = AckStatus::kFailed;
  IpodUnderTest failing(settings);
  Identify(failing);
  Prepare(failing);
  failing.Exchange(kOpen);
  const std::vector<Bytes> writes = WritesOf(kNewerWorkout);
  for (const std::size_t i : {0U, 1U, 2U}) failing.Exchange(ToHex(writes[i]));
  failing.ipod.Finish(failing.now);
  EXPECT_EQ(failing.Mistakes(), "");
}

TEST_F(WorkoutTest, FileOpenedWithoutAskingForCapabilitiesIsNamed) {
  for (const char* const missing : {kAskSports, kAskStorage}) {
    IpodUnderTest hasty;
    Identify(hasty);
    for (const char* const ask : {kAskSports, kAskStorage, kAskSpace}) {
      if (ask != missing) hasty.Exchange(ask);
    }
    EXPECT_EQ(hasty.Mistakes(), "");
    EXPECT_EQ(hasty.Exchange(kOpen), "FF 55 03 0C 04 01 EC");
    EXPECT_EQ(hasty.Mistakes(), "unprepared workout") << missing;
  }
}

TEST_F(WorkoutTest, CapabilitiesAreAskedForAnewAfterAnIdentification) {
  WorkOut(dock, kNewerWorkout);
  Identify(dock);
  dock.Exchange(kOpen);
  EXPECT_EQ(dock.Mistakes(), "unprepared workout");
}

TEST_F(WorkoutTest, NewerDocumentNeedsARequestForTheFreeSpaceAndTheOlderDoesNot) {
  IpodUnderTest older;
  for (IpodUnderTest* each : {&dock, &older}) {
    Identify(*each);
    each->Exchange(kAskSports);
    each->Exchange(kAskStorage);
    each->Exchange(kOpen);
    Write(*each, each == &dock ? kNewerWorkout : kOlderWorkout);
    EXPECT_EQ(each->Mistakes(), "");
    each->Exchange(kClose);
  }
  EXPECT_EQ(dock.Mistakes(), "unprepared workout");
  EXPECT_EQ(older.Mistakes(), "");
}

TEST_F(WorkoutTest, RefusedRequestForTheFreeSpaceCounts) {
  Settings settings = QuietSettings();
  settings.refused[{kStorage, storage::kGetIpodFreeSpace}] = AckStatus::kFailed;
  IpodUnderTest refusing(settings);
  WorkOut(refusing, kNewerWorkout);
  EXPECT_EQ(refusing.Mistakes(), "");
}

TEST_F(WorkoutTest, FileThatIsOpenAtTheEndIsNamed) {
  Identify(dock);
  Prepare(dock);
  dock.Exchange(kOpen);
  EXPECT_EQ(dock.Mistakes(), "");
  dock.ipod.Finish(dock.now);
  EXPECT_EQ(dock.Mistakes(), "file left open");
}

TEST_F(WorkoutTest, FileThatIsOpenAtANewIdentificationIsNamedAndEndsThere) {
  Identify(dock);
  Prepare(dock);
  dock.Exchange(kOpen);
  EXPECT_EQ(dock.ipod.open_feature_files().size(), 1U);
  Identify(dock);
  EXPECT_EQ(dock.Mistakes(), "file left open");
  EXPECT_TRUE(dock.ipod.open_feature_files().empty());
  EXPECT_EQ(dock.Exchange(kClose), "FF 55 04 0C 00 03 08 E5");
}

TEST_F(WorkoutTest, FileThatIsOpenWhenTheIpodIsPulledOutIsNoMistake) {
  Identify(dock);
  Prepare(dock);
  dock.Exchange(kOpen);
  dock.ipod.Unplug(dock.now);
  dock.ipod.Finish(dock.now);
  EXPECT_EQ(dock.Mistakes(), "");
}

}  // namespace
}  // namespace ipodsim
