// SPDX-License-Identifier: MIT
// How ipodctl escapes the names in a workout document and measures the document's pieces.
#include "workout/file_estimate.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ipodctl/workout/recordings.h"
#include "workout/csv_recording.h"

using namespace ipodctl;

namespace {

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

}  // namespace
