// SPDX-License-Identifier: MIT
// What the iPod tells of itself.
#include <cstdio>
#include <map>

#include "text/subjects.h"

namespace truth {

namespace {

void Keep(Json* info, const char* member, const std::string& value) {
  const Json named = Named(value);
  if (!named.is_null()) (*info)[member] = named;
}

// "MB598LL (0x00140000)", and through the legacy interface the name alone.
void KeepModel(Json* info, const std::string& value) {
  static const std::regex kWithId("(.*) \\(0x([0-9A-F]{8})\\)");
  std::smatch match;
  if (!std::regex_match(value, match, kWithId)) return Keep(info, "model", value);
  Keep(info, "model", match[1]);
  (*info)["model_id"] = std::stoul(match[2], nullptr, 16);
}

// "0014|0000": one number in two halves.
void KeepModelNumber(Json* info, const std::string& value) {
  if (Named(value).is_null()) return;
  (*info)["model_id"] =
      std::stoul(value.substr(0, 4), nullptr, 16) << 16 | std::stoul(value.substr(5), nullptr, 16);
}

// "0 - 1.9": the General lingo, 1.09.
void KeepGeneralVersion(Json* info, const std::string& value) {
  unsigned lingo = 0;
  unsigned major = 0;
  unsigned minor = 0;
  if (std::sscanf(value.c_str(), "%u - %u.%u", &lingo, &major, &minor) != 3) return;
  char text[32];
  std::snprintf(text, sizeof text, "%u.%02u", major, minor);
  (*info)["lingoes"][lingo == 0 ? "General" : "another"] = text;
}

void KeepLingo(Json* info, const std::string& lingo, const std::string& value) {
  if (value == "not supported") {
    (*info)["lacking"].push_back(lingo);
  } else if (value.rfind("not told", 0) != 0) {
    (*info)["lingoes"][lingo] = value;
  }
}

void KeepWorkouts(Json* info, const std::string& value) {
  if (value == "supported") (*info)["sports"] = true;
  if (value == "not supported") (*info)["sports"] = false;
}

}  // namespace

void ReadInfoFacts(Lines* lines, Json* info) {
  static const std::map<std::string, const char*> kPlain = {
      {"Name", "name"},
      {"Serial number", "serial_number"},
      {"Software version", "software_version"},
      {"Identified by", "identified_by"}};
  (*info)["lacking"] = Json::array();
  (*info)["lingoes"] = Json::object();
  while (const auto fact = lines->TakeFact()) {
    const auto& [label, value] = *fact;
    const auto plain = kPlain.find(label);
    if (plain != kPlain.end()) {
      Keep(info, plain->second, value);
    } else if (label == "Model") {
      KeepModel(info, value);
    } else if (label == "Model number") {
      KeepModelNumber(info, value);
    } else if (label == "Lingo version") {
      KeepGeneralVersion(info, value);
    } else if (label == "Maximum payload") {
      (*info)["max_payload"] = Number(value.substr(0, value.find(' ')));
    } else if (label == "Workouts") {
      KeepWorkouts(info, value);
    } else if (label != "Colour") {
      KeepLingo(info, label, value);
    }
  }
}

void ReadInfo(Lines* lines, std::vector<Json>* said) {
  static const std::regex kHeading("(.*) on ([^ ]*)");
  const auto heading = lines->TakeIf(kHeading);
  if (!heading) return;
  Json info = {{"device", heading->at(2)}};
  Keep(&info, "name", heading->at(1));
  ReadInfoFacts(lines, &info);
  said->push_back(info);
}

}  // namespace truth
