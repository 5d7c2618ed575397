// SPDX-License-Identifier: MIT
// Adds up the workouts of each week and lays them out.
#include "report/overview.h"

#include <algorithm>

#include "report/calendar.h"
#include "report/markup.h"
#include "report/page_frame.h"

namespace ipodctl {

namespace {

/// What workouts amount to.
struct Sums {
  std::uint64_t workouts = 0;
  double seconds = 0;
  double km = 0;
  double floors = 0;
  double kcal = 0;

  void Add(const WorkoutFigures& figures) {
    ++workouts;
    seconds += figures.seconds.value.value_or(0);
    km += figures.km.value.value_or(0);
    floors += figures.floors.value.value_or(0);
    kcal += figures.kcal.value.value_or(0);
  }
};

struct Week {
  Day monday;
  std::vector<const OverviewEntry*> workouts;
  Sums sums;
};

std::vector<Week> WeeksOf(const std::vector<OverviewEntry>& workouts) {
  std::vector<Week> weeks;
  for (const OverviewEntry& workout : workouts) {
    const Day monday = MondayOf(workout.day);
    if (weeks.empty() || !(weeks.back().monday == monday)) weeks.push_back({monday, {}, {}});
    weeks.back().workouts.push_back(&workout);
    weeks.back().sums.Add(workout.figures);
  }
  return weeks;
}

class OverviewPage {
 public:
  OverviewPage(const Overview& overview, const Presentation& presentation)
      : overview_(overview),
        words_(presentation.words),
        measures_(presentation.measures),
        weeks_(WeeksOf(overview.workouts)) {
    for (const OverviewEntry& workout : overview.workouts) sums_.Add(workout.figures);
    for (const Week& week : weeks_) longest_ = std::max(longest_, week.sums.seconds);
  }

  std::string Render();

 private:
  void AddHead();
  void AddLeftOut();
  void AddSums();
  void AddFigure(Phrase label, const std::string& value, const std::string& unit);
  void AddWeeks();
  void AddWeek(const Week& week);
  void AddRow(const std::string& heading, const std::string& second, const Sums& sums,
              const std::string& bar);
  void OpenTable(Phrase first, Phrase second, bool with_bar);
  std::string DistanceText(const Sums& sums) const;

