// SPDX-License-Identifier: MIT
// Reads the player through the legacy interface, and shows its display texts.
#include <nlohmann/json.hpp>

#include "console/interrupt.h"
#include "console/text.h"
#include "ipod/display_text.h"
#include "playing/now.h"

namespace ipodctl {

namespace {

constexpr int kStateLooks = 20;
constexpr unsigned kStateLookMs = 100;

struct Player {
  unsigned char state = 0;
  unsigned long length_ms = 0;
  unsigned long position_ms = 0;
  std::string state_text;

  bool stopped() const { return state == ipod::IPOD_PLAYERSTATE_STOPPED; }
  std::string progress() const {
    return Clock(position_ms / 1000) + " of " + Clock(length_ms / 1000);
  }
};

// The texts about the track that is loaded.
struct TrackTexts {
  std::string title;
  std::string chapter;
  std::string length;
  std::string position;
  bool video = false;
};

Player ReadPlayer(LegacySession& session) {
  Player player;
  DisplayText state;
  session.Require(session.interface().getipodplayerstate(state.buffer()) != 0, "tell its state");
  session.Require(session.interface().GetIpodPlayerStateNumEx(&player.state, &player.length_ms,
                                                              &player.position_ms) != 0,
                  "tell its play status");
  player.state_text = state.text();
  return player;
}

TrackTexts ReadTrack(LegacySession& session) {
  ipod& docked = session.interface();
  DisplayText title;
  DisplayText chapter;
  int video = 0;
  session.Require(docked.getindexedplayingtracktitle(title.buffer()) != 0,
                  "tell what it is playing");
  // These two texts are not times; they show the request that was sent last.
  const wchar_t* const length = docked.getipodtracklength();
  const wchar_t* const position = docked.getipodtrackposition();
  // Few tracks have chapters; for the others only the text is shown.
  docked.getipodcurrentplayingtrackchaptername(chapter.buffer());
  session.Require(docked.iscurrentvideo(&video) != 0, "tell whether it is playing a video");
  return {title.text(), chapter.text(), Utf8(length), Utf8(position), video != 0};
}

}  // namespace

void ShowLegacyPlaying(Output& output, LegacySession& session) {
  const Player player = ReadPlayer(session);
  nlohmann::ordered_json json = {{"state", player.state_text}};
  output.Fact("State", player.state_text);
  if (player.stopped()) {
    output.Object(json);
    return;
  }
  const TrackTexts track = ReadTrack(session);
  json["title"] = track.title;
  json["chapter"] = track.chapter;
  json["video"] = track.video;
  json["track_length"] = track.length;
  json["track_position"] = track.position;
  json["length_ms"] = player.length_ms;
  json["position_ms"] = player.position_ms;
  output.Fact("Title", Printable(track.title));
  output.Fact("Chapter", Printable(track.chapter));
  output.Fact("Video", track.video ? "yes" : "no");
  output.Fact("Track length", track.length);
  output.Fact("Track position", track.position);
  output.Fact("Time", player.progress());
  output.Object(json);
}

bool AwaitPlayerState(LegacySession& session, unsigned char wanted) {
  for (int look = 0; look < kStateLooks; ++look) {
    unsigned char state = 0;
    const bool read = session.interface().getipodplayerstatenum(&state) != 0;
    if (!read) session.RequireAnswers();
    if (read && state == wanted) return true;
    if (!PauseMs(kStateLookMs)) break;
  }
  StopIfInterrupted();
  return false;
}

void RunLegacyNow(const Context& context, LegacySession& session) {
  ShowLegacyPlaying(context.output, session);
}

}  // namespace ipodctl
