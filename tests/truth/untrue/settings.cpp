// SPDX-License-Identifier: MIT
// Modes, preferences and what is known of the user.
#include "untrue/subjects.h"

namespace truth {

namespace {

struct Preference {
  const char* name;
  std::uint8_t code;
  std::vector<std::string> settings;
};

const std::vector<Preference>& Preferences() {
  static const std::vector<Preference> kAll = {
      {"video-out", 0, {"off", "on", "ask"}},
      {"screen", 1, {"fill", "fit"}},
      {"signal", 2, {"ntsc", "pal"}},
      {"line-out", 3, {"off", "on"}},
      {"connection", 8, {"none", "composite", "s-video", "component"}},
      {"captions", 9, {"off", "on"}},
      {"aspect", 10, {"4:3", "16:9"}},
      {"subtitles", 12, {"off", "on"}},
      {"alternate-audio", 13, {"off", "on"}},
      {"pause-on-removal", 15, {"off", "on"}},
  };
  return kAll;
}

}  // namespace

std::string UntrueMode(const Question& question) {
  const bool shuffles = question.options.command == "shuffle";
  const ipodsim::Player& player = question.ipod.player();
  const int mode =
      shuffles ? static_cast<int>(player.shuffle()) : static_cast<int>(player.repeat());
  const char* const names[] = {"off", shuffles ? "tracks" : "one", shuffles ? "albums" : "all"};
  const std::string wanted = question.options.mode.empty() ? names[mode] : question.options.mode;
  if (names[mode] != wanted) return std::string("it is ") + names[mode];
  return Expect(question.last(), question.options.command.c_str(), names[mode]);
}

std::string UntruePreferences(const Question& question) {
  const std::string& wanted = question.options.preference;
  for (const Preference& preference : Preferences()) {
    if (!wanted.empty() && wanted != preference.name) continue;
    // Out of the dock they go back to what they were before.
    if (question.account.cut_off && question.last().contains(preference.name)) continue;
    const std::uint8_t value = question.ipod.preference(preference.code);
    if (!question.options.setting.empty() &&
        preference.settings[value] != question.options.setting) {
      return "it is " + preference.settings[value];
    }
    const bool may_be_missing = wanted.empty() && question.was_refused();
    if (may_be_missing && !question.last().contains(preference.name)) continue;
    const std::string untrue = Expect(question.last(), preference.name, preference.settings[value]);
    if (!untrue.empty()) return untrue;
  }
  return "";
}

std::string UntrueUserData(const Question& question) {
  const ipodsim::UserData& data = question.ipod.user_data();
  if (question.options.user_weight && data.weight != *question.options.user_weight) {
    return "its weight is " + std::to_string(data.weight);
  }
  return FirstOf(Expect(question.last(), "weight", data.weight),
                 Expect(question.last(), "flag", data.flag == 2),
                 Expect(question.last(), "value", data.value));
}

}  // namespace truth
