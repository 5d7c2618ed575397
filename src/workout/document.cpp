// SPDX-License-Identifier: MIT
// The text of the workout document.
#include "workout/document.h"

#include <algorithm>
#include <cwchar>
#include <limits>

#include "platform/services.h"

namespace ipodcomm {

namespace {

// Toward zero; values beyond an int become the nearest one, and what is no number becomes 0.
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

// A block under construction, with the formatted line that was added last.
class Block {
 public:
  explicit Block(std::size_t limit) : limit_(limit) {}

  // Adds as much of a text as there is room for.
  void Add(const wchar_t* text);
  void Add(const wchar_t* format, const wchar_t* text) { AddFormatted(format, text); }
  void Add(const wchar_t* format, int number) { AddFormatted(format, number); }
  // Instead of a line that an unknown type does not have the one before it is written again. Hosts
  // pass such types, and the iPods' readers know the repetition.
  void RepeatLastLine() { Add(last_line_); }

  void AddDistance(tagIPOD_DISTANCE_TYPE type, double distance);
  void AddSpeed(tagIPOD_SPEED_TYPE type, double speed);
  void AddHeartRate(int bpm);

  const BlockText& text() const { return text_; }

 private:
  template <class Value>
  void AddFormatted(const wchar_t* format, Value value) {
    *last_line_ = L'\0';  // a line that cannot be formatted is left out
    StringCchPrintfW(last_line_, kMaxBlockChars, format, value);
    Add(last_line_);
  }

  std::size_t limit_;
  std::size_t length_ = 0;
  BlockText text_ = {};
  wchar_t last_line_[kMaxBlockChars] = {};
};

void Block::Add(const wchar_t* text) {
  const std::size_t added = std::min(std::wcslen(text), limit_ - length_);
  std::copy_n(text, added, text_.chars + length_);
  length_ += added;
}

void Block::AddDistance(tagIPOD_DISTANCE_TYPE type, double distance) {
  switch (type) {
    case IPOD_DISTANCE_TYPE_KM:
      return Add(L"\t\t<km>%s</km>\n", Decimal(distance, 2).text());
    case IPOD_DISTANCE_TYPE_FLOORS:
      return Add(L"\t\t<floors>%s</floors>\n", Decimal(distance, 1).text());
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

HeapArray<wchar_t> HeaderLine::Whole() const {
  const std::size_t capacity = std::wcslen(format) + std::wcslen(text) + 1;
  HeapArray<wchar_t> line(capacity);
  if (line.data() != nullptr) StringCchPrintfW(line.data(), capacity, format, text);
  return line;
}

HeaderLines::HeaderLines(const WorkoutHeader& header) : weight_(header.weight_kg, 1) {
  Add(L"<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n");
  Add(L"<gymData>\n");
  Add(L"\t<vers>1</vers>\n");
  Add(L"\t<equipmentInfo>\n");
  Add(L"\t\t<manufacturerID>%s</manufacturerID>\n", header.manufacturer_id);
  Add(L"\t\t<manufacturerName>%s</manufacturerName>\n", header.manufacturer_name);
  if (const wchar_t* type = TypeLine(header.equipment)) Add(type);
  Add(L"\t\t<model>%s</model>\n", header.model);
  Add(L"\t\t<serialNumber>%s</serialNumber>\n", header.serial_number);
  Add(L"\t</equipmentInfo>\n");
  Add(L"\t<userInfo>\n");
  Add(L"\t\t<kg>%s</kg>\n", weight_.text());
  Add(L"\t</userInfo>\n");
}

// A host's null is shown as formatting shows it.
void HeaderLines::Add(const wchar_t* format, const wchar_t* text) {
  lines_[count_++] = {format, text != nullptr ? text : L"(null)"};
}

BlockText IntervalBlock(const WorkoutInterval& interval) {
  Block block(kMaxBlockChars - 1);  // in a buffer of 512 characters, which ends with a terminator
  block.Add(L"\t<interval>\n");
  block.Add(EventLine(interval.event));
  block.Add(L"\t\t<sec>%d</sec>\n", interval.seconds);
  block.Add(L"\t\t<kCal>%s</kCal>\n", Decimal(interval.kcal, 2).text());
  block.AddDistance(interval.distance_type, interval.distance);
  block.AddSpeed(interval.speed_type, interval.speed);
  block.Add(L"\t\t<incline>%s</incline>\n", Decimal(interval.incline, 1).text());
  block.AddHeartRate(interval.bpm);
  if (interval.level != -1) block.Add(L"\t\t<level>%d</level>\n", interval.level);
  block.Add(L"\t</interval>\n");
  return block.text();
}

// The distance type chooses the speed's element too, unlike in the interval: documents in the field
// have a climb in steps per minute, whatever speed type the host passes.
BlockText SummaryBlock(const WorkoutSummary& summary) {
  Block block(kMaxBlockChars);
  block.Add(L"\t<workoutSummary>\n");
  block.Add(L"\t\t<sec>%d</sec>\n", summary.seconds);
  block.Add(L"\t\t<kCal>%s</kCal>\n", Decimal(summary.kcal, 2).text());
  block.AddDistance(summary.distance_type, summary.distance);
  block.AddSpeed(static_cast<tagIPOD_SPEED_TYPE>(summary.distance_type), summary.speed);
  block.AddHeartRate(summary.bpm);
  block.Add(L"\t</workoutSummary>\n");
  return block.text();
}

}  // namespace ipodcomm
