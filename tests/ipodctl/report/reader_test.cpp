// SPDX-License-Identifier: MIT
// What is taken from a good document, in each of the forms that consoles write.
#include <gtest/gtest.h>

#include "documents.h"
#include "report/workout_reader.h"

using namespace ipodctl;
using report::Document;
using report::IntervalAt;

namespace {

Readings OnlyInterval(const std::string& elements) {
  const WorkoutDocument document = ParseWorkoutDocument(Document(IntervalAt(9, elements)));
  EXPECT_FALSE(document.problem);
  EXPECT_EQ(document.intervals.size(), 1U);
  return document.intervals.empty() ? Readings() : document.intervals.front().readings;
}

unsigned long UnusableIn(const std::string& elements) {
  return ParseWorkoutDocument(Document(elements)).unusable_values;
}

TEST(WorkoutReader, TakesEquipmentUserAndIpod) {
  const WorkoutDocument document = ParseWorkoutDocument(report::kRun);
  EXPECT_TRUE(document.is_workout);
  EXPECT_FALSE(document.problem);
  EXPECT_EQ(document.unusable_values, 0U);
  EXPECT_EQ(document.equipment.manufacturer_id, "41");
  EXPECT_EQ(document.equipment.manufacturer_name, "Northway & S\xC3\xB6hne");
  EXPECT_EQ(document.equipment.type, "Treadmill");
  EXPECT_EQ(document.equipment.model, "QZ104");
  EXPECT_EQ(document.equipment.serial_number, "QZ-0042");
  EXPECT_EQ(document.equipment.gym_name, "");
  EXPECT_EQ(document.weight_kg, 72.5);
  EXPECT_EQ(document.ipod.model, "MB598LL");
  EXPECT_EQ(document.ipod.software_version, "1.0.2");
  EXPECT_EQ(document.ipod.serial_number, "8K1234");
}

TEST(WorkoutReader, TakesEveryReadingOfAnInterval) {
  const WorkoutDocument document = ParseWorkoutDocument(report::kRun);
  ASSERT_EQ(document.intervals.size(), 5U);
  const Readings& second = document.intervals[1].readings;
  EXPECT_EQ(second.seconds, 60.0);
  EXPECT_EQ(second.kcal, 10.25);
  EXPECT_EQ(second.km, 0.2);
  EXPECT_EQ(second.pace, 300.0);
  EXPECT_EQ(second.incline, -1.5);
  EXPECT_EQ(second.bpm, 120.0);
  EXPECT_EQ(second.level, 4.0);
  EXPECT_FALSE(second.floors || second.spm || second.rpm);
  EXPECT_EQ(OnlyInterval("<floors>7.5</floors>").floors, 7.5);
  EXPECT_EQ(OnlyInterval("<spm>55</spm>").spm, 55.0);
  EXPECT_EQ(OnlyInterval("<rpm>81</rpm>").rpm, 81.0);
}

TEST(WorkoutReader, TakesEveryEvent) {
  const WorkoutDocument document = ParseWorkoutDocument(report::kRun);
  const WorkoutEvent expected[] = {WorkoutEvent::kStart, WorkoutEvent::kContinue,
                                   WorkoutEvent::kPause, WorkoutEvent::kResume, WorkoutEvent::kEnd};
  ASSERT_EQ(document.intervals.size(), 5U);
  for (std::size_t i = 0; i < 5; ++i) EXPECT_EQ(document.intervals[i].event, expected[i]) << i;
  const WorkoutDocument other =
      ParseWorkoutDocument(Document(IntervalAt(1, "", "dance") + IntervalAt(2, "")));
  EXPECT_EQ(other.intervals[0].event, WorkoutEvent::kNone);
  EXPECT_EQ(other.intervals[1].event, WorkoutEvent::kNone);
}

TEST(WorkoutReader, TakesTheSummary) {
  const WorkoutDocument document = ParseWorkoutDocument(report::kRun);
  ASSERT_TRUE(document.summary);
  EXPECT_EQ(document.summary->seconds, 240.0);
  EXPECT_EQ(document.summary->kcal, 31.25);
  EXPECT_EQ(document.summary->km, 0.61);
  EXPECT_EQ(document.summary->pace, 305.0);
  EXPECT_EQ(document.summary->bpm, 131.0);
  EXPECT_FALSE(ParseWorkoutDocument(Document("")).summary);
}

TEST(WorkoutReader, TakesTheOlderForm) {
  const WorkoutDocument document = ParseWorkoutDocument(report::kOlderRide);
  EXPECT_TRUE(document.is_workout);
  EXPECT_FALSE(document.problem);
  EXPECT_EQ(document.unusable_values, 0U);
  EXPECT_EQ(document.equipment.manufacturer_name, "");
  EXPECT_EQ(document.equipment.gym_name, "Harbour Gym");
  EXPECT_EQ(document.equipment.gym_location, "Pier 4");
  EXPECT_EQ(document.weight_kg, 81.199997);
  ASSERT_EQ(document.intervals.size(), 2U);
  EXPECT_EQ(document.intervals[1].event, WorkoutEvent::kNone);
  EXPECT_EQ(document.intervals[1].readings.km, 0.25);
  EXPECT_EQ(document.intervals[1].readings.level, 7.0);
}

TEST(WorkoutReader, TakesZerosForNoReadingWhereTheyAreNone) {
  const Readings first = ParseWorkoutDocument(report::kOlderRide).intervals.front().readings;
  EXPECT_FALSE(first.bpm);
  EXPECT_FALSE(first.pace);
  EXPECT_FALSE(first.level);
  EXPECT_EQ(first.km, 0.0);
  EXPECT_EQ(first.seconds, 0.0);
  EXPECT_EQ(OnlyInterval("<level>0</level>").level, 0.0);
  EXPECT_EQ(OnlyInterval("<rpm>0</rpm>").rpm, 0.0);
  EXPECT_FALSE(OnlyInterval("<level>4294967295</level>").level);
}

TEST(WorkoutReader, TakesARepeatedLineOnce) {
  const Readings no_distance = OnlyInterval("<kCal>5.00</kCal><kCal>5.00</kCal><pace>300</pace>");
  EXPECT_EQ(no_distance.kcal, 5.0);
  EXPECT_FALSE(no_distance.km || no_distance.floors);
  EXPECT_EQ(no_distance.pace, 300.0);
  const Readings no_speed = OnlyInterval("<km>0.10</km><km>0.10</km>");
  EXPECT_EQ(no_speed.km, 0.1);
  EXPECT_FALSE(no_speed.pace || no_speed.spm || no_speed.rpm);
}

TEST(WorkoutReader, LeavesOutWhatIsNoUsableNumber) {
  for (const char* text : {"nan", "-nan", "inf", "-inf", "1.#INF", "", "abc", "12x", "0x10", "1 2",
                           "-0.5", "1e400", "99999999999"}) {
    const std::string element = std::string("<km>") + text + "</km>";
    EXPECT_FALSE(OnlyInterval(element).km) << text;
    EXPECT_EQ(UnusableIn(IntervalAt(1, element)), 1U) << text;
  }
  const std::string digits(310, '9');
  EXPECT_FALSE(OnlyInterval("<kCal>" + digits + ".00</kCal>").kcal);
  EXPECT_EQ(UnusableIn(IntervalAt(1, "<pace>-2147483648</pace>")), 1U);
  EXPECT_EQ(UnusableIn(IntervalAt(-5, "")), 1U);
  EXPECT_EQ(UnusableIn("<userInfo><kg>nan</kg></userInfo>"), 1U);
  EXPECT_EQ(UnusableIn("<userInfo><kg>-1.0</kg></userInfo>"), 1U);
  EXPECT_EQ(UnusableIn("<workoutSummary><sec>-1</sec></workoutSummary>"), 1U);
}

TEST(WorkoutReader, TakesNumbersWithSpaceAround) {
  EXPECT_EQ(OnlyInterval("<km>\n 1.5\t</km>").km, 1.5);
}

TEST(WorkoutReader, SkipsElementsThatItDoesNotKnow) {
  const WorkoutDocument document = ParseWorkoutDocument(
      Document("<extra><km>9</km><deep><interval><sec>5</sec></interval></deep></extra>" +
               IntervalAt(3, "<new>1</new><km>1.0<km>2.0</km></km>") + "<sec>7</sec>text"));
  EXPECT_FALSE(document.problem);
  ASSERT_EQ(document.intervals.size(), 1U);
  EXPECT_EQ(document.intervals[0].readings.seconds, 3.0);
}

TEST(WorkoutReader, KnowsAWorkoutByItsFirstElement) {
  EXPECT_TRUE(ParseWorkoutDocument("<gymData/>").is_workout);
  for (const char* text : {"", "  ", "hello", "<html></html>", "<GymData/>", "{\"gymData\": 1}"}) {
    const WorkoutDocument document = ParseWorkoutDocument(text);
    EXPECT_FALSE(document.is_workout) << text;
    EXPECT_TRUE(document.problem) << text;
  }
}

TEST(WorkoutReader, CutsLongNamesBetweenCharacters) {
  std::string name = "x";
  for (int i = 0; i < 2000; ++i) name += "\xC3\xB6";
  const WorkoutDocument document =
      ParseWorkoutDocument(Document("<equipmentInfo><model>" + name + "</model></equipmentInfo>"));
  EXPECT_EQ(document.equipment.model, name.substr(0, 1023));
  EXPECT_FALSE(document.problem);
}

TEST(WorkoutReader, ReadsDocumentsLongerThanOnePiece) {
  std::string intervals;
  for (int second = 0; second < 3600; ++second) intervals += IntervalAt(second, "<km>1.25</km>");
  const WorkoutDocument document = ParseWorkoutDocument(Document(intervals));
  EXPECT_FALSE(document.problem);
  ASSERT_EQ(document.intervals.size(), 3600U);
  for (std::size_t i = 0; i < 3600; ++i) {
    ASSERT_EQ(document.intervals[i].readings.seconds, static_cast<double>(i));
    ASSERT_EQ(document.intervals[i].readings.km, 1.25);
  }
  EXPECT_EQ(document.unusable_values, 0U);
}

}  // namespace
