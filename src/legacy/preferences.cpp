// SPDX-License-Identifier: MIT
// ipod: the iPod's own preferences, as settings and as text for the console's screen.
#include <cstddef>

#include "ipodcomm/ipod.h"
#include "legacy/reply_text.h"

using ipodcomm::kIgnored;
using ipodcomm::ReplyByte;
using ipodcomm::ShowText;

namespace {

// A preference's class and the texts of its settings, from 0 on.
struct ShownPreference {
  unsigned char preference_class;
  const char* texts[4];
};

constexpr ShownPreference kVideoOut = {ipod::IPOD_PREFERENCE_VIDEOOUTSETTING,
                                       {"Off", "On", "Ask User"}};
constexpr ShownPreference kScreenConfiguration = {ipod::IPOD_PREFERENCE_SCREENCONFIGURATION,
                                                  {"Fill Entire Screen", "Fit Edge To Screen"}};
constexpr ShownPreference kVideoSignalFormat = {ipod::IPOD_PREFERENCE_VIDEOSIGNALFORMAT,
                                                {"NTSC", "PAL"}};
constexpr ShownPreference kLineOutUsage = {ipod::IPOD_PREFERENCE_LINEOUTUSAGE,
                                           {"Disabled", "Enabled", "Ask User"}};
constexpr ShownPreference kVideoOutConnection = {
    ipod::IPOD_PREFERENCE_VIDEOOUTCONNECTION,
    {"No Connection", "Composite", "S-Video", "Component"}};
constexpr ShownPreference kClosedCaptioning = {ipod::IPOD_PREFERENCE_CLOSEDCAPTIONING,
                                               {"Off", "On"}};
constexpr ShownPreference kVideoMonitorAspect = {ipod::IPOD_PREFERENCE_VIDEOMONITORASPECT,
                                                 {"4 by 3", "16 by 9"}};
constexpr ShownPreference kSubtitles = {ipod::IPOD_PREFERENCE_SUBTITLES, {"Off", "On"}};
constexpr ShownPreference kVideoAlternateAudio = {ipod::IPOD_PREFERENCE_VIDEOALTERNATEAUDIO,
                                                  {"Off", "On"}};

// Loads a preference and shows its setting; one without a text stays "Unknown".
int Show(ipod& dock, const ShownPreference& preference, wchar_t* text) {
  ShowText(text, "Unknown");
  unsigned char setting = 255;
  const int loaded = dock.loadipodpreference(preference.preference_class, &setting);
  constexpr std::size_t kTexts = sizeof preference.texts / sizeof *preference.texts;
  if (setting < kTexts && preference.texts[setting] != nullptr) {
    ShowText(text, preference.texts[setting]);
  }
  return loaded;
}

}  // namespace

int ipod::loadipodpreference(unsigned char preference_class, unsigned char* setting) {
  if (!command_getipodpreference(preference_class)) return 0;
  wchar_t reply[5] = {};
  if (!extractdatafrompacket(IPOD_COMMAND_RETURNIPODPREFERENCES, reply, 5, 0, kIgnored)) return 0;
  if (ReplyByte(reply[0]) != preference_class) return 0;
  ipodcomm::Store(setting, ReplyByte(reply[1]));
  return 1;
}

int ipod::setipodpreferencevidooutsetting(unsigned char setting) {
  const int sent = command_setipodpreference(IPOD_PREFERENCE_VIDEOOUTSETTING, setting);
  if (!sent) return 0;
  wchar_t reply[20] = {};
  if (!extractdatafrompacket(IPOD_COMMAND_ACK, reply, 20, 0, kIgnored)) return sent;
  return reply[0] == 0;
}

int ipod::getipodpreferencevideooutsetting(wchar_t* text) { return Show(*this, kVideoOut, text); }

int ipod::getipodpreferencescreenconfiguration(wchar_t* text) {
  return Show(*this, kScreenConfiguration, text);
}

int ipod::getipodpreferencevideosignalformat(wchar_t* text) {
  return Show(*this, kVideoSignalFormat, text);
}

int ipod::getipodpreferencelineoutusage(wchar_t* text) { return Show(*this, kLineOutUsage, text); }

int ipod::getipodpreferencevideoutconnection(wchar_t* text) {
  return Show(*this, kVideoOutConnection, text);
}

int ipod::getipodpreferenceclosedcaptioning(wchar_t* text) {
  return Show(*this, kClosedCaptioning, text);
}

int ipod::getipodpreferencevideomonitoraspect(wchar_t* text) {
  return Show(*this, kVideoMonitorAspect, text);
}

int ipod::getipodpreferencesubtitles(wchar_t* text) { return Show(*this, kSubtitles, text); }

int ipod::getipodpreferencevideoalternateaudiochannel(wchar_t* text) {
  return Show(*this, kVideoAlternateAudio, text);
}
