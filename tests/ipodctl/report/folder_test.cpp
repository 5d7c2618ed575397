// SPDX-License-Identifier: MIT
// ipodctl report FOLDER, run as a program: a page for every workout, and one of them all.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "documents.h"
#include "report/calendar.h"
#include "support/json_lines.h"
#include "support/process.h"
#include "support/temporary_folder.h"

namespace fs = std::filesystem;
using ipodctl::Day;
using ipodctl::DayCode;
using ipodctl::MondayOf;
using test::Ended;
using test::Ipodctl;
using test::Objects;
using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::Not;

namespace {

class FolderReport : public ::testing::Test {
 protected:
  std::string Path(const std::string& name = "files") const { return folder_.path(name); }

  void SetUp() override { fs::create_directory(Path()); }

  // Written at noon of that day in `files`.
  std::string Write(const std::string& name, const std::string& content, const Day& day) const {
    const std::string path = folder_.Write("files/" + name, content);
    std::tm noon = {};
    noon.tm_year = day.year - 1900;
    noon.tm_mon = day.month - 1;
    noon.tm_mday = day.day;
    noon.tm_hour = 12;
    noon.tm_isdst = -1;
    const auto time = std::chrono::system_clock::from_time_t(std::mktime(&noon));
    fs::last_write_time(
        path, fs::file_time_type::clock::now() + (time - std::chrono::system_clock::now()));
    return path;
  }

  std::string Content(const std::string& name) const {
    std::ostringstream content;
    content << std::ifstream(Path(name), std::ios::binary).rdbuf();
    return content.str();
  }

