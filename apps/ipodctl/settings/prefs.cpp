// SPDX-License-Identifier: MIT
// Reads and sets preferences; how it is done differs by the interface, what is shown does not.
#include "settings/prefs.h"

#include <nlohmann/json.hpp>
#include <optional>

#include "console/failure.h"
#include "ipod/display_text.h"
#include "ipod/identify_evidence.h"
#include "ipod/refusal.h"
#include "settings/preference_table.h"

namespace ipodctl {

namespace {

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

// The setting's name. None when the iPod does not know the preference, as iPods without video know
// few of them. An iPod that wants the accessory authenticated tells none.
std::optional<std::string> Read(Session& session, const Preference& preference) {
  unsigned char setting = 0;
  if (session.ipod().Command_GetPreference(preference.code, &setting) != 0) {
    return SettingName(preference, setting);
  }
  const tagIPOD_EXCHANGE last = session.Last();
  const bool refused = last.result == IPOD_EXCHANGE_REFUSED;
  if (!refused || last.status == kNotAuthenticated) session.Fail(last, "tell its preferences");
  return std::nullopt;
}

bool Set(Session& session, const Preference& preference, unsigned char setting) {
  return session.ipod().Command_SetPreference(preference.code, setting) != 0;
}

// The legacy interface.

struct TextGetter {
  unsigned char preference;
  int (ipod::*get)(wchar_t* text);
};

constexpr TextGetter kGetters[] = {
    {ipod::IPOD_PREFERENCE_VIDEOOUTSETTING, &ipod::getipodpreferencevideooutsetting},
    {ipod::IPOD_PREFERENCE_SCREENCONFIGURATION, &ipod::getipodpreferencescreenconfiguration},
    {ipod::IPOD_PREFERENCE_VIDEOSIGNALFORMAT, &ipod::getipodpreferencevideosignalformat},
    {ipod::IPOD_PREFERENCE_LINEOUTUSAGE, &ipod::getipodpreferencelineoutusage},
    {ipod::IPOD_PREFERENCE_VIDEOOUTCONNECTION, &ipod::getipodpreferencevideoutconnection},
    {ipod::IPOD_PREFERENCE_CLOSEDCAPTIONING, &ipod::getipodpreferenceclosedcaptioning},
    {ipod::IPOD_PREFERENCE_VIDEOMONITORASPECT, &ipod::getipodpreferencevideomonitoraspect},
    {ipod::IPOD_PREFERENCE_SUBTITLES, &ipod::getipodpreferencesubtitles},
    {ipod::IPOD_PREFERENCE_VIDEOALTERNATEAUDIO, &ipod::getipodpreferencevideoalternateaudiochannel},
};

void RequirePreferences(LegacySession& /*session*/) {}

// One preference has no display text; it shows its setting.
std::optional<std::string> ReadOnce(ipod& docked, const Preference& preference) {
  for (const TextGetter& getter : kGetters) {
    if (getter.preference != preference.code) continue;
    DisplayText text;
    const bool read = (docked.*getter.get)(text.buffer()) != 0;
    return read ? std::optional<std::string>(text.text()) : std::nullopt;
  }
  unsigned char setting = 0;
  if (docked.loadipodpreference(preference.code, &setting) == 0) return std::nullopt;
  return SettingName(preference, setting);
}

// None when the iPod refuses, which the interface does not tell from silence: its ACK does. A first
// answer may have been a late one about another preference.
std::optional<std::string> Read(LegacySession& session, const Preference& preference) {
  ipod& docked = session.interface();
  std::optional<std::string> setting = ReadOnce(docked, preference);
  if (setting) return setting;
  const LegacyAnswer ack = AskForAck(
      docked, [&](ipod& to) { return to.command_getipodpreference(preference.code); },
      ipod::IPOD_COMMAND_GETIPODPREFERENCES);
  if (!ack.refused()) {
    setting = ReadOnce(docked, preference);
    if (!setting) session.Require(ack, std::string("tell ") + preference.name);
  } else if (ack.status == kNotAuthenticated) {
    session.Require(ack, "tell its preferences");
  }
  return setting;
}

// Sets a preference until the iPod is undocked. The interface has an operation of its own for the
// video output only, which does the same.
bool Set(LegacySession& session, const Preference& preference, unsigned char setting) {
  ipod& docked = session.interface();
  if (preference.code == ipod::IPOD_PREFERENCE_VIDEOOUTSETTING) {
    return docked.setipodpreferencevidooutsetting(setting) != 0;
  }
  constexpr unsigned char kCapacity = 20;
  wchar_t acknowledgement[kCapacity] = {};
  return docked.command_setipodpreference(preference.code, setting) != 0 &&
         docked.extractdatafrompacket(ipod::IPOD_COMMAND_ACK, acknowledgement, kCapacity, 0, 0) !=
             0 &&
         acknowledgement[0] == 0;
}

// Either.

template <class AnySession>
void ShowAll(Output& output, AnySession& session) {
  nlohmann::ordered_json json = nlohmann::ordered_json::object();
  for (const Preference& preference : AllPreferences()) {
    const std::optional<std::string> setting = Read(session, preference);
    if (!setting) continue;
    json[preference.name] = *setting;
    output.Fact(preference.name, *setting);
  }
  if (json.empty()) throw CommandFailure(kFailed, "the iPod refused to tell any preference");
  output.Object(json);
}

template <class AnySession>
std::string ReadOne(AnySession& session, const Preference& preference) {
  const std::optional<std::string> setting = Read(session, preference);
  if (setting) return *setting;
  throw CommandFailure(kFailed, std::string("the iPod refused to tell ") + preference.name +
                                    "; it may not know this preference");
}

void ShowOne(Output& output, const Preference& preference, const std::string& setting) {
  output.Object({{preference.name, setting}});
  output.Line(std::string(preference.name) + ": " + setting);
}

// What it is afterwards decides, not what the iPod said to it.
void SetAndShow(Output& output, Session& session, const Preference& preference,
                const std::string& wanted) {
  const bool accepted = Set(session, preference, *SettingByName(preference, wanted));
  const tagIPOD_EXCHANGE exchange = session.Last();
  const std::string what = std::string("set ") + preference.name + " to " + wanted;
  if (!accepted && exchange.status == kNotAuthenticated) session.Fail(exchange, what);
  const std::string setting = ReadOne(session, preference);
  if (setting != wanted && !accepted) session.Fail(exchange, what + "; it is " + setting);
  if (setting != wanted) {
    throw CommandFailure(
        kFailed, std::string("the iPod accepted, but ") + preference.name + " is " + setting);
  }
  ShowOne(output, preference, setting);
}

void SetAndShow(Output& output, LegacySession& session, const Preference& preference,
                const std::string& wanted) {
  const unsigned char setting = *SettingByName(preference, wanted);
  const bool accepted = Set(session, preference, setting);
  unsigned char now = 0;
  const std::string shown = ReadOne(session, preference);
  // The display texts are not the settings' names, so the number is compared.
  session.Require(session.interface().loadipodpreference(preference.code, &now) != 0,
                  std::string("tell ") + preference.name);
  if (now != setting) {
    throw CommandFailure(
        kFailed, accepted
                     ? std::string("the iPod accepted, but ") + preference.name + " is " + shown
                     : std::string("the iPod refused to set ") + preference.name + " to " + wanted +
                           "; it is " + shown);
  }
  ShowOne(output, preference, shown);
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
    SetAndShow(context.output, session, preference, options.setting);
  }
}

}  // namespace

void RunPrefs(const Context& context, Session& session) { ShowOrSet(context, session); }

void RunLegacyPrefs(const Context& context, LegacySession& session) { ShowOrSet(context, session); }

}  // namespace ipodctl
