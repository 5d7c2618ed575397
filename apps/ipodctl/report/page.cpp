// SPDX-License-Identifier: MIT
// Lays out the page.
#include "report/page.h"

#include <utility>
#include <vector>

#include "console/text.h"
#include "report/chart.h"
#include "report/chart_readings.h"
#include "report/markup.h"
#include "report/page_frame.h"
#include "report/page_tables.h"

namespace ipodctl {

namespace {

struct EquipmentKind {
  const char* type;  // as documents name it
  Phrase name;
  Phrase workout;
};

constexpr EquipmentKind kKinds[] = {
    {"Treadmill", Phrase::kTreadmill, Phrase::kTreadmillWorkout},
    {"Elliptical", Phrase::kElliptical, Phrase::kEllipticalWorkout},
    {"Stepper", Phrase::kStepper, Phrase::kStepperWorkout},
    {"Bike", Phrase::kBike, Phrase::kBikeWorkout},
    {"Other", Phrase::kOther, Phrase::kWorkout},
};

const EquipmentKind* KindOf(const std::string& type) {
  for (const EquipmentKind& kind : kKinds) {
    if (type == kind.type) return &kind;
  }
  return nullptr;
}

class Page {
 public:
  Page(const WorkoutDocument& document, const WorkoutFigures& figures,
       const Presentation& presentation)
      : document_(document),
        figures_(figures),
        presentation_(presentation),
        words_(presentation.words),
        measures_(presentation.measures) {}

  std::string Render(const std::string& source);

 private:
  void AddHead();
  void AddNotes();
  void AddSummary();
  void AddFigure(Phrase label, const Figure& figure, const std::string& value,
                 const std::string& unit, const std::string& more = {});
  void AddAmounts();
  void AddSpeeds();
  void AddHeartRate();
  bool AddChart();
  void AddEquipment();
  std::string Heading() const;
  std::string Lead() const;
  std::string TypeName() const;
  std::string WeightText() const;

