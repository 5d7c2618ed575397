// SPDX-License-Identifier: MIT
// What stands on the page.
#include "report/page.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "documents.h"
#include "report/workout_reader.h"

using namespace ipodctl;
using report::Document;
using report::IntervalAt;
using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

namespace {

std::string PageOf(const std::string& text, const std::string& source = "run.xml") {
  const WorkoutDocument document = ParseWorkoutDocument(text);
  return RenderPage(document, FiguresOf(document), source);
}

std::string Row(const std::string& label, const std::string& value) {
  return "<tr role=\"row\"><th role=\"rowheader\" scope=\"row\">" + label +
         "</th><td role=\"cell\">" + value + "</td></tr>";
}

TEST(Page, SummarisesTheWorkoutInATable) {
  EXPECT_THAT(
      PageOf(report::kRun),
      AllOf(HasSubstr(Row("Time", "<b>4:00</b><small>paused 1:00</small>")),
            HasSubstr(Row("Distance", "<b>0.61</b> <span class=\"unit\">km</span>")),
            HasSubstr(Row("Energy", "<b>31</b> <span class=\"unit\">kcal</span>")),
            HasSubstr(Row("Pace",
                          "<b>5:05</b> <span class=\"unit\">min/km</span><small>average</small>")),
            HasSubstr(Row("Heart rate",
                          "<b>131</b> <span class=\"unit\">bpm</span>"
                          "<small>average, highest 150</small>"))));
}

TEST(Page, SummarisesClimbStepsAndRevolutions) {
  EXPECT_THAT(
      PageOf(Document("<workoutSummary><floors>2.5</floors><spm>50</spm></workoutSummary>")),
      AllOf(HasSubstr(Row("Climb", "<b>2.5</b> <span class=\"unit\">floors</span>")),
            HasSubstr(Row("Steps",
                          "<b>50</b> <span class=\"unit\">per minute</span>"
                          "<small>average</small>"))));
  EXPECT_THAT(PageOf(Document("<workoutSummary><rpm>70</rpm></workoutSummary>")),
              HasSubstr(Row("Cadence",
                            "<b>70</b> <span class=\"unit\">rpm</span>"
                            "<small>average</small>")));
}

TEST(Page, ListsEquipmentUserAndIpod) {
  EXPECT_THAT(PageOf(report::kRun),
              AllOf(HasSubstr("<h1>Treadmill workout</h1>\n<p class=\"lead\"><bdi>Northway &amp; "
                              "S\xC3\xB6hne</bdi> \xC2\xB7 <bdi>QZ104</bdi></p>"),
                    HasSubstr(Row("Type", "<bdi>Treadmill</bdi>")),
                    HasSubstr(Row("Manufacturer", "<bdi>Northway &amp; S\xC3\xB6hne</bdi>")),
                    HasSubstr(Row("Manufacturer ID", "<bdi>41</bdi>")),
                    HasSubstr(Row("Model", "<bdi>QZ104</bdi>")),
                    HasSubstr(Row("Serial number", "<bdi>QZ-0042</bdi>")),
                    HasSubstr(Row("User\xE2\x80\x99s weight", "<bdi>72.5 kg</bdi>")),
                    HasSubstr(Row("iPod", "<bdi>MB598LL</bdi>")), Not(HasSubstr("Gym"))));
  EXPECT_THAT(PageOf(report::kOlderRide), AllOf(HasSubstr("<h1>Bike workout</h1>"),
                                                HasSubstr(Row("Gym", "<bdi>Harbour Gym</bdi>")),
                                                HasSubstr(Row("Place", "<bdi>Pier 4</bdi>"))));
}

TEST(Page, DrawsTheChartForWideAndForNarrowScreens) {
  EXPECT_THAT(
      PageOf(report::kRun),
      AllOf(HasSubstr("<svg class=\"wide\" viewBox=\"0 0 760 738\""),
            HasSubstr("<svg class=\"narrow\" viewBox=\"0 0 340 674\""), HasSubstr("@media print"),
            HasSubstr("prefers-color-scheme: dark"), HasSubstr("name=\"viewport\"")));
}

TEST(Page, NeedsNothingFromElsewhere) {
  const std::string page = PageOf(report::kRun);
  for (const char* reference : {"src=", "href=", "url(", "@import", "<link"}) {
    EXPECT_THAT(page, Not(HasSubstr(reference)));
  }
}

TEST(Page, TellsOfDamage) {
  EXPECT_THAT(PageOf("<gymData>\n" + IntervalAt(5, "<km>1</km>")),
              HasSubstr("<strong>The document is cut short at line 3, column 1.</strong>This page "
                        "shows what comes before that place; its figures are computed from the "
                        "intervals.</div>"));
  EXPECT_THAT(PageOf(std::string(report::kRun) + "x"),
              HasSubstr("<strong>The document is malformed at line 73, column 11 (junk after "
                        "document element).</strong>This page shows what comes before that "
                        "place.</div>"));
  EXPECT_THAT(PageOf(report::kRun), Not(HasSubstr("role=\"note\"")));
}

TEST(Page, TellsWhatIsComputedOrLeftOut) {
  EXPECT_THAT(PageOf(Document(IntervalAt(5, "<km>1</km>"))),
              HasSubstr("<strong>The document has no summary.</strong>The figures are computed "
                        "from its intervals.</div>"));
  EXPECT_THAT(PageOf(Document(IntervalAt(5, "<km>1</km>") +
                              "<workoutSummary><sec>6</sec></workoutSummary>")),
              AllOf(HasSubstr("<b>1.00</b> <span class=\"unit\">km</span><small>from the intervals"
                              "</small>"),
                    HasSubstr(Row("Time", "<b>0:06</b>"))));
  EXPECT_THAT(PageOf(Document(IntervalAt(5, "<km>nan</km>"))),
              HasSubstr("<strong>1 value left out.</strong>"));
  EXPECT_THAT(PageOf(Document(IntervalAt(5, "<km>inf</km><kCal>nan</kCal>"))),
              HasSubstr("<strong>2 values left out.</strong>"));
}

TEST(Page, TellsWhichPaceIsDrawnAtTheEdge) {
  std::string intervals = IntervalAt(0, "<pace>7200</pace>");
  for (int second = 1; second < 20; ++second) intervals += IntervalAt(second, "<pace>300</pace>");
  EXPECT_THAT(PageOf(Document(intervals)),
              HasSubstr("A pace slower than 10:00 is drawn at the lower edge."));
  EXPECT_THAT(PageOf(report::kRun), Not(HasSubstr("lower edge")));
}

TEST(Page, SaysWhenThereIsNothingToShow) {
  EXPECT_THAT(PageOf("<gymData/>"),
              AllOf(HasSubstr("<h1>Workout</h1>"), HasSubstr("The document holds no figures."),
                    HasSubstr("The document holds no intervals to draw."),
                    HasSubstr(", 0 intervals."), Not(HasSubstr("Equipment,"))));
}

TEST(Page, IsNotSteeredByNames) {
  const std::string name = "&lt;script&gt;alert(1)&lt;/script&gt;";
  const std::string page =
      PageOf(Document("<equipmentInfo><type>" + name + "</type><model>\"'" + name +
                      "</model><gymName>&amp;amp;</gymName></equipmentInfo>"),
             "<b>.xml");
  EXPECT_THAT(page, Not(HasSubstr("<script")));
  EXPECT_THAT(page,
              AllOf(HasSubstr("<h1><bdi>" + name + "</bdi> workout</h1>"),
                    HasSubstr("<title>" + name + " workout</title>"),
                    HasSubstr("<bdi>&quot;&#39;" + name + "</bdi>"),
                    HasSubstr("<bdi>&amp;amp;</bdi>"), HasSubstr("from <bdi>&lt;b&gt;.xml</bdi>")));
}

TEST(Page, ShowsNumbersWhateverWasMeasured) {
  const std::string bike = "<equipmentInfo><type>Bike</type></equipmentInfo>";
  const char* const measured[] = {
      "<km>1e-310</km><pace>1e-310</pace>", "<km>9999999999</km><pace>9999999999</pace>",
      "<km>9999999999</km><rpm>1e-310</rpm>", "<km>1e-310</km><rpm>9999999999</rpm>"};
  for (const char* elements : measured) {
    for (const std::string& equipment : {bike, std::string()}) {
      for (const int seconds : {0, 1, 2147483647}) {
        const WorkoutDocument document = ParseWorkoutDocument(
            Document(equipment + "<interval><sec>1e-310</sec><km>0</km></interval>" +
                     IntervalAt(seconds, elements) + "<workoutSummary><sec>1e-310</sec>" +
                     elements + "</workoutSummary>"));
        Presentation presentation;
        presentation.measures = Measures(Units::kImperial);
        presentation.max_heart_rate = 200;
        std::string page = RenderPage(document, FiguresOf(document), "w", presentation);
        page.resize(page.find("<script>"));
        for (const char* no_number : {"inf", "nan"}) {
          EXPECT_THAT(page, Not(HasSubstr(no_number))) << elements << seconds;
        }
      }
    }
  }
}

TEST(Page, IsHtml) {
  EXPECT_THAT(PageOf(report::kRun), StartsWith("<!DOCTYPE html>\n<html lang=\"en\""));
}

}  // namespace
