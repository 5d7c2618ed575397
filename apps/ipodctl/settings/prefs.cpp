// SPDX-License-Identifier: MIT
// Reads and sets preferences; how it is done differs by the interface, what is shown does not.
#include "settings/prefs.h"

#include <array>
#include <nlohmann/json.hpp>
#include <optional>

#include "console/failure.h"
#include "ipod/identify_evidence.h"
#include "ipod/refusal.h"
#include "settings/preference_table.h"

namespace ipodctl {

namespace {

struct Setting {
  std::string name;   // as on the command line
  std::string shown;  // to people: the legacy interface has texts of its own
};

// The current interface.

// Preferences came with this version of the General lingo.
constexpr tagIPOD_VERSION kLeastGeneral = {1, 5};

void RequirePreferences(Session& session) {
  const std::optional<tagIPOD_VERSION> general = session.LingoVersion(ipod::IPOD_LINGO_GENERAL);
  const bool enough =
      general && (general->major > kLeastGeneral.major ||
                  (general->major == kLeastGeneral.major && general->minor >= kLeastGeneral.minor));
  if (enough) return;
  throw CommandFailure(kFailed, "this iPod has no preferences (General " +
                                    (general ? VersionText(*general) : "of unknown version") +
                                    ", needs " + VersionText(kLeastGeneral) + ")");
}

// None when the iPod does not know the preference, as iPods without video know few of them. An iPod
// that wants the accessory authenticated tells none.
std::optional<Setting> Read(Session& session, const Preference& preference) {
  unsigned char setting = 0;
  if (session.ipod().Command_GetPreference(preference.code, &setting) != 0) {
    const std::string name = SettingName(preference, setting);
    return Setting{name, name};
  }
  const tagIPOD_EXCHANGE last = session.Last();
  const bool refused = last.result == IPOD_EXCHANGE_REFUSED;
  if (!refused || last.status == kNotAuthenticated) session.Fail(last, "tell its preferences");
  return std::nullopt;
}

// The library's own command lets it hold until the iPod is undocked.
bool Keep(Session& session, const Preference& preference, unsigned char setting) {
  constexpr unsigned char kRestoreAtUndocking = 0;
  constexpr int kAttempts = 3;
  const unsigned char data[] = {preference.code, setting, kRestoreAtUndocking};
  const auto ack = session.Exchange(
      {ipod::IPOD_COMMAND_SETIPODPREFERENCES, ipod::IPOD_LINGO_GENERAL, data, sizeof data},
      ipod::IPOD_COMMAND_ACK, kAttempts);
  return ack && ack->size() > 1 && ack->at(0) == 0 &&
         ack->at(1) == ipod::IPOD_COMMAND_SETIPODPREFERENCES;
}

bool Set(Session& session, const Preference& preference, unsigned char setting, bool keep) {
  if (keep) return Keep(session, preference, setting);
  return session.ipod().Command_SetPreference(preference.code, setting) != 0;
}

// Whoever identifies to the iPod sets it anew, as the next command does.
void ShowHowLong(Output& output, const Preference& preference, unsigned char setting, bool keep) {
  if (!preference.introduction || *preference.introduction == setting) return;
  const std::string usual = SettingName(preference, *preference.introduction);
  output.Line(keep ? "It is so again whenever the iPod has been undocked; in the dock the next "
                     "command sets it to " +
                         usual + "."
                   : "It holds until the iPod is undocked or the next command, which sets it to " +
                         usual + ".");
}

// The legacy interface.

struct DisplayTexts {
  unsigned char preference;
  std::array<const char*, 4> settings;  // by their numbers
};

// As the interface shows them.
constexpr DisplayTexts kDisplayTexts[] = {
    {ipod::IPOD_PREFERENCE_VIDEOOUTSETTING, {"Off", "On", "Ask User"}},
    {ipod::IPOD_PREFERENCE_SCREENCONFIGURATION, {"Fill Entire Screen", "Fit Edge To Screen"}},
    {ipod::IPOD_PREFERENCE_VIDEOSIGNALFORMAT, {"NTSC", "PAL"}},
    {ipod::IPOD_PREFERENCE_LINEOUTUSAGE, {"Disabled", "Enabled", "Ask User"}},
    {ipod::IPOD_PREFERENCE_VIDEOOUTCONNECTION,
     {"No Connection", "Composite", "S-Video", "Component"}},
    {ipod::IPOD_PREFERENCE_CLOSEDCAPTIONING, {"Off", "On"}},
    {ipod::IPOD_PREFERENCE_VIDEOMONITORASPECT, {"4 by 3", "16 by 9"}},
    {ipod::IPOD_PREFERENCE_SUBTITLES, {"Off", "On"}},
    {ipod::IPOD_PREFERENCE_VIDEOALTERNATEAUDIO, {"Off", "On"}},
};

// One preference has no display text; it shows its setting.
std::string DisplayedSetting(const Preference& preference, unsigned char setting) {
  for (const DisplayTexts& texts : kDisplayTexts) {
    if (texts.preference != preference.code) continue;
    const bool known = setting < texts.settings.size() && texts.settings[setting] != nullptr;
    return known ? texts.settings[setting] : "Unknown";
  }
  return SettingName(preference, setting);
}

void RequirePreferences(LegacySession& /*session*/) {}

LegacyQuestion SettingQuestion(const Preference& preference) {
  return {[code = preference.code](ipod& docked) { return docked.command_getipodpreference(code); },
          ipod::IPOD_COMMAND_GETIPODPREFERENCES,
          ipod::IPOD_COMMAND_RETURNIPODPREFERENCES,
          2,
          false,
          {preference.code}};
}

// The setting's number; none when the iPod refuses to tell it.
std::optional<unsigned char> ReadNumber(LegacySession& session, const Preference& preference) {
  const LegacyAnswer answer = session.AskShort(SettingQuestion(preference));
  if (answer.refused() && answer.status != kNotAuthenticated) return std::nullopt;
  session.Require(answer, "tell its preferences");
  return answer.data[1];
}

Setting SettingOf(const Preference& preference, unsigned char setting) {
  return {SettingName(preference, setting), DisplayedSetting(preference, setting)};
}

std::optional<Setting> Read(LegacySession& session, const Preference& preference) {
  const std::optional<unsigned char> setting = ReadNumber(session, preference);
  if (!setting) return std::nullopt;
  return SettingOf(preference, *setting);
}

// Sets a preference until the iPod is undocked.
LegacyAnswer Set(LegacySession& session, const Preference& preference, unsigned char setting) {
  constexpr int kAttempts = 3;
  const LegacyQuestion question = {[=, code = preference.code](ipod& docked) {
                                     return docked.command_setipodpreference(code, setting);
                                   },
                                   ipod::IPOD_COMMAND_SETIPODPREFERENCES, ipod::IPOD_COMMAND_ACK,
                                   2};
  LegacyAnswer answer;
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    answer = AskForAck(session.interface(), question);
    if (answer.answered() || answer.refused()) break;
  }
  return answer;
}

// Either.

template <class AnySession>
void ShowAll(Output& output, AnySession& session) {
  nlohmann::ordered_json json = nlohmann::ordered_json::object();
  for (const Preference& preference : AllPreferences()) {
    const std::optional<Setting> setting = Read(session, preference);
    if (!setting) continue;
    json[preference.name] = setting->name;
    output.Fact(preference.name, setting->shown);
  }
  if (json.empty()) throw CommandFailure(kFailed, "the iPod refused to tell any preference");
  output.Object(json);
}

template <class AnySession>
Setting ReadOne(AnySession& session, const Preference& preference) {
  const std::optional<Setting> setting = Read(session, preference);
  if (setting) return *setting;
  throw CommandFailure(kFailed, std::string("the iPod refused to tell ") + preference.name +
                                    "; it may not know this preference");
}

void ShowOne(Output& output, const Preference& preference, const Setting& setting) {
  output.Object({{preference.name, setting.name}});
  output.Line(std::string(preference.name) + ": " + setting.shown);
}

// What it is afterwards decides, not what the iPod said to it.
void SetAndShow(const Context& context, Session& session, const Preference& preference) {
  const std::string& wanted = context.options.setting;
  const unsigned char code = *SettingByName(preference, wanted);
  const bool accepted = Set(session, preference, code, context.options.keep);
  const tagIPOD_EXCHANGE exchange = session.Last();
  const std::string what = std::string("set ") + preference.name + " to " + wanted;
  if (!accepted && exchange.status == kNotAuthenticated) session.Fail(exchange, what);
  const Setting setting = ReadOne(session, preference);
  if (setting.name != wanted) {
    if (!accepted) session.Fail(exchange, what + "; it is " + setting.shown);
    throw CommandFailure(
        kFailed, std::string("the iPod accepted, but ") + preference.name + " is " + setting.shown);
  }
  ShowOne(context.output, preference, setting);
  ShowHowLong(context.output, preference, code, context.options.keep);
}

void SetAndShow(const Context& context, LegacySession& session, const Preference& preference) {
  const std::string& wanted = context.options.setting;
  const unsigned char setting = *SettingByName(preference, wanted);
  const LegacyAnswer answer = Set(session, preference, setting);
  const std::optional<unsigned char> now = ReadNumber(session, preference);
  const std::string what = std::string(preference.name) + " to " + wanted;
  if (!now) throw CommandFailure(kFailed, "set " + what + ", but the iPod refuses to tell it");
  const Setting set = SettingOf(preference, *now);
  if (*now != setting) {
    session.Require(answer, "set " + what + "; it is " + set.shown);
    throw CommandFailure(
        kFailed, std::string("the iPod accepted, but ") + preference.name + " is " + set.shown);
  }
  ShowOne(context.output, preference, set);
}

template <class AnySession>
void ShowOrSet(const Context& context, AnySession& session) {
  const Options& options = context.options;
  RequirePreferences(session);
  if (options.preference.empty()) {
    ShowAll(context.output, session);
    return;
  }
  const Preference& preference = *PreferenceByName(options.preference);
  if (options.setting.empty()) {
    ShowOne(context.output, preference, ReadOne(session, preference));
  } else {
    SetAndShow(context, session, preference);
  }
}

}  // namespace

void RunPrefs(const Context& context, Session& session) { ShowOrSet(context, session); }

void RunLegacyPrefs(const Context& context, LegacySession& session) { ShowOrSet(context, session); }

}  // namespace ipodctl