  const WorkoutDocument& document_;
  const WorkoutFigures& figures_;
  const Presentation& presentation_;
  const Wording& words_;
  const Measures& measures_;
  std::string html_;
};

std::string Page::Heading() const {
  const std::string& type = document_.equipment.type;
  if (type.empty() || KindOf(type) != nullptr) return Escaped(WorkoutTitle(document_, words_));
  return Filled(Escaped(words_.Say(Phrase::kOtherWorkout)), {NameTag(type)});
}

std::string Page::Lead() const {
  std::string lead;
  for (const std::string& part :
       {document_.equipment.gym_name, document_.equipment.manufacturer_name,
        document_.equipment.model}) {
    if (!part.empty()) lead += (lead.empty() ? "" : " · ") + NameTag(part);
  }
  return lead;
}

void Page::AddHead() {
  html_ = PageHead(words_, WorkoutTitle(document_, words_), Heading(), Lead());
  if (presentation_.overview.empty()) return;
  html_ += "<nav><a href=\"" + Escaped(presentation_.overview) + "\">" +
           Escaped(words_.Say(Phrase::kAllWorkouts)) + "</a></nav>\n";
}

void Page::AddNotes() {
  if (document_.problem) {
    const DocumentProblem& problem = *document_.problem;
    const std::string headline =
        words_.Say(problem.cut_short ? Phrase::kCutShort : Phrase::kMalformed,
                   {std::to_string(problem.line), std::to_string(problem.column), problem.what});
    html_ += NoteTag(headline, words_.Say(document_.summary ? Phrase::kShowsWhatIsBefore
                                                            : Phrase::kShowsAndComputes));
  } else if (!document_.summary) {
    html_ += NoteTag(words_.Say(Phrase::kNoSummary), words_.Say(Phrase::kComputed));
  }
  if (document_.unusable_values != 0) {
    html_ += NoteTag(
        words_.Count(document_.unusable_values, Phrase::kValueLeftOut, Phrase::kValuesLeftOut),
        words_.Say(Phrase::kNoUsableNumber));
  }
}

void Page::AddFigure(Phrase label, const Figure& figure, const std::string& value,
                     const std::string& unit, const std::string& more) {
  std::string cell = "<b>" + value + "</b>";
  if (!unit.empty()) cell += " <span class=\"unit\">" + Escaped(unit) + "</span>";
  if (!more.empty()) cell += "<small>" + Escaped(more) + "</small>";
  if (figure.computed && document_.summary) {
    cell += "<small>" + Escaped(words_.Say(Phrase::kFromIntervals)) + "</small>";
  }
  html_ += RowTag(words_.Say(label), cell);
}

void Page::AddAmounts() {
  if (figures_.seconds.value) {
    const std::string paused =
        figures_.paused_seconds > 0
            ? words_.Say(Phrase::kPausedFor, {ClockText(figures_.paused_seconds)})
            : "";
    AddFigure(Phrase::kTime, figures_.seconds, ClockText(*figures_.seconds.value), "", paused);
  }
  if (figures_.km.value) {
    AddFigure(Phrase::kDistance, figures_.km,
              words_.Fixed(measures_.Distance(*figures_.km.value), 2),
              words_.Say(measures_.distance_unit()));
  }
  if (figures_.floors.value) {
    AddFigure(Phrase::kClimb, figures_.floors, words_.Short(*figures_.floors.value, 1),
              words_.Say(Phrase::kFloors));
  }
  if (figures_.kcal.value) {
    AddFigure(Phrase::kEnergy, figures_.kcal, words_.Short(*figures_.kcal.value, 0),
              words_.Say(Phrase::kKilocalories));
  }
}

void Page::AddSpeeds() {
  const std::string average = words_.Say(Phrase::kAverage);
  if (figures_.pace.value && *figures_.pace.value > 0 && IsRide(document_)) {
    AddFigure(Phrase::kSpeed, figures_.pace,
              words_.Fixed(measures_.Speed(KilometresPerHour(*figures_.pace.value)), 1),
              words_.Say(measures_.speed_unit()), average);
  } else if (figures_.pace.value) {
    AddFigure(Phrase::kPace, figures_.pace, ClockText(measures_.Pace(*figures_.pace.value)),
              words_.Say(measures_.pace_unit()), average);
  }
  const auto add_rate = [&](Phrase label, const Figure& rate, Phrase unit) {
    if (rate.value) {
      AddFigure(label, rate, words_.Short(*rate.value, 0), words_.Say(unit), average);
    }
  };
  add_rate(Phrase::kSteps, figures_.spm, Phrase::kPerMinute);
  add_rate(Phrase::kCadence, figures_.rpm, Phrase::kRevolutionsPerMinute);
}

void Page::AddHeartRate() {
  if (!figures_.bpm.value) return;
  const std::string more =
      figures_.highest_bpm
          ? words_.Say(Phrase::kHighestToo, {words_.Short(*figures_.highest_bpm, 0)})
          : words_.Say(Phrase::kAverage);
  AddFigure(Phrase::kHeartRate, figures_.bpm, words_.Short(*figures_.bpm.value, 0),
            words_.Say(Phrase::kBeatsPerMinute), more);
}

void Page::AddSummary() {
  html_ += "<section>\n<h2>" + Escaped(words_.Say(Phrase::kSummary)) + "</h2>\n";
  const std::size_t empty = html_.size();
  html_ += "<table class=\"summary\" role=\"table\"><tbody role=\"rowgroup\">\n";
  const std::size_t head = html_.size();
  AddAmounts();
  AddSpeeds();
  AddHeartRate();
  if (html_.size() == head) {
    html_.resize(empty);
    html_ += "<p>" + Escaped(words_.Say(Phrase::kNoFigures)) + "</p>\n</section>\n";
    return;
  }
  html_ += "</tbody></table>\n</section>\n";
}

// Whether there are values to read in it.
bool Page::AddChart() {
  const Chart chart = PlanChart(document_, figures_, presentation_);
  html_ += "<section>\n<h2>" + Escaped(words_.Say(Phrase::kOverTime)) + "</h2>\n";
  if (chart.panels.empty()) {
    html_ += "<p>" + Escaped(words_.Say(Phrase::kNothingToDraw)) + "</p>\n</section>\n";
    return false;
  }
  const ChartReadings readings = ReadingsOf(chart);
  html_ += "<figure" + readings.attributes + ">\n" + readings.values +
           RenderChart(chart, kWideChart) + RenderChart(chart, kNarrowChart) + readings.slider;
  std::vector<std::string> captions;
  for (const Panel& panel : chart.panels) {
    if (panel.cut_off) {
      captions.push_back(words_.Say(Phrase::kSlowPace, {ClockText(panel.scale.high)}));
    }
  }
  if (chart.speed_from_distance) captions.push_back(words_.Say(Phrase::kSpeedFromDistance));
  for (const std::string& caption : captions) {
    html_ += "<figcaption>" + Escaped(caption) + "</figcaption>\n";
  }
  html_ += "</figure>\n</section>\n";
  return true;
}

std::string Page::TypeName() const {
  const EquipmentKind* kind = KindOf(document_.equipment.type);
  return kind != nullptr ? words_.Say(kind->name) : document_.equipment.type;
}

std::string Page::WeightText() const {
  if (!document_.weight_kg || *document_.weight_kg <= 0) return {};
  return words_.Short(measures_.Weight(*document_.weight_kg), 1) + " " +
         words_.Say(measures_.weight_unit());
}

void Page::AddEquipment() {
  const EquipmentInfo& equipment = document_.equipment;
  const IpodInfo& ipod = document_.ipod;
  const std::pair<Phrase, std::string> facts[] = {
      {Phrase::kType, TypeName()},
      {Phrase::kManufacturer, equipment.manufacturer_name},
      {Phrase::kManufacturerId, equipment.manufacturer_id},
      {Phrase::kModel, equipment.model},
      {Phrase::kSerialNumber, equipment.serial_number},
      {Phrase::kGym, equipment.gym_name},
      {Phrase::kPlace, equipment.gym_location},
      {Phrase::kWeight, WeightText()},
      {Phrase::kIpod, ipod.model},
      {Phrase::kIpodSoftware, ipod.software_version},
      {Phrase::kIpodSerialNumber, ipod.serial_number},
  };
  std::string rows;
  for (const auto& [label, value] : facts) {
    if (!value.empty()) rows += RowTag(words_.Say(label), NameTag(value));
  }
  if (rows.empty()) return;
  html_ += "<section>\n<h2>" + Escaped(words_.Say(Phrase::kEquipment)) +
           "</h2>\n<table class=\"facts\" role=\"table\"><tbody role=\"rowgroup\">\n" + rows +
           "</tbody></table>\n</section>\n";
}

std::string Page::Render(const std::string& source) {
  AddHead();
  AddNotes();
  AddSummary();
  const bool scripted = AddChart();
  html_ += SplitsTable(document_, presentation_);
  html_ += HeartZonesTable(document_, presentation_);
  AddEquipment();
  const std::string intervals =
      words_.Count(document_.intervals.size(), Phrase::kInterval, Phrase::kIntervals);
  const std::string footer =
      Filled(Escaped(words_.Say(Phrase::kMadeFrom)), {NameTag(source), Escaped(intervals)});
  return std::move(html_) + PageFoot(footer, scripted);
}

}  // namespace

std::string RenderPage(const WorkoutDocument& document, const WorkoutFigures& figures,
                       const std::string& source, const Presentation& presentation) {
  return Page(document, figures, presentation).Render(source);
}

std::string WorkoutTitle(const WorkoutDocument& document, const Wording& words) {
  const std::string& type = document.equipment.type;
  if (type.empty()) return words.Say(Phrase::kWorkout);
  const EquipmentKind* kind = KindOf(type);
  if (kind != nullptr) return words.Say(kind->workout);
  return words.Say(Phrase::kOtherWorkout, {Printable(type)});
}

std::string ProblemText(const DocumentProblem& problem) {
  const std::string place =
      " at line " + std::to_string(problem.line) + ", column " + std::to_string(problem.column);
  if (problem.cut_short) return "is cut short" + place;
  return "is malformed" + place + " (" + problem.what + ")";
}

}  // namespace ipodctl
