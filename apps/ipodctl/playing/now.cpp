// SPDX-License-Identifier: MIT
// ipodctl now: what is playing, once or for as long as wanted.
#include "commands.h"
#include "playing/follower.h"
#include "playing/now_playing.h"
#include "playing/playback_view.h"

namespace ipodctl {

namespace {

constexpr unsigned kPlainLineEverySeconds = 10;

}  // namespace

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
