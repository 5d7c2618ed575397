// SPDX-License-Identifier: MIT
// Draws the chart.
#include <algorithm>

#include "report/chart.h"
#include "report/markup.h"

namespace ipodctl {

namespace {

constexpr int kLeft = 46;   // of a panel, for the labels of its axis; more where they are long
constexpr int kRight = 24;  // of a panel, for half a label of the time axis
constexpr int kTitle = 26;  // above a panel
constexpr int kGap = 20;    // between a panel and the next one's title
constexpr int kFoot = 46;   // below the last panel
constexpr int kLetter = 7;  // width of a label's, at most
constexpr double kThinnestPause = 2;
constexpr double kThinnestGap = 0.5;  // between two pauses

std::string Px(double at) { return Short(at, 1); }

std::string TickText(const Panel& panel, double tick, const Wording& words) {
  return panel.clock ? ClockText(tick) : words.Short(tick, 2);
}

int Letters(const std::string& text) {
  return static_cast<int>(std::count_if(text.begin(), text.end(), [](char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U;
  }));
}

int LeftOf(const Chart& chart) {
  int longest = 0;
  for (const Panel& panel : chart.panels) {
    for (const double tick : panel.scale.ticks) {
      longest = std::max(longest, Letters(TickText(panel, tick, chart.words)));
    }
  }
  return std::max(kLeft, kLetter * (longest + 1));
}

class Drawing {
 public:
  Drawing(const Chart& chart, const ChartShape& shape)
      : chart_(chart), shape_(shape), left_(LeftOf(chart)) {}

  std::string Render();

 private:
  int PanelStep() const { return kTitle + shape_.panel_height + kGap; }
  double PlotWidth() const { return shape_.width - left_ - kRight; }
  double X(double seconds) const { return left_ + seconds / chart_.end * PlotWidth(); }
  double Y(const Panel& panel, double top, double value) const;
  std::string Id(const char* part) const { return std::string("chart-") + shape_.name + part; }

  std::string Plots() const;
  void Describe();
  void DrawPanel(const Panel& panel, double top);
  void DrawPauses(double top);
  void DrawTicks(const Panel& panel, double top);
  void DrawCourse(const Panel& panel, double top);
  void DrawTimeAxis(double top);
  void Text(const char* kind, double x, double y, const std::string& text);
  void Line(double x1, double y1, double x2, double y2);

