// SPDX-License-Identifier: MIT
// The table of habits.

#include "habits.h"

#include "simulator/protocol/commands.h"

namespace ipodsim {
namespace {

constexpr std::size_t kLongTitleBytes = 480;

// It stays at its place among the others, in the middle of the library.
void LengthenATitle(Settings* settings) {
  std::vector<Track>& tracks = settings->library.tracks;
  if (tracks.empty()) return;
  std::string& title = tracks[tracks.size() / 2].title;
  while (title.size() < kLongTitleBytes) title += " and on";
  title.resize(kLongTitleBytes);
}

void NeedAuthentication(Settings* settings) {
  for (const auto command : {general::kGetIpodPreferences, general::kSetIpodPreferences}) {
    settings->refused[{kGeneral, command}] = AckStatus::kNotAuthenticated;
  }
}

void TellFewFacts(Settings* settings) {
  for (const auto command : {general::kRequestMaxPayloadSize, general::kGetIpodPreferences,
                             general::kGetEventNotification, general::kGetIpodOptionsForLingo}) {
    settings->refused[{kGeneral, command}] = AckStatus::kUnknown;
  }
}

}  // namespace

const std::vector<Habit>& AllHabits() {
  static const std::vector<Habit> kAll = {
      {"start-with-id", "StartIDPS is heard only with a transaction identifier on it",
       [](Settings* s) { s->start_idps_needs_identifier = true; }},
      {"silent-start", "StartIDPS is not refused where tokens are unknown, but ignored",
       [](Settings* s) { s->refuses_start_idps_silently = true; }},
      {"keeps-ids", "IdentifyDeviceLingoes leaves transaction identifiers on",
       [](Settings* s) { s->keeps_identifiers = true; }},
      {"ui-at-once", "the remote user interface is entered without a pending answer first",
       [](Settings* s) { s->remote_ui_is_pending_first = false; }},
      {"large-frames", "every frame goes out in the large form",
       [](Settings* s) { s->large_frames_only = true; }},
      {"no-name", "its name is a question that it does not know",
       [](Settings* s) {
         s->refused[{kGeneral, general::kRequestIpodName}] = AckStatus::kUnknown;
       }},
      {"few-facts", "payload size, preferences, events and options are questions unknown to it",
       TellFewFacts},
      {"no-track-info", "what a track can do is a question that it does not know",
       [](Settings* s) {
         s->refused[{kExtended, extended::kGetIndexedPlayingTrackInfo}] = AckStatus::kUnknown;
         s->refused[{kDisplayRemote, display_remote::kGetIndexedPlayingTrackInfo}] =
             AckStatus::kUnknown;
       }},
      {"authentication", "preferences are refused to an accessory that is not authenticated",
       NeedAuthentication},
      {"no-select", "SelectDBRecord is refused, SelectSortDBRecord is not",
       [](Settings* s) { s->refuses_select_record = true; }},
      {"stays-paused", "a selected track is acknowledged, but not gone to and not played",
       [](Settings* s) { s->stays_paused = true; }},
      {"no-questions", "the accessory is asked nothing about itself",
       [](Settings* s) { s->asks_accessory = false; }},
      {"long-title", "one title is 480 bytes long", LengthenATitle},
  };
  return kAll;
}

bool ApplyHabit(std::string_view name, Settings* settings) {
  for (const Habit& habit : AllHabits()) {
    if (name != habit.name) continue;
    habit.apply(settings);
    return true;
  }
  return false;
}

}  // namespace ipodsim
