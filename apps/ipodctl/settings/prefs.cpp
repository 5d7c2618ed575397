// SPDX-License-Identifier: MIT
// Reads and sets preferences; how it is done differs by the interface, what is shown does not.
#include "settings/prefs.h"

#include <nlohmann/json.hpp>
#include <optional>

#include "ipod/display_text.h"
#include "settings/preference_table.h"

namespace ipodctl {

namespace {

// The current interface.

// The setting's name. None when the iPod does not know the preference, as iPods without video know
// few of them.
std::optional<std::string> Read(Session& session, const Preference& preference) {
  unsigned char setting = 0;
  if (session.ipod().Command_GetPreference(preference.code, &setting) == 0) return std::nullopt;
  return SettingName(preference, setting);
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

// None when the iPod does not answer. One preference has no display text; it shows its setting.
std::optional<std::string> Read(LegacySession& session, const Preference& preference) {
  ipod& docked = session.interface();
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
    if (!setting) {
      session.RequireAnswers();
      continue;
    }
    json[preference.name] = *setting;
    output.Fact(preference.name, *setting);
  }
  session.Require(!json.empty(), "tell any preference");
  output.Object(json);
}

template <class AnySession>
void ShowOne(Output& output, AnySession& session, const Preference& preference) {
  const std::optional<std::string> setting = Read(session, preference);
  session.Require(setting.has_value(), std::string("tell ") + preference.name);
  output.Object({{preference.name, *setting}});
  output.Line(std::string(preference.name) + ": " + *setting);
}

template <class AnySession>
void ShowOrSet(const Context& context, AnySession& session) {
  const Options& options = context.options;
  if (options.preference.empty()) {
    ShowAll(context.output, session);
    return;
  }
  const Preference& preference = *PreferenceByName(options.preference);
  if (!options.setting.empty()) {
    const unsigned char setting = *SettingByName(preference, options.setting);
    session.Require(Set(session, preference, setting),
                    std::string("set ") + preference.name + " to " + options.setting);
  }
  ShowOne(context.output, session, preference);
}

}  // namespace

void RunPrefs(const Context& context, Session& session) { ShowOrSet(context, session); }

void RunLegacyPrefs(const Context& context, LegacySession& session) { ShowOrSet(context, session); }

}  // namespace ipodctl
