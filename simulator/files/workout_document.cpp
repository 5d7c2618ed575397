// SPDX-License-Identifier: MIT
// Reads workout documents line by line.

#include "workout_document.h"

#include <algorithm>
#include <initializer_list>
#include <vector>

namespace ipodsim {
namespace {

// ---- Texts and numbers between the tags

using Check = bool (*)(std::string_view text);

bool IsDigits(std::string_view text) {
  return !text.empty() &&
         std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

bool IsAny(std::string_view) { return true; }

// At most 2147483647, without a sign.
bool IsWhole(std::string_view text) {
  if (!IsDigits(text)) return false;
  const std::size_t zeros = std::min(text.find_first_not_of('0'), text.size());
  const std::string_view digits = text.substr(zeros);
  constexpr std::string_view kMost = "2147483647";
  return digits.size() < kMost.size() || (digits.size() == kMost.size() && digits <= kMost);
}

bool IsHeartRate(std::string_view text) {
  return IsWhole(text) && text.find_first_not_of('0') != std::string_view::npos;
}

bool HasDecimals(std::string_view text, std::size_t decimals) {
  const std::size_t point = text.find('.');
  return point != std::string_view::npos && IsDigits(text.substr(0, point)) &&
         IsDigits(text.substr(point + 1)) && text.size() - point - 1 == decimals;
}

bool IsTenths(std::string_view text) { return HasDecimals(text, 1); }
bool IsHundredths(std::string_view text) { return HasDecimals(text, 2); }
bool IsMillionths(std::string_view text) { return HasDecimals(text, 6); }

std::string_view WithoutSign(std::string_view text) {
  return !text.empty() && text[0] == '-' ? text.substr(1) : text;
}

bool IsSignedTenths(std::string_view text) { return IsTenths(WithoutSign(text)); }
bool IsSignedMillionths(std::string_view text) { return IsMillionths(WithoutSign(text)); }

bool IsOneOf(std::string_view text, std::initializer_list<std::string_view> known) {
  return std::find(known.begin(), known.end(), text) != known.end();
}

bool IsEquipment(std::string_view text) {
  return IsOneOf(text, {"Treadmill", "Elliptical", "Stepper", "Bike", "Other"});
}

bool IsEvent(std::string_view text) {
  return IsOneOf(text, {"start", "continue", "pause", "resume", "end"});
}

bool IsVersion(std::string_view text) { return text == "1"; }

// ---- Lines

struct Element {
  std::string_view name;
  Check check;
};

// Goes through the lines and stops at the first that is not what it should be.
class Lines {
 public:
  explicit Lines(std::string_view content) {
    while (!content.empty()) {
      const std::size_t end = std::min(content.find('\n'), content.size());
      lines_.push_back(content.substr(0, end));
      content.remove_prefix(std::min(end + 1, content.size()));
    }
  }

  const std::string& problem() const { return problem_; }
  bool ended() const { return at_ == lines_.size(); }

  bool Begins(std::string_view tag) const { return !ended() && Trimmed(lines_[at_]) == tag; }
  // The next line holds a tag, or what else it is made of.
  void Expect(std::string_view text) {
    if (!problem_.empty()) return;
    if (Begins(text)) {
      ++at_;
    } else {
      Fail(std::string(text) + " expected");
    }
  }
  bool Holds(std::string_view name) const {
    return !ended() && Trimmed(lines_[at_]).substr(0, name.size() + 2) == Tag("<", name);
  }
  // The next line holds an element whose text is as it should be.
  void Expect(const Element& element) {
    if (!problem_.empty()) return;
    if (!Holds(element.name)) {
      Fail(Tag("<", element.name) + " expected");
      return;
    }
    std::string_view text = Trimmed(lines_[at_]).substr(element.name.size() + 2);
    const std::string end = Tag("</", element.name);
    if (text.size() < end.size() || text.substr(text.size() - end.size()) != end) {
      Fail(end + " expected");
      return;
    }
    text.remove_suffix(end.size());
    if (element.check(text)) {
      ++at_;
    } else {
      Fail(Tag("<", element.name) + " holds '" + std::string(text) + "'");
    }
  }
  void MayExpect(const Element& element) {
    if (Holds(element.name)) Expect(element);
  }
  // One of several, the last of which is named when it is none.
  void ExpectOneOf(std::initializer_list<Element> elements) {
    for (const Element& element : elements) {
      if (!Holds(element.name)) continue;
      Expect(element);
      return;
    }
    Expect(*(elements.end() - 1));
  }
  // Whether the next line is the one before it once more, which is then passed over.
  bool PassRepetition() {
    if (!problem_.empty() || ended() || at_ == 0 || lines_[at_] != lines_[at_ - 1]) return false;
    ++at_;
    return true;
  }
  void Fail(const std::string& why) {
    if (problem_.empty()) problem_ = "line " + std::to_string(at_ + 1) + ": " + why;
  }

 private:
  static std::string_view Trimmed(std::string_view line) {
    line.remove_prefix(std::min(line.find_first_not_of("\t "), line.size()));
    return line;
  }
  static std::string Tag(std::string_view open, std::string_view name) {
    return std::string(open).append(name) + ">";
  }

  std::vector<std::string_view> lines_;
  std::size_t at_ = 0;
  std::string problem_;
};

// ---- The parts of a document

void ReadHeader(Lines* lines, bool older) {
  lines->Expect("<?xml version=\"1.0\" encoding=\"UTF-8\"?>");
  lines->Expect("<gymData>");
  lines->Expect({"vers", IsVersion});
  lines->Expect("<equipmentInfo>");
  lines->Expect({"manufacturerID", IsAny});
  if (!older) lines->Expect({"manufacturerName", IsAny});
  lines->Expect({"type", IsEquipment});
  lines->Expect({"model", IsAny});
  lines->Expect({"serialNumber", IsAny});
  if (older) {
    lines->Expect({"gymName", IsAny});
    lines->Expect({"gymLocation", IsAny});
  }
  lines->Expect("</equipmentInfo>");
  lines->Expect("<userInfo>");
  lines->Expect({"kg", older ? IsMillionths : IsTenths});
  lines->Expect("</userInfo>");
}

// Where a console has no distance or no speed to tell, it repeats the line before instead. iPods
// bear that, so it is no mistake.
void ReadInterval(Lines* lines) {
  lines->Expect("<interval>");
  lines->Expect({"event", IsEvent});
  lines->Expect({"sec", IsWhole});
  lines->Expect({"kCal", IsHundredths});
  if (!lines->PassRepetition()) lines->ExpectOneOf({{"floors", IsTenths}, {"km", IsHundredths}});
  if (!lines->PassRepetition()) {
    lines->ExpectOneOf({{"spm", IsWhole}, {"rpm", IsWhole}, {"pace", IsWhole}});
  }
  lines->Expect({"incline", IsSignedTenths});
  lines->MayExpect({"bpm", IsHeartRate});
  lines->MayExpect({"level", IsWhole});
  lines->Expect("</interval>");
}

// The kind of distance decides about the speed: pace with kilometres, steps with floors, and
// revolutions or nothing where there is no distance.
void ReadSummary(Lines* lines) {
  lines->Expect("<workoutSummary>");
  lines->Expect({"sec", IsWhole});
  lines->Expect({"kCal", IsHundredths});
  if (lines->PassRepetition()) {
    if (!lines->PassRepetition()) lines->Expect({"rpm", IsWhole});
  } else if (lines->Holds("floors")) {
    lines->Expect({"floors", IsTenths});
    lines->Expect({"spm", IsWhole});
  } else {
    lines->Expect({"km", IsHundredths});
    lines->Expect({"pace", IsWhole});
  }
  lines->MayExpect({"bpm", IsHeartRate});
  lines->Expect("</workoutSummary>");
}

// An interval in the middle of nothing special has no event in this form.
void ReadOlderInterval(Lines* lines) {
  lines->Expect("<interval>");
  lines->MayExpect({"event", IsEvent});
  for (const Element& element :
       {Element{"sec", IsWhole}, Element{"kCal", IsWhole}, Element{"km", IsMillionths},
        Element{"pace", IsWhole}, Element{"bpm", IsWhole}, Element{"incline", IsSignedMillionths},
        Element{"level", IsWhole}}) {
    lines->Expect(element);
  }
  lines->Expect("</interval>");
}

void ReadOlderSummary(Lines* lines) {
  lines->Expect("<workoutSummary>");
  for (const Element& element :
       {Element{"sec", IsWhole}, Element{"kCal", IsWhole}, Element{"km", IsMillionths},
        Element{"pace", IsWhole}, Element{"bpm", IsWhole}}) {
    lines->Expect(element);
  }
  lines->Expect("</workoutSummary>");
}

WorkoutForm FormOf(std::string_view content) {
  const bool indented = content.find("\n\t<gymData>") != std::string_view::npos;
  return indented ? WorkoutForm::kOlder : WorkoutForm::kNewer;
}

}  // namespace

WorkoutDocument::WorkoutDocument(std::string_view content) : form_(FormOf(content)) {
  const bool older = form_ == WorkoutForm::kOlder;
  Lines lines(content);
  ReadHeader(&lines, older);
  while (lines.problem().empty() && lines.Begins("<interval>")) {
    older ? ReadOlderInterval(&lines) : ReadInterval(&lines);
  }
  older ? ReadOlderSummary(&lines) : ReadSummary(&lines);
  if (!lines.ended()) lines.Fail("nothing expected behind the summary");
  problem_ = lines.problem();
}

}  // namespace ipodsim
