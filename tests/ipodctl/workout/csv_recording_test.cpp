// SPDX-License-Identifier: MIT
// Recordings in comma-separated values: what is read, and what is refused and why.
#include "workout/csv_recording.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "console/failure.h"
#include "ipodctl/workout/recordings.h"

using namespace ipodctl;

namespace {

// The sentence with which `text` is refused.
std::string Refusal(const std::string& text) {
  try {
    Csv(text);
  } catch (const CommandFailure& failure) {
    EXPECT_EQ(failure.status(), 66);
    return failure.what();
  }
  return "not refused";
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

TEST(CsvRecording, TakesQuotesAndSemicolonsWithDecimalCommas) {
  const Recording quoted =
      Csv("\"seconds\",\"distance\",\"energy\",\"pace\",\"event\"\n"
          "\"0\",\"0\",\"0\",\"360\",\"\"\n"
          "\"5\",\"0.01\",\" 1 \",\"355\",\"Pause\"\n");
  ASSERT_EQ(quoted.readings.size(), 2U);
  EXPECT_EQ(quoted.readings[1].distance, 0.01);
  EXPECT_TRUE(quoted.readings[1].paused);
  const Recording semicolons = Csv("seconds;distance;energy;pace;;\n0;0,5;1,25;360;;\n");
  ASSERT_EQ(semicolons.readings.size(), 1U);
  EXPECT_EQ(semicolons.readings[0].distance, 0.5);
  EXPECT_EQ(semicolons.readings[0].kcal, 1.25);
  EXPECT_EQ(Csv("seconds\tkm\tkcal\trpm\n0\t1\t2\t3\n").readings[0].kcal, 2);
}

TEST(CsvRecording, TakesColumnsHoweverTheyAreWritten) {
  for (const char* header :
       {"Time (s),Distance (km),Energy [kcal],Pace (s/km),Heart Rate (bpm)",
        "elapsed_time,distance_km,energy_kcal,pace,heart_rate_bpm",
        "ElapsedTime,Kilometers,Calories,PACE,HeartRate", "SEC,KM,KCAL,Pace,HR"}) {
    const Recording recording = Csv(std::string(header) + "\n0,0.5,1,360,90\n", "stepper");
    EXPECT_EQ(recording.readings[0].distance, 0.5) << header;
    EXPECT_EQ(recording.readings[0].kcal, 1) << header;
    EXPECT_EQ(recording.readings[0].bpm, 90) << header;
    EXPECT_EQ(recording.speed_type, IPOD_SPEED_TYPE_PACE) << header;
  }
  EXPECT_EQ(Csv("s,Distance (km),kcal,spm\n0,0,0,0\n", "stepper").distance_type,
            IPOD_DISTANCE_TYPE_KM);
}

TEST(CsvRecording, IgnoresUnknownColumnsAndTellsWhich) {
  std::vector<std::string> unknown;
  const Recording recording =
      Csv("mood,seconds,\"shoe, size\",km,kcal,pace,\n\"good, even\nvery\",7,43,0,1,360,\n", "bike",
          &unknown);
  EXPECT_EQ(recording.readings.at(0).seconds, 7);
  EXPECT_EQ(unknown, (std::vector<std::string>{"mood", "shoe, size"}));
}

TEST(CsvRecording, RefusesWhatGoesBackByItsLine) {
  const std::string header = "seconds,distance,energy,pace\n0,0,0,0\n5,1.5,2,0\n";
  EXPECT_EQ(Refusal(header + "6,1.25,2,0\n"),
            "ride.csv, line 4: distance goes back from 1.5 to 1.25; it is counted since the start");
  EXPECT_EQ(Refusal(header + "6,1.5,1,0\n"),
            "ride.csv, line 4: energy goes back from 2 to 1; it is counted since the start");
}

TEST(CsvRecording, RefusesQuotesThatAreWrong) {
  const std::string header = "seconds,distance,energy,pace\n";
  EXPECT_EQ(Refusal(header + "0,0,0,0\n5,\"1,2,0\n6,1,2,0\n"),
            "ride.csv, line 3: has a quote that is not closed");
  EXPECT_EQ(Refusal(header + "0,1\"2,0,0\n"), "ride.csv, line 2: has a quote where none can be");
  EXPECT_EQ(Refusal(header + std::string(70000, '0') + "\n"), "ride.csv, line 2: is too long");
}

TEST(CsvRecording, NamesTheLineThatIsWrong) {
  const std::string header = "seconds,distance,energy,pace,bpm\n";
  EXPECT_EQ(Refusal(""), "ride.csv is empty");
  EXPECT_EQ(Refusal(header), "ride.csv holds no readings");
  const std::string columns =
      "; columns are seconds, distance, km or floors, energy or kcal, pace, spm or rpm, incline, "
      "heart rate or bpm, level and event";
  EXPECT_EQ(Refusal("seconds,distance,energy\n"),
            "ride.csv, line 1: there is no column pace, spm or rpm" + columns);
  EXPECT_EQ(Refusal("distance,energy,pace\n"),
            "ride.csv, line 1: there is no column seconds" + columns);
  EXPECT_EQ(Refusal("seconds,distance (mi),energy,pace\n"),
            "ride.csv, line 1: there is no column distance" + columns);
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

}  // namespace