 private:
  test::TemporaryFolder folder_;
};

// "<td role="cell">1</td><td role="cell">4:00</td>"
std::string Cells(std::initializer_list<const char*> texts) {
  std::string cells;
  for (const char* text : texts) cells += std::string("<td role=\"cell\">") + text + "</td>";
  return cells;
}

TEST(Calendar, FindsTheMondayOfEveryDay) {
  EXPECT_EQ(DayCode(MondayOf({2026, 3, 2})), "2026-03-02");
  EXPECT_EQ(DayCode(MondayOf({2026, 3, 8})), "2026-03-02");
  EXPECT_EQ(DayCode(MondayOf({2026, 3, 1})), "2026-02-23");
  EXPECT_EQ(DayCode(MondayOf({2026, 1, 1})), "2025-12-29");
  EXPECT_EQ(DayCode(MondayOf({2024, 3, 3})), "2024-02-26");
}

TEST_F(FolderReport, MakesAPageOfEachWorkoutAndOneOfThemAll) {
  Write("gym-0001.xml", report::kRun, {2026, 3, 3});
  Write("gym-0002.XML", report::kOlderRide, {2026, 3, 8});
  Write("gym-0003.xml", report::kRun, {2026, 3, 9});
  Write("notes.txt", "no workout", {2026, 3, 9});
  const Ended ended = Ipodctl({"report", Path()});
  EXPECT_EQ(ended.status, 0);
  EXPECT_EQ(ended.err, "");
  EXPECT_EQ(ended.out, "Wrote " + Path("files/workouts.html") + ": 3 workouts.\n");
  const std::string overview = Content("files/workouts.html");
  EXPECT_THAT(overview, AllOf(HasSubstr("<h1>Workouts</h1>\n<p class=\"lead\">3 March 2026 to 9 "
                                        "March 2026</p>"),
                              HasSubstr("<b>8:30</b>"),  // 4:00 twice and 0:30
                              HasSubstr("<b>1.47</b> <span class=\"unit\">km</span>"),
                              HasSubstr("<b>66</b> <span class=\"unit\">kcal</span>")));
  EXPECT_THAT(overview, HasSubstr("<a href=\"#week-2026-03-02\">2 March 2026</a></th>" +
                                  Cells({"2", "4:30", "0.86 km", "35\u00A0kcal"})));
  EXPECT_THAT(overview, HasSubstr("<a href=\"#week-2026-03-09\">9 March 2026</a></th>" +
                                  Cells({"1", "4:00", "0.61 km", "31\u00A0kcal"})));
  EXPECT_THAT(overview, HasSubstr("<a href=\"gym-0002.html\"><bdi>Bike workout</bdi></a></th>" +
                                  Cells({"8 March 2026", "0:30", "0.25 km", "4\u00A0kcal"})));
  EXPECT_LT(overview.find("id=\"week-2026-03-09\""), overview.find("id=\"week-2026-03-02\""));
  for (const char* page : {"files/gym-0001.html", "files/gym-0002.html", "files/gym-0003.html"}) {
    EXPECT_THAT(Content(page), HasSubstr("<nav><a href=\"workouts.html\">All workouts</a></nav>"));
  }
  EXPECT_FALSE(fs::exists(Path("files/notes.html")));
}

TEST_F(FolderReport, NamesWhatItCannotReadAndShowsTheRest) {
  Write("a.xml", report::kRun, {2026, 3, 3});
  Write("b.xml", "<html></html>", {2026, 3, 3});
  Write("c <&\">.xml", "", {2026, 3, 3});
  const Ended ended = Ipodctl({"report", Path()});
  EXPECT_EQ(ended.status, 66);
  EXPECT_EQ(ended.out, "Wrote " + Path("files/workouts.html") + ": 1 workout.\n");
  EXPECT_EQ(ended.err,
            "ipodctl: " + Path("files/b.xml") +
                " is not a workout document: its first element is not gymData (line 1, "
                "column 1).\nipodctl: " +
                Path("files/c <&\">.xml") + " is not a workout document: it is empty.\nipodctl: " +
                Path("files/workouts.html") + " leaves out 2 files of " + Path() + ".\n");
  EXPECT_THAT(
      Content("files/workouts.html"),
      HasSubstr("<strong>2 files left out.</strong>b.xml, c &lt;&amp;&quot;&gt;.xml</div>"));
  EXPECT_FALSE(fs::exists(Path("files/b.html")));
}

TEST_F(FolderReport, CountsWhatADamagedDocumentHolds) {
  Write("cut.xml", report::RunUpTo("<sec>120</sec>\n"), {2026, 3, 3});
  const Ended ended = Ipodctl({"report", Path()});
  EXPECT_EQ(ended.status, 65);
  EXPECT_THAT(ended.err, AllOf(HasSubstr("cut.xml is cut short at line 36, column 1; "),
                               HasSubstr("1 file of " + Path() + " could not be read to the end")));
  EXPECT_THAT(Content("files/workouts.html"),
              HasSubstr("</a> <small>damaged</small></th>" +
                        Cells({"3 March 2026", "2:00", "0.20 km", "10\u00A0kcal"})));
}

TEST_F(FolderReport, IsRefusedWhereThereIsNoWorkout) {
  const auto refused = [this] {
    const Ended ended = Ipodctl({"report", Path()});
    EXPECT_EQ(ended.status, 66);
    EXPECT_THAT(ended.err, HasSubstr("ipodctl: " + Path() +
                                     " holds no workout document, which would be a file with a "
                                     "name that ends in .xml.\n"));
    EXPECT_FALSE(fs::exists(Path("files/workouts.html")));
  };
  refused();
  fs::create_directory(Path("files/folder.xml"));
  refused();
  Write("bad.xml", "hello", {2026, 3, 3});
  refused();
}

TEST_F(FolderReport, WritesElsewhereWhereItIsTold) {
  const std::string document = Write("run.xml", report::kRun, {2026, 3, 3});
  fs::create_directory(Path("site"));
  EXPECT_EQ(Ipodctl({"report", Path(), "-o", Path("site/index.html")}).status, 0);
  EXPECT_THAT(Content("site/index.html"), HasSubstr("<a href=\"run.html\">"));
  EXPECT_THAT(Content("site/run.html"), HasSubstr("<a href=\"index.html\">"));
  EXPECT_FALSE(fs::exists(Path("files/run.html")));

  const Ended ended = Ipodctl({"report", Path(), "-o", document});
  EXPECT_EQ(ended.status, 64);
  EXPECT_EQ(Content("files/run.xml"), report::kRun);
}

TEST_F(FolderReport, GivesEveryWorkoutAPageOfItsOwn) {
  Write("a.XML", report::kOlderRide, {2026, 3, 3});
  Write("a.xml", report::kRun, {2026, 3, 4});
  Write("workouts.xml", report::kRun, {2026, 3, 5});
  Write("50% #1?.xml", report::kRun, {2026, 3, 5});
  EXPECT_EQ(Ipodctl({"report", Path()}).status, 0);
  EXPECT_THAT(Content("files/a.html"), HasSubstr("<h1>Bike workout</h1>"));
  EXPECT_THAT(Content("files/a.xml.html"), HasSubstr("<h1>Treadmill workout</h1>"));
  EXPECT_THAT(Content("files/workouts.xml.html"), HasSubstr("<h1>Treadmill workout</h1>"));
  EXPECT_THAT(Content("files/workouts.html"),
              AllOf(HasSubstr("<h1>Workouts</h1>"), HasSubstr("<a href=\"a.xml.html\">"),
                    HasSubstr("<a href=\"50%25%20%231%3F.html\">")));
  EXPECT_TRUE(fs::exists(Path("files/50% #1?.html")));
}

TEST_F(FolderReport, PrintsAnObjectForEachFileAndOneForAll) {
  Write("a.xml", report::kRun, {2026, 3, 3});
  Write("b.xml", "", {2026, 3, 3});
  const auto objects = Objects(Ipodctl({"report", Path(), "--json"}).out);
  ASSERT_EQ(objects.size(), 4U);
  EXPECT_EQ(objects[0].at("document"), Path("files/a.xml"));
  EXPECT_EQ(objects[0].at("page"), Path("files/a.html"));
  EXPECT_EQ(objects[0].at("km"), 0.61);
  EXPECT_EQ(objects[1].at("error"), "input-file");
  EXPECT_EQ(objects[2].at("overview"), Path("files/workouts.html"));
  EXPECT_EQ(objects[2].at("workouts"), 1);
  EXPECT_EQ(objects[2].at("left_out"), 1);
  EXPECT_EQ(objects[3].at("status"), 66);
}

TEST_F(FolderReport, SpeaksTheLanguageThatIsAskedFor) {
  Write("a.xml", report::kRun, {2026, 3, 1});
  Ipodctl({"report", Path(), "--language", "fr", "--units", "imperial"});
  EXPECT_THAT(Content("files/workouts.html"),
              AllOf(HasSubstr("<html lang=\"fr\""), HasSubstr("<h1>Entraînements</h1>"),
                    HasSubstr("Semaine du 23 février 2026"), HasSubstr("1er mars 2026"),
                    HasSubstr("0,38 mi"), Not(HasSubstr("Week"))));
}

}  // namespace
