// SPDX-License-Identifier: MIT
// What ipodctl's workouts are made of, piece by piece, where no iPod is needed.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

#include "console/failure.h"
#include "console/text.h"
#include "options.h"
#include "workout/csv_recording.h"
#include "workout/file_estimate.h"
#include "workout/generated_recording.h"
#include "workout/workout_view.h"

using namespace ipodctl;
using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::StartsWith;

namespace {

Reading At(int seconds, bool paused = false) {
  Reading reading;
  reading.seconds = seconds;
  reading.paused = paused;
  return reading;
}

Recording Kilometres(std::vector<Reading> readings) {
  return {IPOD_EQUIPMENT_TYPE_TREADMILL, IPOD_DISTANCE_TYPE_KM, IPOD_SPEED_TYPE_PACE,
          std::move(readings)};
}

std::vector<std::string> Log(const std::vector<Interval>& intervals) {
  std::vector<std::string> log;
  for (const Interval& interval : intervals) {
    log.push_back(std::to_string(interval.reading.seconds) + " " + EventName(interval.event));
  }
  return log;
}

Recording Csv(const std::string& text, const char* equipment = "treadmill") {
  std::istringstream stream(text);
  return ReadCsvRecording(stream, "ride.csv", *EquipmentByName(equipment));
}

/// The sentence with which `text` is refused.
std::string Refusal(const std::string& text) {
  try {
    Csv(text);
  } catch (const CommandFailure& failure) {
    EXPECT_EQ(failure.status(), 66);
    return failure.what();
  }
  return "not refused";
}

TEST(WorkoutLog, HoldsEveryEventAndAnIntervalEverySoManySeconds) {
  const Recording recording = Kilometres({At(0), At(1), At(2), At(3), At(4), At(5, true),
                                          At(6, true), At(7, true), At(8), At(9), At(10), At(11)});
  EXPECT_THAT(Log(IntervalsOf(recording, 2)),
              ElementsAre("0 start", "2 continue", "4 continue", "5 pause", "8 resume",
                          "10 continue", "11 end"));
}

TEST(WorkoutLog, TakesSparseReadingsWhenTheyCome) {
  EXPECT_THAT(Log(IntervalsOf(Kilometres({At(0), At(4), At(12), At(14), At(30)}), 5)),
              ElementsAre("0 start", "12 continue", "30 end"));
  EXPECT_THAT(Log(IntervalsOf(Kilometres({At(7)}), 5)), ElementsAre("7 start", "7 end"));
}

TEST(WorkoutLog, ShowsTheLastReadingUntilTheNext) {
  const Recording recording = Kilometres({At(3), At(10)});
  EXPECT_EQ(ReadingAt(recording, 0).seconds, 3);
  EXPECT_EQ(ReadingAt(recording, 9.9).seconds, 3);
  EXPECT_EQ(ReadingAt(recording, 10).seconds, 10);
  EXPECT_EQ(ReadingAt(recording, 99).seconds, 10);
}

TEST(WorkoutSummary, GivesTheMeanPaceOfKilometresWhateverTheEquipmentCounts) {
  Recording recording = Kilometres({At(0), At(100, true), At(160), At(300)});
  recording.speed_type = IPOD_SPEED_TYPE_RPM;
  recording.readings[0].bpm = 100;
  recording.readings[2].bpm = 150;
  recording.readings[3].distance = 0.8;
  recording.readings[3].kcal = 61;
  const Summary summary = SummaryAt(recording, 300);
  EXPECT_EQ(summary.seconds, 300);
  EXPECT_EQ(summary.kcal, 61);
  EXPECT_EQ(summary.distance, 0.8);
  EXPECT_DOUBLE_EQ(summary.speed, 300);  // 240 s on the move, 0.8 km
  EXPECT_EQ(summary.bpm, 129);           // 100 for 100 s, 150 for 140 s; none during the pause
}

TEST(WorkoutSummary, GivesTheMeanStepsOfFloors) {
  Recording recording = Kilometres({At(0), At(10), At(40)});
  recording.distance_type = IPOD_DISTANCE_TYPE_FLOORS;
  recording.readings[0].speed = 40;
  recording.readings[1].speed = 80;
  EXPECT_DOUBLE_EQ(SummaryAt(recording, 40).speed, 70);
  EXPECT_DOUBLE_EQ(SummaryAt(recording, 20).speed, 60);
  EXPECT_DOUBLE_EQ(SummaryAt(recording, 0).speed, 0);
  EXPECT_EQ(SummaryAt(recording, 0).bpm, 0);
}

TEST(WorkoutSummary, HasNoPaceWithoutDistance) {
  EXPECT_DOUBLE_EQ(SummaryAt(Kilometres({At(0), At(60)}), 60).speed, 0);
}

TEST(GeneratedWorkout, HasAReadingEverySecondAndNeverGoesBack) {
  for (const Equipment& equipment : AllEquipment()) {
    const Recording recording = GenerateWorkout(equipment, 600, 75);
    ASSERT_EQ(recording.readings.size(), 601U) << equipment.name;
    EXPECT_EQ(recording.equipment, equipment.type);
    for (std::size_t i = 1; i < recording.readings.size(); ++i) {
      const Reading& before = recording.readings[i - 1];
      const Reading& reading = recording.readings[i];
      EXPECT_EQ(reading.seconds, static_cast<int>(i));
      EXPECT_EQ(reading.distance > before.distance, !reading.paused) << equipment.name << i;
      EXPECT_EQ(reading.kcal > before.kcal, !reading.paused) << equipment.name << i;
      EXPECT_EQ(reading.speed > 0, !reading.paused) << equipment.name << i;
      EXPECT_GE(reading.bpm, 60);
      EXPECT_LE(reading.bpm, 180);
    }
  }
}

TEST(GeneratedWorkout, IsTheSameEveryTime) {
  const Recording first = GenerateWorkout(AllEquipment()[3], 300, 75);
  const Recording again = GenerateWorkout(AllEquipment()[3], 300, 75);
  ASSERT_EQ(first.readings.size(), again.readings.size());
  for (std::size_t i = 0; i < first.readings.size(); ++i) {
    EXPECT_EQ(first.readings[i].distance, again.readings[i].distance);
    EXPECT_EQ(first.readings[i].kcal, again.readings[i].kcal);
    EXPECT_EQ(first.readings[i].speed, again.readings[i].speed);
    EXPECT_EQ(first.readings[i].bpm, again.readings[i].bpm);
  }
}

TEST(GeneratedWorkout, PausesOnceFromAMinuteOn) {
  const auto events = [](int seconds) {
    std::vector<std::string> log =
        Log(IntervalsOf(GenerateWorkout(AllEquipment()[0], seconds, 75), 3600));
    return log;
  };
  EXPECT_THAT(events(59), ElementsAre("0 start", "59 end"));
  EXPECT_THAT(events(60), ElementsAre("0 start", "24 pause", "34 resume", "60 end"));
  EXPECT_THAT(events(600), ElementsAre("0 start", "240 pause", "270 resume", "600 end"));
  EXPECT_THAT(events(1), ElementsAre("0 start", "1 end"));
}

TEST(GeneratedWorkout, CountsWhatItsEquipmentCounts) {
  const auto types = [](const char* name) {
    const Recording recording = GenerateWorkout(*EquipmentByName(name), 10, 75);
    return std::string(UnitName(recording.distance_type)) + " " + SpeedName(recording.speed_type) +
           (recording.readings.back().level == -1 ? "" : " level");
  };
  EXPECT_EQ(types("treadmill"), "km pace");
  EXPECT_EQ(types("elliptical"), "km spm level");
  EXPECT_EQ(types("stepper"), "floors spm level");
  EXPECT_EQ(types("bike"), "km rpm level");
  EXPECT_EQ(types("other"), "km pace");
  EXPECT_FALSE(EquipmentByName("boat"));
}

TEST(GeneratedWorkout, BurnsMoreTheHeavierItsUser) {
  const double light = GenerateWorkout(AllEquipment()[0], 600, 50).readings.back().kcal;
  const double heavy = GenerateWorkout(AllEquipment()[0], 600, 100).readings.back().kcal;
  EXPECT_NEAR(heavy, 2 * light, 1e-9 * heavy);
}

TEST(CsvRecording, TakesEveryColumnInAnyOrder) {
  const Recording recording =
      Csv("Level,event,heart rate,incline,RPM,energy,distance,seconds\n"
          "5,,118,-1.5,84.5,1.25,0.01,0\n"
          "6,pause,,,0,2,0.02,10\n"
          ",resume,120,2,85,3,0.03,20\n",
          "bike");
  EXPECT_EQ(recording.equipment, IPOD_EQUIPMENT_TYPE_BIKE);
  EXPECT_EQ(recording.distance_type, IPOD_DISTANCE_TYPE_KM);
  EXPECT_EQ(recording.speed_type, IPOD_SPEED_TYPE_RPM);
  ASSERT_EQ(recording.readings.size(), 3U);
  const Reading& first = recording.readings[0];
  EXPECT_EQ(first.seconds, 0);
  EXPECT_EQ(first.distance, 0.01);
  EXPECT_EQ(first.kcal, 1.25);
  EXPECT_EQ(first.speed, 84.5);
  EXPECT_EQ(first.incline, -1.5);
  EXPECT_EQ(first.bpm, 118);
  EXPECT_EQ(first.level, 5);
  EXPECT_FALSE(first.paused);
  EXPECT_TRUE(recording.readings[1].paused);
  EXPECT_EQ(recording.readings[1].bpm, 0);
  EXPECT_EQ(recording.readings[1].incline, 0);
  EXPECT_FALSE(recording.readings[2].paused);
  EXPECT_EQ(recording.readings[2].level, -1);
}

TEST(CsvRecording, CountsAsTheEquipmentDoesUnlessTheHeaderSaysOtherwise) {
  EXPECT_EQ(Csv("seconds,distance,kcal,spm\n0,0,0,0\n", "stepper").distance_type,
            IPOD_DISTANCE_TYPE_FLOORS);
  const Recording named = Csv("seconds,floors,kcal,spm\n0,0,0,0\n", "treadmill");
  EXPECT_EQ(named.distance_type, IPOD_DISTANCE_TYPE_FLOORS);
  EXPECT_EQ(named.speed_type, IPOD_SPEED_TYPE_SPM);
  EXPECT_EQ(Csv("seconds,km,kcal,pace\n0,0,0,0\n", "stepper").distance_type, IPOD_DISTANCE_TYPE_KM);
}

TEST(CsvRecording, TakesWhatSpreadsheetsWrite) {
  const Recording recording =
      Csv("\xEF\xBB\xBFseconds, distance, energy, pace, heart_rate\r\n"
          "\r\n"
          "0, 0, 0, 360, 90\r\n"
          "5, 0.01, 1e0, 355, 91");
  ASSERT_EQ(recording.readings.size(), 2U);
  EXPECT_EQ(recording.readings[1].kcal, 1);
  EXPECT_EQ(recording.readings[1].bpm, 91);
}

TEST(CsvRecording, NamesTheLineThatIsWrong) {
  const std::string header = "seconds,distance,energy,pace,bpm\n";
  EXPECT_EQ(Refusal(""), "ride.csv is empty");
  EXPECT_EQ(Refusal(header), "ride.csv holds no readings");
  EXPECT_EQ(Refusal("seconds,distance,shoe size\n"),
            "ride.csv, line 1: 'shoe size' is not a column");
  EXPECT_EQ(Refusal("seconds,distance,energy\n"),
            "ride.csv, line 1: there is no column pace, spm or rpm");
  EXPECT_EQ(Refusal("distance,energy,pace\n"), "ride.csv, line 1: there is no column seconds");
  EXPECT_EQ(Refusal("seconds,distance,km,energy,pace\n"),
            "ride.csv, line 1: 'distance' and 'km' are the same column");
  EXPECT_EQ(Refusal(header + "0,0,0,0,0\n\n1,0,0,0\n"),
            "ride.csv, line 4: has 4 cells, and the header has 5 columns");
  EXPECT_EQ(Refusal(header + "0,0,0,fast,0\n"), "ride.csv, line 2: pace 'fast' is not a number");
  EXPECT_EQ(Refusal(header + "0,0,,0,0\n"), "ride.csv, line 2: energy '' is not a number");
  EXPECT_EQ(Refusal(header + "0,0,0,0,9 0\n"), "ride.csv, line 2: bpm '9 0' is not a number");
  EXPECT_EQ(Refusal(header + "0,0,0,0,90.5\n"),
            "ride.csv, line 2: bpm '90.5' is not a whole number");
  EXPECT_EQ(Refusal(header + "5,0,0,0,0\n5,0,0,0,0\n"),
            "ride.csv, line 3: does not come after the line before it");
  EXPECT_EQ(Refusal("seconds,distance,energy,pace,event\n0,0,0,0,lunch\n"),
            "ride.csv, line 2: event 'lunch' is neither pause nor resume");
}

TEST(CsvRecording, RefusesNumbersThatNoEquipmentShows) {
  const std::string header = "seconds,distance,energy,pace,incline\n";
  EXPECT_EQ(Refusal(header + "-1,0,0,0,0\n"),
            "ride.csv, line 2: seconds '-1' is not between 0 and 360000");
  for (const char* number : {"nan", "inf", "-inf", "1e300", "1e999", "100000"}) {
    EXPECT_EQ(
        Refusal(header + "0," + number + ",0,0,0\n"),
        "ride.csv, line 2: distance '" + std::string(number) + "' is not between 0 and 99999");
  }
  EXPECT_EQ(Refusal(header + "0,0,0,0,-91\n"),
            "ride.csv, line 2: incline '-91' is not between -90 and 90");
}

TEST(CsvRecording, TellsOfAMissingFile) {
  try {
    LoadCsvRecording("/no/such/ride.csv", AllEquipment()[0]);
    FAIL();
  } catch (const CommandFailure& failure) {
    EXPECT_EQ(failure.status(), 66);
    EXPECT_STREQ(failure.what(), "cannot read /no/such/ride.csv");
  }
}

TEST(WorkoutDocument, EscapesMarkupAndKeepsOtherNames) {
  EXPECT_EQ(EscapedText("Fit & <Strong> \"Co\""), "Fit &amp; &lt;Strong&gt; \"Co\"");
  EXPECT_EQ(EscapedText("Größe 橋 🎧"), "Größe 橋 🎧");
  EXPECT_EQ(EscapedText("a]]>b"), "a]]&gt;b");
}

TEST(WorkoutDocument, ReplacesWhatNoDocumentMayHold) {
  EXPECT_EQ(EscapedText("a\tb\x1b"
                        "c"),
            "a\xEF\xBF\xBD"
            "b\xEF\xBF\xBD"
            "c");
  EXPECT_EQ(EscapedText("\xEF\xBF\xBF|\xEF\xBF\xBE"), "\xEF\xBF\xBD|\xEF\xBF\xBD");
  EXPECT_EQ(EscapedText("cut \xE6\xA9"), "cut \xEF\xBF\xBD\xEF\xBF\xBD");
  EXPECT_EQ(EscapedText("\xED\xA0\x80|\xC0\x80|\xF4\x90\x80\x80").find('\x80'), std::string::npos);
}

TEST(WorkoutDocument, MeasuresTheHeader) {
  const HeaderSize size = SizeOfHeader({"id",
                                        "Gr\xC3\xB6\xC3\x9F"
                                        "e",
                                        "QZ104", "7", IPOD_EQUIPMENT_TYPE_BIKE, 68.54});
  const std::string header =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      "<gymData>\n"
      "\t<vers>1</vers>\n"
      "\t<equipmentInfo>\n"
      "\t\t<manufacturerID>id</manufacturerID>\n"
      "\t\t<manufacturerName>Gr\xC3\xB6\xC3\x9F"
      "e</manufacturerName>\n"
      "\t\t<type>Bike</type>\n"
      "\t\t<model>QZ104</model>\n"
      "\t\t<serialNumber>7</serialNumber>\n"
      "\t</equipmentInfo>\n"
      "\t<userInfo>\n"
      "\t\t<kg>68.5</kg>\n"
      "\t</userInfo>\n";
  EXPECT_EQ(size.total, header.size());
  EXPECT_EQ(size.largest_line, std::string("\t\t<manufacturerName>Gr\xC3\xB6\xC3\x9F"
                                           "e</manufacturerName>\n")
                                   .size());
}

TEST(WorkoutDocument, MeasuresIntervalsAndSummaries) {
  Recording recording = Kilometres({});
  Interval interval = {IPOD_INTERVAL_TYPE_PAUSE, {65, 7.126, 0.128, 381.9, 1.25, 118, 0, true}};
  EXPECT_EQ(SizeOfInterval(recording, interval),
            std::string("\t<interval>\n\t\t<event>pause</event>\n\t\t<sec>65</sec>\n"
                        "\t\t<kCal>7.13</kCal>\n\t\t<km>0.13</km>\n\t\t<pace>381</pace>\n"
                        "\t\t<incline>1.2</incline>\n\t\t<bpm>118</bpm>\n\t\t<level>0</level>\n"
                        "\t</interval>\n")
                .size());
  interval.reading.bpm = 0;
  interval.reading.level = -1;
  recording.distance_type = IPOD_DISTANCE_TYPE_FLOORS;
  recording.speed_type = IPOD_SPEED_TYPE_SPM;
  EXPECT_EQ(SizeOfInterval(recording, interval),
            std::string("\t<interval>\n\t\t<event>pause</event>\n\t\t<sec>65</sec>\n"
                        "\t\t<kCal>7.13</kCal>\n\t\t<floors>0.1</floors>\n\t\t<spm>381</spm>\n"
                        "\t\t<incline>1.2</incline>\n\t</interval>\n")
                .size());
  EXPECT_EQ(SizeOfSummary(recording, {65, 7.126, 12, 80, 101}),
            std::string("\t<workoutSummary>\n\t\t<sec>65</sec>\n\t\t<kCal>7.13</kCal>\n"
                        "\t\t<floors>12.0</floors>\n\t\t<spm>80</spm>\n\t\t<bpm>101</bpm>\n"
                        "\t</workoutSummary>\n")
                .size());
  // Kilometres have a pace in the summary, also where steps are counted.
  recording.distance_type = IPOD_DISTANCE_TYPE_KM;
  EXPECT_EQ(SizeOfSummary(recording, {65, 7.126, 1, 300, 0}),
            std::string("\t<workoutSummary>\n\t\t<sec>65</sec>\n\t\t<kCal>7.13</kCal>\n"
                        "\t\t<km>1.00</km>\n\t\t<pace>300</pace>\n\t</workoutSummary>\n")
                .size());
}

TEST(WorkoutDocument, IntervalsFitAFrameHoweverLargeTheRecordedNumbers) {
  const Recording recording =
      Csv("seconds,floors,energy,pace,incline,bpm,level\n"
          "360000,99999,99999,99999,-90,300,999\n");
  const Interval interval = {IPOD_INTERVAL_TYPE_CONTINUE, recording.readings.front()};
  EXPECT_EQ(SizeOfInterval(recording, interval), 208U);
  EXPECT_LE(SizeOfInterval(recording, interval), kLargestPiece);
}

TEST(WorkoutView, SaysHowFarTheWorkoutHasCome) {
  Recording recording = Kilometres({At(0)});
  const Reading reading = {65, 8.44, 0.128, 380, 0, 118, -1, false};
  EXPECT_EQ(LiveFigures(recording, reading, 3204), "1:05  0.13 km  8.4 kcal  118 bpm  3,204 bytes");
  recording.distance_type = IPOD_DISTANCE_TYPE_FLOORS;
  EXPECT_EQ(LiveFigures(recording, At(3661), 7), "1:01:01  0.0 floors  0.0 kcal  - bpm  7 bytes");
}

TEST(Text, GroupsDigits) {
  EXPECT_EQ(Grouped(0), "0");
  EXPECT_EQ(Grouped(999), "999");
  EXPECT_EQ(Grouped(1000), "1,000");
  EXPECT_EQ(Grouped(1234567), "1,234,567");
}

TEST(Text, WidensUtf8) {
  EXPECT_EQ(Wide("A\xC3\xAB\xE6\xA9\x8B"), L"A\u00EB\u6A4B");
  EXPECT_EQ(Wide("\xF0\x9F\x8E\xA7"), L"\U0001F3A7");
  EXPECT_EQ(Wide("\xFF|\xC3|\xE2\x82"), L"\uFFFD|\uFFFD|\uFFFD\uFFFD");
}

TEST(CommandLine, ReadsAWorkout) {
  const CommandLine line = ParseCommandLine(
      {"workout", "--equipment", "bike", "--duration", "1:02:03", "--interval", "10", "--speed",
       "2.5", "--weight", "68.5", "--manufacturer", "M", "--serial-number", "S", "--model", "QZ"});
  ASSERT_TRUE(line.options) << line.text;
  const WorkoutOptions& workout = line.options->workout;
  EXPECT_EQ(workout.equipment, "bike");
  EXPECT_EQ(workout.duration_s, 3723);
  EXPECT_EQ(workout.interval_s, 10);
  EXPECT_EQ(workout.speed, 2.5);
  EXPECT_EQ(workout.weight_kg, 68.5);
  EXPECT_EQ(workout.manufacturer, "M");
  EXPECT_EQ(workout.serial_number, "S");
  EXPECT_EQ(line.options->model, "QZ");
  EXPECT_EQ(ParseCommandLine({"workout", "--duration", "90"}).options->workout.duration_s, 90);
  EXPECT_EQ(ParseCommandLine({"workout", "--duration", "24:00:00"}).options->workout.duration_s,
            86400);
  EXPECT_EQ(ParseCommandLine({"workout", "--from", "x.csv"}).options->workout.recording, "x.csv");
}

TEST(CommandLine, RefusesImpossibleWorkouts) {
  const auto refusal = [](std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "workout");
    const CommandLine line = ParseCommandLine(arguments);
    EXPECT_EQ(line.status, 64);
    EXPECT_FALSE(line.options);
    EXPECT_THAT(line.text, EndsWith("; see 'ipodctl workout --help'"));
    return line.text;
  };
  for (const char* duration :
       {"0", "", "-5", "1:", ":30", "1:60", "1:2:3:4", "24:00:01", "9999999999", "ten"}) {
    EXPECT_THAT(refusal({"--duration", duration}), HasSubstr("is not a duration")) << duration;
  }
  EXPECT_THAT(refusal({"--equipment", "boat"}), HasSubstr("boat"));
  EXPECT_THAT(refusal({"--interval", "0"}), HasSubstr("--interval"));
  EXPECT_THAT(refusal({"--speed", "0"}), HasSubstr("--speed"));
  EXPECT_THAT(refusal({"--speed", "nan"}), HasSubstr("--speed"));
  EXPECT_THAT(refusal({"--weight", "0"}), HasSubstr("--weight"));
  EXPECT_THAT(refusal({"--weight", "nan"}), HasSubstr("--weight"));
  EXPECT_THAT(refusal({"--from", "x.csv", "--duration", "9"}), HasSubstr("--duration"));
  EXPECT_THAT(refusal({"--manufacturer", std::string(201, 'x')}),
              StartsWith("--manufacturer is too long"));
  EXPECT_THAT(refusal({"--serial-number", std::string(41, '&')}),
              StartsWith("--serial-number is too long"));
  EXPECT_THAT(refusal({"--model", std::string(201, 'x')}), StartsWith("--model is too long"));
}

TEST(CommandLine, ReadsUserDataAndTheStorageFolder) {
  const CommandLine line =
      ParseCommandLine({"userdata", "--weight", "65535", "--simulated", "--storage", "files"});
  ASSERT_TRUE(line.options) << line.text;
  EXPECT_EQ(line.options->user_weight, 65535U);
  EXPECT_EQ(line.options->simulation->storage_folder, "files");
  EXPECT_FALSE(ParseCommandLine({"userdata"}).options->user_weight);
  EXPECT_EQ(ParseCommandLine({"userdata", "--weight", "65536"}).status, 64);
  EXPECT_EQ(ParseCommandLine({"userdata", "--weight", "-1"}).status, 64);
  EXPECT_THAT(ParseCommandLine({"userdata", "--storage", "files"}).text,
              AllOf(StartsWith("--storage"), HasSubstr("needs --simulated")));
}

}  // namespace
