// SPDX-License-Identifier: MIT
// Lays out splits and heart-rate zones, each row with a bar that shows its amount.
#include "report/page_tables.h"

#include <algorithm>
#include <vector>

#include "report/heart_zones.h"
#include "report/markup.h"
#include "report/page_frame.h"
#include "report/splits.h"

namespace ipodctl {

namespace {

std::string Cell(const std::string& text) { return "<td>" + Escaped(text) + "</td>"; }

std::string HeadCell(const std::string& text) {
  return "<th scope=\"col\">" + Escaped(text) + "</th>";
}

std::string Labelled(const std::string& label, const std::string& unit) {
  return "<th scope=\"col\">" + Escaped(label) + " <span class=\"unit\">" + Escaped(unit) +
         "</span></th>";
}

class SplitRows {
 public:
  SplitRows(const WorkoutDocument& document, const Presentation& presentation)
      : words_(presentation.words),
        measures_(presentation.measures),
        ride_(IsRide(document)),
        splits_(SplitsOf(document, presentation.measures)) {
    for (const Split& split : splits_) {
      fastest_ = std::max(fastest_, Speed(split));
      has_heart_ = has_heart_ || split.bpm;
    }
  }

  std::string Render() const;

 private:
  static double Speed(const Split& split) {
    constexpr double kShortest = 0.001;  // seconds; less is no time to measure a speed by
    return split.seconds > kShortest ? (split.to - split.from) / split.seconds : 0;
  }
  std::string SpeedText(const Split& split) const;
  std::string Row(const Split& split) const;

  const Wording& words_;
  const Measures& measures_;
  bool ride_;
  std::vector<Split> splits_;
  double fastest_ = 0;
  bool has_heart_ = false;
};

std::string SplitRows::SpeedText(const Split& split) const {
  const double speed = Speed(split);
  if (speed <= 0) return "–";
  constexpr double kSecondsPerHour = 3600;
  return ride_ ? words_.Fixed(speed * kSecondsPerHour, 1) : ClockText(1 / speed);
}

std::string SplitRows::Row(const Split& split) const {
  std::string row = "<tr><th scope=\"row\">" + words_.Short(split.to, 2) + "</th>" +
                    Cell(ClockText(split.seconds)) + Cell(SpeedText(split));
  if (has_heart_) row += Cell(split.bpm ? words_.Short(*split.bpm, 0) : "–");
  return row + BarCell("speed", fastest_ > 0 ? Speed(split) / fastest_ : 0) + "</tr>\n";
}

std::string SplitRows::Render() const {
  if (splits_.empty()) return {};
  std::string html = "<section>\n<h2>" + Escaped(words_.Say(Phrase::kSplits)) +
                     "</h2>\n<table class=\"rows\">\n<thead><tr>" +
                     HeadCell(words_.Say(measures_.distance_unit())) +
                     HeadCell(words_.Say(Phrase::kTime)) +
                     Labelled(words_.Say(ride_ ? Phrase::kSpeed : Phrase::kPace),
                              words_.Say(ride_ ? measures_.speed_unit() : measures_.pace_unit()));
  if (has_heart_) {
    html += Labelled(words_.Say(Phrase::kHeartRate), words_.Say(Phrase::kBeatsPerMinute));
  }
  html += "<td class=\"bar\"></td></tr></thead>\n<tbody>\n";
  for (const Split& split : splits_) html += Row(split);
  return html + "</tbody></table>\n</section>\n";
}

std::string ZoneName(std::size_t zone, const Wording& words) {
  constexpr Phrase kNames[kHeartZones] = {Phrase::kBelowZones, Phrase::kVeryLight,
                                          Phrase::kLight,      Phrase::kModerate,
                                          Phrase::kHard,       Phrase::kMaximum};
  const std::string name = words.Say(kNames[zone]);
  if (zone == 0) return name;
  return words.Say(Phrase::kZone) + " " + std::to_string(zone) + ", " + name;
}

std::string ZoneRange(const HeartZone& zone, std::size_t index, const Wording& words) {
  if (index == 0) return "– " + words.Short(zone.to, 0);
  return words.Short(zone.from, 0) + "–" + words.Short(zone.to, 0);
}

}  // namespace

std::string SplitsTable(const WorkoutDocument& document, const Presentation& presentation) {
  return SplitRows(document, presentation).Render();
}

std::string HeartZonesTable(const WorkoutDocument& document, const Presentation& presentation) {
  if (!presentation.max_heart_rate) return {};
  const Wording& words = presentation.words;
  const auto zones = TimeInZones(document, *presentation.max_heart_rate);
  double total = 0;
  double longest = 0;
  for (const HeartZone& zone : zones) {
    total += zone.seconds;
    longest = std::max(longest, zone.seconds);
  }
  if (total <= 0) return {};
  const std::string unit = words.Say(Phrase::kBeatsPerMinute);
  std::string html = "<section>\n<h2>" + Escaped(words.Say(Phrase::kZones)) +
                     "</h2>\n<table class=\"rows\">\n<thead><tr>" +
                     HeadCell(words.Say(Phrase::kZone)) + HeadCell(unit) +
                     HeadCell(words.Say(Phrase::kTime)) + HeadCell(words.Say(Phrase::kShare)) +
                     "<td class=\"bar\"></td></tr></thead>\n<tbody>\n";
  for (std::size_t i = zones.size(); i-- > 0;) {
    html += "<tr><th scope=\"row\">" + Escaped(ZoneName(i, words)) + "</th>" +
            Cell(ZoneRange(zones[i], i, words)) + Cell(ClockText(zones[i].seconds)) +
            Cell(words.Short(100 * zones[i].seconds / total, 0) + "\u00A0%") +
            BarCell("heart", zones[i].seconds / longest) + "</tr>\n";
  }
  const std::string maximum = words.Short(*presentation.max_heart_rate, 0);
  return html + "</tbody></table>\n<p class=\"caption\">" +
         Escaped(words.Say(Phrase::kMaximumHeartRate, {maximum, unit})) + "</p>\n</section>\n";
}

}  // namespace ipodctl