  const Chart& chart_;
  const ChartShape& shape_;
  int left_;
  std::string svg_;
};

double Drawing::Y(const Panel& panel, double top, double value) const {
  const double share = (value - panel.scale.low) / (panel.scale.high - panel.scale.low);
  const double height = std::clamp(panel.low_on_top ? 1 - share : share, 0.0, 1.0);
  return top + (1 - height) * shape_.panel_height;
}

void Drawing::Text(const char* kind, double x, double y, const std::string& text) {
  svg_ += std::string("<text class=\"") + kind + "\" x=\"" + Px(x) + "\" y=\"" + Px(y) + "\">" +
          Escaped(text) + "</text>\n";
}

void Drawing::Line(double x1, double y1, double x2, double y2) {
  svg_ += "<line class=\"grid\" x1=\"" + Px(x1) + "\" y1=\"" + Px(y1) + "\" x2=\"" + Px(x2) +
          "\" y2=\"" + Px(y2) + "\"/>\n";
}

void Drawing::Describe() {
  const Wording& words = chart_.words;
  std::string text;
  for (const Panel& panel : chart_.panels) text += panel.summary + ". ";
  text += words.Say(Phrase::kTimeFromTo, {ClockText(0), ClockText(chart_.end)}) + ".";
  if (!chart_.pauses.empty()) {
    const std::string from = ClockText(chart_.pauses.front().from);
    const std::string to = ClockText(chart_.pauses.front().to);
    const std::size_t count = chart_.pauses.size();
    text += " " +
            (count == 1 ? words.Say(Phrase::kPausedFromTo, {from, to})
                        : words.Say(Phrase::kPausedTimes, {std::to_string(count), from, to})) +
            ".";
  }
  svg_ += "<desc id=\"" + Id("-desc") + "\">" + Escaped(text) + "</desc>\n";
}

// Pauses that would nearly touch are drawn as one.
void Drawing::DrawPauses(double top) {
  for (std::size_t i = 0; i < chart_.pauses.size(); ++i) {
    const double from = X(chart_.pauses[i].from);
    double to = std::max(X(chart_.pauses[i].to), from + kThinnestPause);
    while (i + 1 < chart_.pauses.size() && X(chart_.pauses[i + 1].from) <= to + kThinnestGap) {
      ++i;
      to = std::max({to, X(chart_.pauses[i].to), X(chart_.pauses[i].from) + kThinnestPause});
    }
    svg_ += "<rect class=\"pause\" x=\"" + Px(from) + "\" y=\"" + Px(top) + "\" width=\"" +
            Px(to - from) + "\" height=\"" + Px(shape_.panel_height) + "\"/>\n";
  }
}

void Drawing::DrawTicks(const Panel& panel, double top) {
  const double bottom = top + shape_.panel_height;
  for (const double time : TimeTicks(chart_.end, shape_.most_time_ticks)) {
    Line(X(time), top, X(time), bottom);
  }
  for (const double tick : panel.scale.ticks) {
    const double y = Y(panel, top, tick);
    Line(left_, y, left_ + PlotWidth(), y);
    Text("tick value", left_ - 7, y + 4, TickText(panel, tick, chart_.words));
  }
}

void Drawing::DrawCourse(const Panel& panel, double top) {
  // As many columns as can be told apart, two points to each way of a zigzag.
  const auto columns = static_cast<std::size_t>(PlotWidth() / 2);
  const std::vector<Sample> course = Thinned(panel.course, chart_.end, columns);
  const double base = std::clamp(0.0, panel.scale.low, panel.scale.high);
  const std::string bottom = Px(Y(panel, top, base));
  std::string line;
  std::string area;
  for (std::size_t i = 0; i < course.size(); ++i) {
    const bool first = i == 0 || course[i].starts_anew;
    const bool last = i + 1 == course.size() || course[i + 1].starts_anew;
    const std::string x = Px(X(course[i].seconds));
    const std::string point = x + " " + Px(Y(panel, top, course[i].value));
    line += (first ? "M" : "L") + point;
    if (first && last) line += "h0";  // a reading by itself is a dot
    area += (first ? "M" + x + " " + bottom + "L" : "L") + point;
    if (last) area += "V" + bottom + "Z";
  }
  const std::string kind = panel.name;
  if (panel.filled) svg_ += "<path class=\"area " + kind + "\" d=\"" + area + "\"/>\n";
  svg_ += "<path class=\"line " + kind + "\" d=\"" + line + "\"/>\n";
}

void Drawing::DrawPanel(const Panel& panel, double top) {
  svg_ += "<text class=\"title\" x=\"0\" y=\"" + Px(top - 11) + "\"><tspan class=\"" + panel.name +
          "\">" + Escaped(panel.title) + "</tspan> <tspan class=\"unit\">" + Escaped(panel.unit) +
          "</tspan></text>\n";
  if (!panel.detail.empty()) Text("detail", shape_.width, top - 11, panel.detail);
  DrawPauses(top);
  DrawTicks(panel, top);
  DrawCourse(panel, top);
}

void Drawing::DrawTimeAxis(double top) {
  for (const double time : TimeTicks(chart_.end, shape_.most_time_ticks)) {
    Text("tick time", X(time), top + 19, ClockText(time));
  }
  const Wording& words = chart_.words;
  Text("axis", left_, top + 38,
       words.Say(chart_.end < 3600 ? Phrase::kTimeMinutes : Phrase::kTimeHours));
  if (chart_.pauses.empty()) return;
  const double key = shape_.width - kRight;
  svg_ += "<rect class=\"pause\" x=\"" + Px(key - 14) + "\" y=\"" + Px(top + 28) +
          "\" width=\"14\" height=\"12\"/>\n";
  Text("key", key - 20, top + 38, words.Say(Phrase::kPaused));
}

// Where the plots are, for the script that reads values off them.
std::string Drawing::Plots() const {
  return " data-left=\"" + std::to_string(left_) + "\" data-width=\"" + Px(PlotWidth()) +
         "\" data-top=\"" + std::to_string(kTitle) + "\" data-step=\"" +
         std::to_string(PanelStep()) + "\" data-height=\"" + std::to_string(shape_.panel_height) +
         "\"";
}

std::string Drawing::Render() {
  const int height = static_cast<int>(chart_.panels.size()) * PanelStep() - kGap + kFoot;
  svg_ = "<svg class=\"" + std::string(shape_.name) + "\" viewBox=\"0 0 " +
         std::to_string(shape_.width) + " " + std::to_string(height) +
         "\" role=\"img\" aria-label=\"" + Escaped(chart_.words.Say(Phrase::kChartTitle)) +
         "\" aria-describedby=\"" + Id("-desc") + "\"" + Plots() +
         " xmlns=\"http://www.w3.org/2000/svg\">\n";
  Describe();
  double top = kTitle;
  for (const Panel& panel : chart_.panels) {
    DrawPanel(panel, top);
    top += PanelStep();
  }
  DrawTimeAxis(top - kTitle - kGap);
  return svg_ + "</svg>\n";
}

}  // namespace

std::string RenderChart(const Chart& chart, const ChartShape& shape) {
  return Drawing(chart, shape).Render();
}

}  // namespace ipodctl