  const Overview& overview_;
  const Wording& words_;
  const Measures& measures_;
  std::vector<Week> weeks_;
  Sums sums_;
  double longest_ = 0;  // seconds of a week
  std::string html_;
};

std::string Anchor(const Week& week) { return "week-" + DayCode(week.monday); }

void OverviewPage::AddHead() {
  const std::string title = words_.Say(Phrase::kWorkouts);
  const std::string first = words_.Date(overview_.workouts.back().day);
  const std::string last = words_.Date(overview_.workouts.front().day);
  const std::string days = first == last ? first : words_.Say(Phrase::kDayToDay, {first, last});
  html_ = PageHead(words_, title, Escaped(title), Escaped(days));
}

void OverviewPage::AddLeftOut() {
  if (overview_.left_out.empty()) return;
  std::string names;
  for (const std::string& name : overview_.left_out) names += (names.empty() ? "" : ", ") + name;
  html_ += NoteTag(
      words_.Count(overview_.left_out.size(), Phrase::kFileLeftOut, Phrase::kFilesLeftOut), names);
}

void OverviewPage::AddFigure(Phrase label, const std::string& value, const std::string& unit) {
  html_ += RowTag(words_.Say(label),
                  "<b>" + value + "</b>" +
                      (unit.empty() ? "" : " <span class=\"unit\">" + Escaped(unit) + "</span>"));
}

void OverviewPage::AddSums() {
  html_ += "<section>\n<h2>" + Escaped(words_.Say(Phrase::kInAll)) +
           "</h2>\n<table class=\"summary\" role=\"table\"><tbody role=\"rowgroup\">\n";
  AddFigure(Phrase::kWorkouts, words_.Short(static_cast<double>(sums_.workouts), 0), "");
  AddFigure(Phrase::kTime, ClockText(sums_.seconds), "");
  if (sums_.km > 0) {
    AddFigure(Phrase::kDistance, words_.Fixed(measures_.Distance(sums_.km), 2),
              words_.Say(measures_.distance_unit()));
  }
  if (sums_.floors > 0) {
    AddFigure(Phrase::kClimb, words_.Short(sums_.floors, 1), words_.Say(Phrase::kFloors));
  }
  AddFigure(Phrase::kEnergy, words_.Short(sums_.kcal, 0), words_.Say(Phrase::kKilocalories));
  html_ += "</tbody></table>\n</section>\n";
}

std::string OverviewPage::DistanceText(const Sums& sums) const {
  std::string text;
  if (sums.km > 0) {
    text =
        words_.Fixed(measures_.Distance(sums.km), 2) + " " + words_.Say(measures_.distance_unit());
  }
  if (sums.floors > 0) {
    text += (text.empty() ? "" : ", ") + words_.Short(sums.floors, 1) + " " +
            words_.Say(Phrase::kFloors);
  }
  return text.empty() ? "–" : text;
}

// On a phone a row is two lines, so that the roles of a table have to be named.
void OverviewPage::OpenTable(Phrase first, Phrase second, bool with_bar) {
  html_ +=
      "<table class=\"rows listed\" role=\"table\">\n<thead role=\"rowgroup\"><tr role=\"row\">";
  for (const Phrase column : {first, second, Phrase::kTime, Phrase::kDistance, Phrase::kEnergy}) {
    html_ += "<th role=\"columnheader\" scope=\"col\">" + Escaped(words_.Say(column)) + "</th>";
  }
  if (with_bar) html_ += "<td class=\"bar\" aria-hidden=\"true\"></td>";
  html_ += "</tr></thead>\n<tbody role=\"rowgroup\">\n";
}

// @param heading HTML @param second plain text @param bar a cell, or nothing
void OverviewPage::AddRow(const std::string& heading, const std::string& second, const Sums& sums,
                          const std::string& bar) {
  html_ += "<tr role=\"row\"><th role=\"rowheader\" scope=\"row\">" + heading + "</th>";
  const std::string energy =
      words_.Short(sums.kcal, 0) + "\u00A0" + words_.Say(Phrase::kKilocalories);
  for (const std::string& text : {second, ClockText(sums.seconds), DistanceText(sums), energy}) {
    html_ += "<td role=\"cell\">" + Escaped(text) + "</td>";
  }
  html_ += bar + "</tr>\n";
}

void OverviewPage::AddWeeks() {
  html_ += "<section>\n<h2>" + Escaped(words_.Say(Phrase::kByWeek)) + "</h2>\n";
  OpenTable(Phrase::kWeek, Phrase::kWorkouts, true);
  for (const Week& week : weeks_) {
    AddRow("<a href=\"#" + Anchor(week) + "\">" + Escaped(words_.Date(week.monday)) + "</a>",
           words_.Short(static_cast<double>(week.sums.workouts), 0), week.sums,
           BarCell("speed", longest_ > 0 ? week.sums.seconds / longest_ : 0));
  }
  html_ += "</tbody></table>\n<p class=\"caption\">" +
           Escaped(words_.Say(Phrase::kDatesAreOfFiles)) + "</p>\n</section>\n";
}

void OverviewPage::AddWeek(const Week& week) {
  html_ += "<section id=\"" + Anchor(week) + "\">\n<h2>" +
           Escaped(words_.Say(Phrase::kWeekOf, {words_.Date(week.monday)})) + "</h2>\n";
  OpenTable(Phrase::kWorkout, Phrase::kDate, false);
  for (const OverviewEntry* workout : week.workouts) {
    std::string heading =
        "<a href=\"" + Escaped(workout->link) + "\">" + NameTag(workout->title) + "</a>";
    if (workout->damaged)
      heading += " <small>" + Escaped(words_.Say(Phrase::kDamaged)) + "</small>";
    Sums sums;
    sums.Add(workout->figures);
    AddRow(heading, words_.Date(workout->day), sums, "");
  }
  html_ += "</tbody></table>\n</section>\n";
}

std::string OverviewPage::Render() {
  AddHead();
  AddLeftOut();
  AddSums();
  AddWeeks();
  for (const Week& week : weeks_) AddWeek(week);
  const std::string footer =
      Filled(Escaped(words_.Say(Phrase::kMadeFromFolder)), {NameTag(overview_.folder)});
  return std::move(html_) + PageFoot(footer, false);
}

}  // namespace

std::string RenderOverview(const Overview& overview, const Presentation& presentation) {
  return OverviewPage(overview, presentation).Render();
}

}  // namespace ipodctl
