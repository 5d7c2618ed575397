// SPDX-License-Identifier: MIT
// The elements of workout documents, and what their values mean.
#include "report/document_builder.h"

#include <algorithm>
#include <charconv>

#include "console/text.h"
#include "report/workout_reader.h"

namespace ipodctl {

namespace {

// An element's depth: gymData is at 1, its sections at 2, their values at 3.
constexpr std::size_t kRootDepth = 1;
constexpr std::size_t kSectionDepth = 2;
constexpr std::size_t kValueDepth = 3;

// No workout measures more of anything, and axes can still be computed with it.
constexpr double kLargestValue = 1e10;

enum class Accepts { kAnySign, kNotNegative, kPositive };

struct ReadingElement {
  const char* name;
  std::optional<double> Readings::*reading;
  Accepts accepts;
};

// A heart rate of 0 means none was measured, a pace of 0 that nothing moved.
constexpr ReadingElement kReadings[] = {
    {"sec", &Readings::seconds, Accepts::kNotNegative},
    {"kCal", &Readings::kcal, Accepts::kNotNegative},
    {"km", &Readings::km, Accepts::kNotNegative},
    {"floors", &Readings::floors, Accepts::kNotNegative},
    {"pace", &Readings::pace, Accepts::kPositive},
    {"spm", &Readings::spm, Accepts::kNotNegative},
    {"rpm", &Readings::rpm, Accepts::kNotNegative},
    {"incline", &Readings::incline, Accepts::kAnySign},
    {"bpm", &Readings::bpm, Accepts::kPositive},
    {"level", &Readings::level, Accepts::kNotNegative},
};

template <typename Info>
struct TextElement {
  const char* name;
  std::string Info::*text;
};

constexpr TextElement<EquipmentInfo> kEquipment[] = {
    {"manufacturerID", &EquipmentInfo::manufacturer_id},
    {"manufacturerName", &EquipmentInfo::manufacturer_name},
    {"type", &EquipmentInfo::type},
    {"model", &EquipmentInfo::model},
    {"serialNumber", &EquipmentInfo::serial_number},
    {"gymName", &EquipmentInfo::gym_name},
    {"gymLocation", &EquipmentInfo::gym_location},
};

constexpr TextElement<IpodInfo> kIpod[] = {
    {"model", &IpodInfo::model},
    {"softwareVersion", &IpodInfo::software_version},
    {"serialNumber", &IpodInfo::serial_number},
};

template <typename Info, std::size_t count>
void StoreText(const std::string& name, const std::string& text,
               const TextElement<Info> (&elements)[count], Info* info) {
  for (const TextElement<Info>& element : elements) {
    if (name == element.name) info->*element.text = text;
  }
}

WorkoutEvent EventByName(const std::string& name) {
  constexpr std::pair<const char*, WorkoutEvent> kEvents[] = {
      {"start", WorkoutEvent::kStart}, {"continue", WorkoutEvent::kContinue},
      {"pause", WorkoutEvent::kPause}, {"resume", WorkoutEvent::kResume},
      {"end", WorkoutEvent::kEnd},
  };
  for (const auto& [known, event] : kEvents) {
    if (name == known) return event;
  }
  return WorkoutEvent::kNone;
}

// Consoles write what their formats make of any number: "nan", "-inf" and 300 digits too.
std::optional<double> UsableNumber(const std::string& text) {
  double number = 0;
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  const bool usable =
      error == std::errc() && stop == end && number >= -kLargestValue && number <= kLargestValue;
  return usable ? std::optional<double>(number) : std::nullopt;
}

// -1 in a console stands for "has no levels", whichever sign it was written with.
bool IsNoLevel(const std::string& text) { return text == "-1" || text == "4294967295"; }

}  // namespace

bool DocumentBuilder::StartElement(const std::string& name) {
  ++depth_;
  text_.clear();
  if (depth_ == kRootDepth) {
    document_.is_workout = name == "gymData";
    return document_.is_workout;
  }
  return depth_ != kSectionDepth || StartSection(name);
}

bool DocumentBuilder::StartSection(const std::string& name) {
  section_ = Section::kOther;
  if (name == "equipmentInfo") section_ = Section::kEquipment;
  if (name == "iPodInfo") section_ = Section::kIpod;
  if (name == "userInfo") section_ = Section::kUser;
  if (name == "workoutSummary") {
    section_ = Section::kSummary;
    document_.summary.emplace();
  }
  if (name == "interval") {
    if (document_.intervals.size() == kMostIntervals) return false;
    section_ = Section::kInterval;
    document_.intervals.emplace_back();
  }
  return true;
}

void DocumentBuilder::EndElement(const std::string& name) {
  if (depth_ == kValueDepth) StoreValue(name, Trimmed(text_));
  if (depth_ == kSectionDepth) section_ = Section::kOther;
  --depth_;
  text_.clear();
}

void DocumentBuilder::Text(const char* text, std::size_t length) {
  if (depth_ != kValueDepth) return;
  std::size_t taken = std::min(length, kLongestText - std::min(kLongestText, text_.size()));
  const auto continues_character = [text](std::size_t at) {
    return (static_cast<unsigned char>(text[at]) & 0xC0U) == 0x80U;
  };
  while (taken > 0 && taken < length && continues_character(taken)) --taken;
  text_.append(text, taken);
}

void DocumentBuilder::StoreValue(const std::string& name, const std::string& text) {
  switch (section_) {
    case Section::kEquipment:
      StoreText(name, text, kEquipment, &document_.equipment);
      break;
    case Section::kIpod:
      StoreText(name, text, kIpod, &document_.ipod);
      break;
    case Section::kUser:
      if (name != "kg") break;
      document_.weight_kg = UsableNumber(text);
      if (!document_.weight_kg || *document_.weight_kg < 0) {
        ++document_.unusable_values;
        document_.weight_kg.reset();
      }
      break;
    case Section::kInterval:
      if (name == "event") document_.intervals.back().event = EventByName(text);
      StoreReading(name, text, &document_.intervals.back().readings);
      break;
    case Section::kSummary:
      StoreReading(name, text, &*document_.summary);
      break;
    case Section::kOther:
      break;
  }
}

// An element may come twice: consoles repeat the line before where they have no element to write.
void DocumentBuilder::StoreReading(const std::string& name, const std::string& text,
                                   Readings* readings) {
  for (const ReadingElement& element : kReadings) {
    if (name != element.name) continue;
    std::optional<double>& reading = readings->*element.reading;
    reading.reset();
    if (element.reading == &Readings::level && IsNoLevel(text)) return;
    const std::optional<double> number = UsableNumber(text);
    if (number == 0.0 && element.accepts == Accepts::kPositive) return;
    if (!number || (*number < 0 && element.accepts != Accepts::kAnySign)) {
      ++document_.unusable_values;
      return;
    }
    reading = number;
  }
}

WorkoutDocument DocumentBuilder::Finish() { return std::move(document_); }

}  // namespace ipodctl
