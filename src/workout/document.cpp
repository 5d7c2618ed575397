// SPDX-License-Identifier: MIT
// The text of the workout document.
#include "workout/document.h"

#include <limits>

#include "platform/services.h"

namespace ipodcomm {

namespace {

/// A line formatted within its bounds.
template <class Value>
std::wstring Line(const wchar_t* format, Value value) {
  wchar_t line[kBlockChars] = {};
  StringCchPrintfW(line, kBlockChars, format, value);
  return line;
}

/// Toward zero; values beyond an int become the nearest one, and what is no number becomes 0.
int Truncated(double value) {
  using Limits = std::numeric_limits<int>;
  if (value >= Limits::max()) return Limits::max();
  if (value <= Limits::min()) return Limits::min();
  const bool is_number = value == value;  // NOLINT(misc-redundant-expression): false for NaN
  return is_number ? static_cast<int>(value) : 0;
}

const wchar_t* TypeLine(tagIPOD_EQUIPMENT_TYPE equipment) {
  switch (equipment) {
    case IPOD_EQUIPMENT_TYPE_TREADMILL:
      return L"\t\t<type>Treadmill</type>\n";
    case IPOD_EQUIPMENT_TYPE_ELLIPTICAL:
      return L"\t\t<type>Elliptical</type>\n";
    case IPOD_EQUIPMENT_TYPE_STEPPER:
      return L"\t\t<type>Stepper</type>\n";
    case IPOD_EQUIPMENT_TYPE_BIKE:
      return L"\t\t<type>Bike</type>\n";
    case IPOD_EQUIPMENT_TYPE_OTHER:
      return L"\t\t<type>Other</type>\n";
    default:
      return nullptr;
  }
}

const wchar_t* EventLine(tagIPOD_INTERVAL_TYPE event) {
  switch (event) {
    case IPOD_INTERVAL_TYPE_START:
      return L"\t\t<event>start</event>\n";
    case IPOD_INTERVAL_TYPE_CONTINUE:
      return L"\t\t<event>continue</event>\n";
    case IPOD_INTERVAL_TYPE_PAUSE:
      return L"\t\t<event>pause</event>\n";
    case IPOD_INTERVAL_TYPE_RESUME:
      return L"\t\t<event>resume</event>\n";
    case IPOD_INTERVAL_TYPE_END:
      return L"\t\t<event>end</event>\n";
    default:
      return L"";
  }
}

/// A block under construction, with the formatted line that was added last.
class Block {
 public:
  void Add(const wchar_t* line) { text_ += line; }
  template <class Value>
  void Add(const wchar_t* format, Value value) {
    last_line_ = Line(format, value);
    text_ += last_line_;
  }
  /// Stands in for a line that an unknown type does not have. Prescribed so; hosts and iPods in the
  /// field depend on it.
  void RepeatLastLine() { text_ += last_line_; }

  void AddDistance(tagIPOD_DISTANCE_TYPE type, double distance);
  void AddSpeed(tagIPOD_SPEED_TYPE type, double speed);
  void AddHeartRate(int bpm);

  /// The text as far as it fits.
  std::wstring Text() const { return text_.substr(0, kBlockChars - 1); }

 private:
  std::wstring text_;
  std::wstring last_line_;
};

void Block::AddDistance(tagIPOD_DISTANCE_TYPE type, double distance) {
  switch (type) {
    case IPOD_DISTANCE_TYPE_KM:
      return Add(L"\t\t<km>%.02f</km>\n", distance);
    case IPOD_DISTANCE_TYPE_FLOORS:
      return Add(L"\t\t<floors>%.01f</floors>\n", distance);
    default:
      return RepeatLastLine();
  }
}

void Block::AddSpeed(tagIPOD_SPEED_TYPE type, double speed) {
  switch (type) {
    case IPOD_SPEED_TYPE_PACE:
      return Add(L"\t\t<pace>%d</pace>\n", Truncated(speed));
    case IPOD_SPEED_TYPE_SPM:
      return Add(L"\t\t<spm>%d</spm>\n", Truncated(speed));
    case IPOD_SPEED_TYPE_RPM:
      return Add(L"\t\t<rpm>%d</rpm>\n", Truncated(speed));
    default:
      return RepeatLastLine();
  }
}

void Block::AddHeartRate(int bpm) {
  if (bpm != 0) Add(L"\t\t<bpm>%d</bpm>\n", bpm);
}

}  // namespace

std::vector<std::wstring> HeaderLines(const WorkoutHeader& header) {
  std::vector<std::wstring> lines = {
      L"<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n",
      L"<gymData>\n",
      L"\t<vers>1</vers>\n",
      L"\t<equipmentInfo>\n",
      Line(L"\t\t<manufacturerID>%s</manufacturerID>\n", header.manufacturer_id),
      Line(L"\t\t<manufacturerName>%s</manufacturerName>\n", header.manufacturer_name),
  };
  if (const wchar_t* type = TypeLine(header.equipment)) lines.emplace_back(type);
  lines.push_back(Line(L"\t\t<model>%s</model>\n", header.model));
  lines.push_back(Line(L"\t\t<serialNumber>%s</serialNumber>\n", header.serial_number));
  lines.emplace_back(L"\t</equipmentInfo>\n");
  lines.emplace_back(L"\t<userInfo>\n");
  lines.push_back(Line(L"\t\t<kg>%.01f</kg>\n", header.weight_kg));
  lines.emplace_back(L"\t</userInfo>\n");
  return lines;
}

std::wstring IntervalBlock(const WorkoutInterval& interval) {
  Block block;
  block.Add(L"\t<interval>\n");
  block.Add(EventLine(interval.event));
  block.Add(L"\t\t<sec>%d</sec>\n", interval.seconds);
  block.Add(L"\t\t<kCal>%.02f</kCal>\n", interval.kcal);
  block.AddDistance(interval.distance_type, interval.distance);
  block.AddSpeed(interval.speed_type, interval.speed);
  block.Add(L"\t\t<incline>%.01f</incline>\n", interval.incline);
  block.AddHeartRate(interval.bpm);
  if (interval.level != -1) block.Add(L"\t\t<level>%d</level>\n", interval.level);
  block.Add(L"\t</interval>\n");
  return block.Text();
}

/// The distance type chooses the speed's element too. Prescribed so, unlike in the interval; hosts
/// and iPods in the field depend on it.
std::wstring SummaryBlock(const WorkoutSummary& summary) {
  Block block;
  block.Add(L"\t<workoutSummary>\n");
  block.Add(L"\t\t<sec>%d</sec>\n", summary.seconds);
  block.Add(L"\t\t<kCal>%.02f</kCal>\n", summary.kcal);
  block.AddDistance(summary.distance_type, summary.distance);
  block.AddSpeed(static_cast<tagIPOD_SPEED_TYPE>(summary.distance_type), summary.speed);
  block.AddHeartRate(summary.bpm);
  block.Add(L"\t</workoutSummary>\n");
  return block.Text();
}

}  // namespace ipodcomm
