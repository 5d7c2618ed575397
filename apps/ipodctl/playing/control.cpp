// SPDX-License-Identifier: MIT
// Starts and stops the player through either interface.
#include "playing/control.h"

#include "library/legacy_library.h"
#include "library/session_library.h"
#include "library/walk.h"
#include "playing/now.h"

namespace ipodctl {

namespace {

struct Button {
  const char* command;
  unsigned char code;
  const char* what;
};

constexpr Button kButtons[] = {
    {"pause", kPauseButton, "pause; nothing may be playing"},
    {"stop", kStopButton, "stop"},
    {"next", kNextButton, "skip; nothing may be playing"},
    {"previous", kPreviousButton, "skip back; nothing may be playing"},
};

}  // namespace

void RunPlay(const Context& context, Session& session) {
  if (context.options.path.empty()) {
    session.Require(session.ipod().Command_PlayControl(kPlayButton) != 0,
                    "play; name what to play");
  } else {
    SessionLibrary library(session);
    LibraryWalk walk(library, context.options.hierarchy);
    PlayPath(walk, context.options.path);
  }
  ShowNowPlaying(context.output, WaitForState(session, kPlaying));
}

void RunPlayControl(const Context& context, Session& session) {
  for (const Button& button : kButtons) {
    if (context.options.command != button.command) continue;
    session.Require(session.ipod().Command_PlayControl(button.code) != 0, button.what);
  }
  ShowNowPlaying(context.output, ReadNowPlaying(session));
}

void RunLegacyPlay(const Context& context, LegacySession& session) {
  if (context.options.path.empty()) {
    session.Require(session.interface().command_playcontrol(ipod::IPOD_PLAYCONTROL_PLAY) != 0,
                    "play; name what to play");
  } else {
    LegacyLibrary library(session);
    LibraryWalk walk(library, context.options.hierarchy);
    PlayPath(walk, context.options.path);
  }
  // The interface counts an iPod that did not answer as playing, so the state decides.
  session.Require(AwaitPlayerState(session, ipod::IPOD_PLAYERSTATE_PLAYING), "play");
  ShowLegacyPlaying(context.output, session);
}

void RunLegacyPause(const Context& context, LegacySession& session) {
  session.Require(session.interface().pausestop() != 0, "pause");
  ShowLegacyPlaying(context.output, session);
}

}  // namespace ipodctl
