// SPDX-License-Identifier: MIT
// ipodctl --legacy play: starts a track, or goes on with what was playing.
#include "legacy_commands.h"
#include "library/legacy_library.h"
#include "library/walk.h"
#include "playing/legacy_now.h"

namespace ipodctl {

void RunLegacyPlay(const Context& context, LegacySession& session) {
  if (context.options.path.empty()) {
    session.Require(session.interface().command_playcontrol(ipod::IPOD_PLAYCONTROL_PLAY) != 0,
                    "play; name what to play");
  } else {
    LegacyLibrary library(session);
    LibraryWalk walk(library, context.options.hierarchy);
    PlayPath(walk, context.options.path);
  }
  // An iPod that did not answer counts as one that plays, so the state has the last word.
  session.Require(AwaitPlayerState(session, ipod::IPOD_PLAYERSTATE_PLAYING), "play");
  ShowLegacyPlaying(context.output, session);
}

}  // namespace ipodctl
