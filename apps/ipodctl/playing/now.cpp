// SPDX-License-Identifier: MIT
// Reads the player and shows it, once or for as long as wanted.
#include "playing/now.h"

#include <nlohmann/json.hpp>

#include "console/interrupt.h"
#include "console/text.h"
#include "playing/follower.h"
#include "playing/playback_view.h"

namespace ipodctl {

namespace {

constexpr unsigned long kNoTrack = 0xFFFFFFFF;
constexpr std::size_t kTextCapacity = 256;
constexpr int kStateLooks = 20;
constexpr unsigned kStateLookMs = 100;

void ReadTexts(Session& session, NowPlaying* now) {
  wchar_t title[kTextCapacity] = {};
  wchar_t artist[kTextCapacity] = {};
  wchar_t album[kTextCapacity] = {};
  unsigned long index = 0;
  int video = 0;
  session.Require(session.ipod().GetPlayInfo(&index, &video, title, kTextCapacity, artist,
                                             kTextCapacity, album, kTextCapacity) != 0,
                  "tell what it is playing");
  now->index = index;
  now->video = video != 0;
  now->title = Utf8(title);
  now->artist = Utf8(artist);
  now->album = Utf8(album);
}

void ReadStatus(Session& session, NowPlaying* now) {
  unsigned long length_ms = 0;
  unsigned long position_ms = 0;
  session.Require(session.ipod().Command_GetPlayStatus(&now->state, &length_ms, &position_ms) != 0,
                  "tell its play status");
  now->length_ms = length_ms;
  now->position_ms = position_ms;
}

constexpr unsigned kPlainLineEverySeconds = 10;

}  // namespace

std::string StateName(unsigned char state) {
  switch (state) {
    case 0:
      return "stopped";
    case 1:
      return "playing";
    case 2:
      return "paused";
    case 3:
      return "winding forward";
    case 4:
      return "winding back";
    case 5:
      return "ending winding";
    default:
      return "state " + std::to_string(state);
  }
}

NowPlaying ReadNowPlaying(Session& session) {
  NowPlaying now;
  Refresh(session, &now);
  return now;
}

void Refresh(Session& session, NowPlaying* now) {
  ReadStatus(session, now);
  if (now->state == kStopped) {
    NowPlaying stopped;
    *now = stopped;
    return;
  }
  unsigned long index = kNoTrack;
  session.Require(session.ipod().Command_GetCurrentPlayingTrackIndex(&index) != 0,
                  "tell which track it is playing");
  // Without a track the iPod refuses each text, after seconds each.
  if (index == kNoTrack) {
    now->index.reset();
  } else if (now->index != index) {
    ReadTexts(session, now);
  }
}

NowPlaying WaitForState(Session& session, unsigned char state) {
  NowPlaying now;
  for (int look = 0; look < kStateLooks; ++look) {
    ReadStatus(session, &now);
    if (now.state == state || !PauseMs(kStateLookMs)) break;
  }
  return ReadNowPlaying(session);
}

nlohmann::ordered_json ToJson(const NowPlaying& now) {
  nlohmann::ordered_json json;
  json["state"] = StateName(now.state);
  if (!now.index) return json;
  json["index"] = *now.index;
  json["title"] = now.title;
  json["artist"] = now.artist;
  json["album"] = now.album;
  json["video"] = now.video;
  json["length_ms"] = now.length_ms;
  json["position_ms"] = now.position_ms;
  return json;
}

std::string Progress(const NowPlaying& now) {
  return Clock(now.position_ms / 1000) + " of " + Clock(now.length_ms / 1000);
}

std::string Origin(const NowPlaying& now) {
  if (now.artist.empty() || now.album.empty()) return Printable(now.artist + now.album);
  return Printable(now.artist) + " - " + Printable(now.album);
}

void ShowNowPlaying(Output& output, const NowPlaying& now) {
  output.Object(ToJson(now));
  if (!now.index) {
    output.Line(now.state == kStopped ? "Stopped" : "Nothing is playing");
    return;
  }
  std::string state = StateName(now.state);
  state.front() = static_cast<char>(state.front() - 'a' + 'A');
  output.Line(Padded(state, 7) + "  " + output.Bold(Printable(now.title)) +
              (now.video ? "  (video)" : ""));
  if (!Origin(now).empty()) output.Line("         " + Origin(now));
  output.Line("         " + Progress(now) + ", track " + std::to_string(*now.index + 1) +
              " of the list");
}

void RunNow(const Context& context, Session& session) {
  if (!context.options.follow) {
    ShowNowPlaying(context.output, ReadNowPlaying(session));
    return;
  }
  PlaybackView view(context.output, kPlainLineEverySeconds);
  Follower follower(session,
                    [&view](const char* event, const NowPlaying& now) { view.Show(event, now); });
  std::optional<unsigned> duration_ms;
  if (context.options.follow_seconds) duration_ms = *context.options.follow_seconds * 1000;
  follower.Run(duration_ms);
}

}  // namespace ipodctl
