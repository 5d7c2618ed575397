// SPDX-License-Identifier: MIT
// Starts and stops the player through either interface.
#include "playing/control.h"

#include "console/text.h"
#include "library/legacy_library.h"
#include "library/session_library.h"
#include "library/walk.h"
#include "playing/modes.h"
#include "playing/now.h"

namespace ipodctl {

namespace {

// By its title and, while the list is played in its order, its place in it: titles repeat. Where
// the iPod does not tell titles, by its place alone.
bool IsPlaying(Session& session, NowPlaying* now, const ListedRecord& wanted) {
  if (now->state != kPlaying || !now->index) return false;
  const std::optional<std::string> title = ReadTitle(session, now);
  if (title && *title != wanted.name) return false;
  return now->index == wanted.index || (title && ReadShuffle(session) != "off");
}

}  // namespace

NowPlaying PlayListed(Session& session, const ListedRecord& wanted) {
  const bool accepted = session.ipod().Select(kTracks, wanted.index) != 0;
  const Press press = {accepted, session.Last()};
  NowPlaying now = AwaitPlayer(session, [&](NowPlaying& seen) {
    return press.refused() || IsPlaying(session, &seen, wanted);
  });
  if (IsPlaying(session, &now, wanted)) return now;
  const std::string track =
      "track " + std::to_string(wanted.index + 1) + ", '" + ShownName(wanted.name) + "'";
  FailPress(session, press, "play " + track, now, accepted ? ", not playing " + track : "");
}

NowPlaying PressFor(Session& session, unsigned char button, unsigned char state,
                    const std::string& what, const std::string& advice) {
  const Press press = PressButton(session, button);
  const NowPlaying now = AwaitPlayer(
      session, [&](const NowPlaying& seen) { return press.refused() || seen.state == state; });
  if (now.state != state) FailPress(session, press, what, now, advice);
  return now;
}

void RunPlay(const Context& context, Session& session) {
  NowPlaying now;
  if (context.options.path.empty()) {
    now = PressFor(session, kPlayButton, kPlaying, "play", "; name what to play");
  } else {
    SessionLibrary library(session);
    LibraryWalk walk(library, context.options.hierarchy);
    now = PlayListed(session, FindTrack(walk, context.options.path));
  }
  ReadTexts(session, &now);
  ShowNowPlaying(context.output, now);
}

void RunPlayControl(const Context& context, Session& session) {
  NowPlaying now = context.options.command == "pause"
                       ? PressFor(session, kPauseButton, kPaused, "pause")
                       : PressFor(session, kStopButton, kStopped, "stop");
  ReadTexts(session, &now);
  ShowNowPlaying(context.output, now);
}

void RunLegacyPlay(const Context& context, LegacySession& session) {
  if (context.options.path.empty()) {
    session.Require(session.interface().command_playcontrol(ipod::IPOD_PLAYCONTROL_PLAY) != 0,
                    "play; name what to play");
  } else {
    LegacyLibrary library(session);
    LibraryWalk walk(library, context.options.hierarchy);
    const ListedRecord wanted = FindTrack(walk, context.options.path);
    session.Require(library.PlayTrack(wanted.index), "play track " + std::to_string(wanted.index));
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
