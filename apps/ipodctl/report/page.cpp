// SPDX-License-Identifier: MIT
// Lays out the page.
#include "report/page.h"

#include <utility>
#include <vector>

#include "console/text.h"
#include "report/chart.h"
#include "report/markup.h"
#include "report/page_style.h"

namespace ipodctl {

namespace {

class Page {
 public:
  Page(const WorkoutDocument& document, const WorkoutFigures& figures)
      : document_(document), figures_(figures) {}

  std::string Render(const std::string& source);

 private:
  void AddHead();
  void AddNotes();
  void AddSummary();
  void AddFigure(const std::string& label, const Figure& figure, const std::string& value,
                 const std::string& unit, const std::string& more = {});
  void AddSpeeds();
  void AddChart();
  void AddEquipment();
  std::string Title() const;
  std::string Lead() const;

  const WorkoutDocument& document_;
  const WorkoutFigures& figures_;
  std::string html_;
};

// A name may be written from right to left without turning the text around it.
std::string Name(const std::string& text) { return "<bdi>" + Escaped(text) + "</bdi>"; }

std::string Page::Title() const {
  const std::string& type = document_.equipment.type;
  return type.empty() || type == "Other" ? "Workout" : Printable(type) + " workout";
}

std::string Page::Lead() const {
  std::string lead;
  for (const std::string& part :
       {document_.equipment.gym_name, document_.equipment.manufacturer_name,
        document_.equipment.model}) {
    if (!part.empty()) lead += (lead.empty() ? "" : " · ") + Name(part);
  }
  return lead;
}

void Page::AddHead() {
  const std::string title = Escaped(Title());
  html_ =
      "<!DOCTYPE html>\n"
      "<html lang=\"en\" xmlns=\"http://www.w3.org/1999/xhtml\">\n"
      "<head>\n"
      "<meta charset=\"utf-8\"/>\n"
      "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\"/>\n"
      "<title>" +
      title + "</title>\n<style>" + kPageStyle +
      "</style>\n</head>\n<body>\n<main>\n<header>\n<h1>" + title + "</h1>\n";
  const std::string lead = Lead();
  if (!lead.empty()) html_ += "<p class=\"lead\">" + lead + "</p>\n";
  html_ += "</header>\n";
}

void Page::AddNotes() {
  const auto note = [this](const std::string& headline, const std::string& text) {
    html_ += "<div class=\"note\" role=\"note\"><strong>" + Escaped(headline) + "</strong>" +
             Escaped(text) + "</div>\n";
  };
  if (document_.problem) {
    note("The document " + ProblemText(*document_.problem) + ".",
         document_.summary ? "This page shows what comes before that place."
                           : "This page shows what comes before that place; its figures are "
                             "computed from the intervals.");
  } else if (!document_.summary) {
    note("The document has no summary.", "The figures are computed from its intervals.");
  }
  if (document_.unusable_values != 0) {
    note(Counted(document_.unusable_values, "value") + " left out.",
         "No usable number was written there.");
  }
}

void Page::AddFigure(const std::string& label, const Figure& figure, const std::string& value,
                     const std::string& unit, const std::string& more) {
  html_ += "<tr role=\"row\"><th role=\"rowheader\" scope=\"row\">" + label +
           "</th><td role=\"cell\"><b>" + value + "</b>";
  if (!unit.empty()) html_ += " <span class=\"unit\">" + unit + "</span>";
  if (!more.empty()) html_ += "<small>" + more + "</small>";
  if (figure.computed && document_.summary) html_ += "<small>from the intervals</small>";
  html_ += "</td></tr>\n";
}

void Page::AddSpeeds() {
  if (figures_.pace.value) {
    AddFigure("Pace", figures_.pace, ClockText(*figures_.pace.value), "min/km", "average");
  }
  const auto add_rate = [this](const char* label, const Figure& rate) {
    if (rate.value) AddFigure(label, rate, Short(*rate.value, 0), "per minute", "average");
  };
  add_rate("Steps", figures_.spm);
  add_rate("Revolutions", figures_.rpm);
}

void Page::AddSummary() {
  html_ += "<section>\n<h2>Summary</h2>\n";
  const std::size_t empty = html_.size();
  html_ += "<table class=\"summary\" role=\"table\"><tbody role=\"rowgroup\">\n";
  const std::size_t head = html_.size();
  if (figures_.seconds.value) {
    const std::string paused =
        figures_.paused_seconds > 0 ? "paused " + ClockText(figures_.paused_seconds) : "";
    AddFigure("Time", figures_.seconds, ClockText(*figures_.seconds.value), "", paused);
  }
  if (figures_.km.value) {
    AddFigure("Distance", figures_.km, Fixed(*figures_.km.value, 2), "km");
  }
  if (figures_.floors.value) {
    AddFigure("Climb", figures_.floors, Short(*figures_.floors.value, 1), "floors");
  }
  if (figures_.kcal.value) {
    AddFigure("Energy", figures_.kcal, Short(*figures_.kcal.value, 0), "kcal");
  }
  AddSpeeds();
  if (figures_.bpm.value) {
    const std::string highest =
        figures_.highest_bpm ? ", highest " + Short(*figures_.highest_bpm, 0) : "";
    AddFigure("Heart rate", figures_.bpm, Short(*figures_.bpm.value, 0), "bpm",
              "average" + highest);
  }
  if (html_.size() == head) {
    html_.resize(empty);
    html_ += "<p>The document holds no figures.</p>\n</section>\n";
    return;
  }
  html_ += "</tbody></table>\n</section>\n";
}

void Page::AddChart() {
  const Chart chart = PlanChart(document_, figures_);
  html_ += "<section>\n<h2>Over time</h2>\n";
  if (chart.panels.empty()) {
    html_ += "<p>The document holds no intervals to draw.</p>\n</section>\n";
    return;
  }
  html_ += "<figure>\n" + RenderChart(chart, kWideChart) + RenderChart(chart, kNarrowChart);
  for (const Panel& panel : chart.panels) {
    if (!panel.cut_off) continue;
    html_ += "<figcaption>A pace slower than " + ClockText(panel.scale.high) +
             " is drawn at the lower edge.</figcaption>\n";
  }
  html_ += "</figure>\n</section>\n";
}

void Page::AddEquipment() {
  const EquipmentInfo& equipment = document_.equipment;
  std::vector<std::pair<const char*, std::string>> facts = {
      {"Type", equipment.type},
      {"Manufacturer", equipment.manufacturer_name},
      {"Manufacturer ID", equipment.manufacturer_id},
      {"Model", equipment.model},
      {"Serial number", equipment.serial_number},
      {"Gym", equipment.gym_name},
      {"Place", equipment.gym_location},
  };
  if (document_.weight_kg && *document_.weight_kg > 0) {
    facts.emplace_back("User’s weight", Short(*document_.weight_kg, 1) + " kg");
  }
  const IpodInfo& ipod = document_.ipod;
  facts.insert(facts.end(), {{"iPod", ipod.model},
                             {"iPod’s software", ipod.software_version},
                             {"iPod’s serial number", ipod.serial_number}});
  std::string rows;
  for (const auto& [label, value] : facts) {
    if (value.empty()) continue;
    rows += std::string("<tr role=\"row\"><th role=\"rowheader\" scope=\"row\">") + label +
            "</th><td role=\"cell\">" + Name(value) + "</td></tr>\n";
  }
  if (rows.empty()) return;
  html_ +=
      "<section>\n<h2>Equipment, user and iPod</h2>\n"
      "<table class=\"facts\" role=\"table\"><tbody role=\"rowgroup\">\n" +
      rows + "</tbody></table>\n</section>\n";
}

std::string Page::Render(const std::string& source) {
  AddHead();
  AddNotes();
  AddSummary();
  AddChart();
  AddEquipment();
  html_ += "<footer>Made by ipodctl from " + Name(source) + ", " +
           Counted(static_cast<unsigned long>(document_.intervals.size()), "interval") +
           ".</footer>\n</main>\n</body>\n</html>\n";
  return std::move(html_);
}

}  // namespace

std::string RenderPage(const WorkoutDocument& document, const WorkoutFigures& figures,
                       const std::string& source) {
  return Page(document, figures).Render(source);
}

std::string ProblemText(const DocumentProblem& problem) {
  const std::string place =
      " at line " + std::to_string(problem.line) + ", column " + std::to_string(problem.column);
  if (problem.cut_short) return "is cut short" + place;
  return "is malformed" + place + " (" + problem.what + ")";
}

}  // namespace ipodctl
