// SPDX-License-Identifier: MIT
// ipodctl play: starts a track, or goes on with what was playing.
#include "commands.h"
#include "library/session_library.h"
#include "library/walk.h"
#include "playing/now_playing.h"

namespace ipodctl {

namespace {

constexpr unsigned char kPlay = 10;
constexpr unsigned char kPlaying = 1;

}  // namespace

void RunPlay(const Context& context, Session& session) {
  if (context.options.path.empty()) {
    session.Require(session.ipod().Command_PlayControl(kPlay) != 0, "play; name what to play");
  } else {
    SessionLibrary library(session);
    LibraryWalk walk(library, context.options.hierarchy);
    PlayPath(walk, context.options.path);
  }
  ShowNowPlaying(context.output, WaitForState(session, kPlaying));
}

}  // namespace ipodctl
