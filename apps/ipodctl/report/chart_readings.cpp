// SPDX-License-Identifier: MIT
// Writes the values down for the page's script, as texts in the page's language.
#include "report/chart_readings.h"

#include <algorithm>
#include <cmath>

#include "report/markup.h"

namespace ipodctl {

namespace {

constexpr std::size_t kMostMoments = 1200;  // more than a screen has columns

std::vector<double> Moments(const Chart& chart) {
  std::vector<double> all;
  for (const Panel& panel : chart.panels) {
    for (const Sample& sample : panel.course) all.push_back(sample.seconds);
  }
  std::sort(all.begin(), all.end());
  all.erase(std::unique(all.begin(), all.end()), all.end());
  if (all.size() <= kMostMoments) return all;
  std::vector<double> moments;
  for (std::size_t i = 0; i < kMostMoments; ++i) {
    moments.push_back(all[i * (all.size() - 1) / (kMostMoments - 1)]);
  }
  return moments;
}

// In thousandths of the plot's height, from below.
std::string HeightText(const Panel& panel, double value) {
  const double share = (value - panel.scale.low) / (panel.scale.high - panel.scale.low);
  const double height = std::clamp(panel.low_on_top ? 1 - share : share, 0.0, 1.0);
  return std::to_string(std::lround(height * 1000));
}

// What the panel shows at each moment, nothing where it has no reading.
std::string ValueTag(const Panel& panel, const std::vector<double>& moments, const Wording& words) {
  std::string texts;
  std::string heights;
  auto sample = panel.course.begin();
  for (std::size_t i = 0; i < moments.size(); ++i) {
    const double moment = moments[i];
    if (i != 0) {
      texts += '|';
      heights += ' ';
    }
    while (sample != panel.course.end() && sample->seconds < moment) ++sample;
    if (sample == panel.course.end() || sample->seconds > moment) {
      heights += '-';
      continue;
    }
    texts += ValueText(panel, sample->value, words);
    heights += HeightText(panel, sample->value);
  }
  return "<li><span class=\"" + std::string(panel.name) + "\">" + Escaped(panel.title) +
         "</span><b data-texts=\"" + Escaped(texts) + "\" data-heights=\"" + heights +
         "\" data-unit=\"" + Escaped(panel.unit) + "\" data-none=\"" +
         Escaped(words.Say(Phrase::kNoReading)) + "\">–</b></li>\n";
}

}  // namespace

ChartReadings ReadingsOf(const Chart& chart) {
  const std::vector<double> moments = Moments(chart);
  ChartReadings readings;
  if (moments.empty()) return readings;
  std::string clocks;
  for (const double moment : moments) {
    readings.attributes += (readings.attributes.empty() ? "" : " ") + Short(moment, 2);
    clocks += (clocks.empty() ? "" : "|") + ClockText(moment);
  }
  readings.attributes =
      " data-end=\"" + Short(chart.end, 2) + "\" data-times=\"" + readings.attributes + "\"";
  const Wording& words = chart.words;
  readings.values = "<ul class=\"values\" hidden=\"hidden\">\n<li><span>" +
                    Escaped(words.Say(Phrase::kTime)) + "</span><b data-texts=\"" + clocks +
                    "\">–</b></li>\n";
  for (const Panel& panel : chart.panels) readings.values += ValueTag(panel, moments, words);
  readings.values += "</ul>\n";
  readings.slider = "<p class=\"slider\" hidden=\"hidden\"><label for=\"moment\">" +
                    Escaped(words.Say(Phrase::kReadAt)) +
                    "</label> <input id=\"moment\" type=\"range\" min=\"0\" max=\"" +
                    std::to_string(moments.size() - 1) + "\" value=\"0\"/></p>\n";
  return readings;
}

}  // namespace ipodctl
