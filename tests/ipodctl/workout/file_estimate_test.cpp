// SPDX-License-Identifier: MIT
// How long ipodctl expects the pieces of a workout document to be.
#include "workout/file_estimate.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ipodctl/workout/recordings.h"
#include "workout/csv_recording.h"

using namespace ipodctl;

namespace {

TEST(FileEstimate, MeasuresTheHeader) {
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

TEST(FileEstimate, MeasuresIntervalsAndSummaries) {
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

TEST(FileEstimate, IntervalsFitAFrameHoweverLargeTheRecordedNumbers) {
  const Recording recording =
      Csv("seconds,floors,energy,pace,incline,bpm,level\n"
          "360000,99999,99999,99999,-90,300,999\n");
  const Interval interval = {IPOD_INTERVAL_TYPE_CONTINUE, recording.readings.front()};
  EXPECT_EQ(SizeOfInterval(recording, interval), 208U);
  EXPECT_LE(SizeOfInterval(recording, interval), 246U);
}

TEST(FileEstimate, AddsUpAllPiecesAndWhatTheIpodAdds) {
  const std::string header =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<gymData>\n\t<vers>1</vers>\n"
      "\t<equipmentInfo>\n\t\t<manufacturerID>id</manufacturerID>\n"
      "\t\t<manufacturerName>name</manufacturerName>\n\t\t<type>Treadmill</type>\n"
      "\t\t<model>QZ104</model>\n\t\t<serialNumber>7</serialNumber>\n\t</equipmentInfo>\n"
      "\t<userInfo>\n\t\t<kg>75.0</kg>\n\t</userInfo>\n";
  const std::string start =
      "\t<interval>\n\t\t<event>start</event>\n\t\t<sec>0</sec>\n\t\t<kCal>0.00</kCal>\n"
      "\t\t<km>0.00</km>\n\t\t<pace>0</pace>\n\t\t<incline>0.0</incline>\n\t</interval>\n";
  const std::string end =
      "\t<interval>\n\t\t<event>end</event>\n\t\t<sec>5</sec>\n\t\t<kCal>0.00</kCal>\n"
      "\t\t<km>0.00</km>\n\t\t<pace>0</pace>\n\t\t<incline>0.0</incline>\n\t</interval>\n";
  const std::string summary =
      "\t<workoutSummary>\n\t\t<sec>5</sec>\n\t\t<kCal>0.00</kCal>\n\t\t<km>0.00</km>\n"
      "\t\t<pace>0</pace>\n\t</workoutSummary>\n";
  const Recording recording = Kilometres({At(0), At(5)});
  const FileEstimate file =
      EstimateFile({"id", "name", "QZ104", "7", IPOD_EQUIPMENT_TYPE_TREADMILL, 75}, recording,
                   IntervalsOf(recording, 5), SummaryAt(recording, 5));
  EXPECT_EQ(file.total, header.size() + start.size() + end.size() + summary.size() + 1024);
  EXPECT_EQ(file.largest_piece, start.size());
}

}  // namespace
