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

constexpr unsigned kPlainLineEverySeconds = 10;

}  // namespace

nlohmann::ordered_json ToJson(const NowPlaying& now) {
  nlohmann::ordered_json json;
  json["state"] = StateName(now.state);
  if (!now.index) return json;
  json["index"] = *now.index;
  if (now.title) json["title"] = *now.title;
  if (now.artist) json["artist"] = *now.artist;
  if (now.album) json["album"] = *now.album;
  if (now.chapter) json["chapter"] = *now.chapter;
  if (now.video) json["video"] = *now.video;
  json["length_ms"] = now.length_ms;
  json["position_ms"] = now.position_ms;
  return json;
}

std::string Progress(const NowPlaying& now) {
  return Clock(now.position_ms / 1000) + " of " + Clock(now.length_ms / 1000);
}

std::string Origin(const NowPlaying& now) {
  const std::string artist = Printable(now.artist.value_or(""));
  const std::string album = Printable(now.album.value_or(""));
  return artist + (artist.empty() || album.empty() ? "" : " - ") + album;
}

void ShowNowPlaying(Output& output, const NowPlaying& now) {
  output.Object(ToJson(now));
  if (!now.index) {
    output.Line(now.state == kStopped ? "Stopped" : "Nothing is playing");
    return;
  }
  std::string state = StateName(now.state);
  state.front() = static_cast<char>(state.front() - 'a' + 'A');
  output.Line(Padded(state, 7) + "  " + output.Bold(ShownName(now.title.value_or(""))) +
              (now.video.value_or(false) ? "  (video)" : ""));
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
