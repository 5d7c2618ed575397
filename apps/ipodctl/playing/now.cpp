// SPDX-License-Identifier: MIT
// Reads the player and shows it, once or for as long as wanted.
#include "playing/now.h"

#include <cstdio>
#include <memory>
#include <nlohmann/json.hpp>

#include "console/failure.h"
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
  output.Line(Padded(state, 7) + "  " + output.Bold(ToldName(now.title)) +
              (now.video.value_or(false) ? "  (video)" : ""));
  if (!Origin(now).empty()) output.Line("         " + Origin(now));
  output.Line("         " + Progress(now) + ", track " + std::to_string(*now.index + 1) +
              " of the list");
}

namespace {

constexpr unsigned kRedockLookMs = 1000;

// A session with the iPod once it is docked again. None when interrupted before.
std::unique_ptr<Session> AwaitIpod(const Context& context) {
  while (PauseMs(kRedockLookMs)) {
    try {
      auto session = std::make_unique<Session>(context.options, context.dock);
      session->Identify();
      session->EnterRemoteUi();
      return session;
    } catch (const CommandFailure& failure) {
      if (failure.status() == kIpodTooOld) throw;
    }
  }
  return nullptr;
}

// Follows until Ctrl-C, also when the iPod is taken out of the dock meanwhile.
void FollowOn(const Context& context, Session& first, const Follower::Show& show) {
  std::unique_ptr<Session> later;
  for (Session* session = &first; session != nullptr; session = later.get()) {
    try {
      Follower(*session, show).Run(std::nullopt);
      return;
    } catch (const CommandFailure& failure) {
      if (Interrupted() || session->Answers()) throw;
      session->Close();
      std::fprintf(stderr, "ipodctl: %s; waiting until it is docked again.\n", failure.what());
    }
    later = AwaitIpod(context);
  }
}

}  // namespace

void RunNow(const Context& context, Session& session) {
  const Options& options = context.options;
  if (!options.follow) {
    ShowNowPlaying(context.output, ReadNowPlaying(session));
    return;
  }
  PlaybackView view(context.output, kPlainLineEverySeconds);
  const Follower::Show show = [&view](const char* event, const NowPlaying& now) {
    view.Show(event, now);
  };
  if (options.follow_seconds) {
    Follower(session, show).Run(*options.follow_seconds * 1000);
  } else if (options.follow_once) {
    Follower(session, show).Run(std::nullopt);
  } else {
    FollowOn(context, session, show);
  }
}

}  // namespace ipodctl
