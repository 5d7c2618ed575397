// SPDX-License-Identifier: MIT
// Modes, preferences and what is known of the user.
#include <algorithm>
#include <cctype>
#include <map>

#include "text/subjects.h"

namespace truth {

namespace {

// What the legacy interface shows of some preferences in words of its own.
std::string Setting(const std::string& shown) {
  static const std::map<std::string, const char*> kWords = {{"Ask User", "ask"},
                                                            {"Fill Entire Screen", "fill"},
                                                            {"Fit Edge To Screen", "fit"},
                                                            {"Disabled", "off"},
                                                            {"Enabled", "on"},
                                                            {"No Connection", "none"},
                                                            {"4 by 3", "4:3"},
                                                            {"16 by 9", "16:9"}};
  const auto word = kWords.find(shown);
  if (word != kWords.end()) return word->second;
  std::string setting = shown;
  std::transform(setting.begin(), setting.end(), setting.begin(),
                 [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
  return setting;
}

}  // namespace

void ReadMode(Lines* lines, std::vector<Json>* said) {
  static const std::regex kMode("(Shuffle|Repeat): (.*)");
  while (const auto mode = lines->TakeIf(kMode)) {
    said->push_back({{mode->at(1) == "Shuffle" ? "shuffle" : "repeat", mode->at(2)}});
  }
}

void ReadPreferences(Lines* lines, std::vector<Json>* said) {
  static const std::regex kOne("([a-z-]+): (.*)");
  Json preferences = Json::object();
  while (const auto fact = lines->TakeFact()) {
    preferences[fact->first] = Setting(fact->second);
  }
  if (const auto one = lines->TakeIf(kOne)) preferences[one->at(1)] = Setting(one->at(2));
  if (!preferences.empty()) said->push_back(preferences);
}

void ReadUserData(Lines* lines, std::vector<Json>* said) {
  Json data = Json::object();
  while (const auto fact = lines->TakeFact()) {
    const auto& [label, value] = *fact;
    if (label == "Weight") data["weight"] = Number(value);
    if (label == "Flag (data type 2)") data["flag"] = value == "set";
    if (label == "Value (data type 4)") data["value"] = Number(value);
  }
  if (!data.empty()) said->push_back(data);
}

}  // namespace truth
