// SPDX-License-Identifier: MIT
// Starts and stops the player through either interface.
#include "playing/control.h"

#include "console/failure.h"
#include "console/interrupt.h"
#include "console/text.h"
#include "library/categories.h"
#include "library/legacy_library.h"
#include "library/session_library.h"
#include "library/walk.h"
#include "playing/modes.h"
#include "playing/now.h"

namespace ipodctl {

namespace {

// Through the current interface alone; the legacy one has no such question.
bool MayShuffle(Session& session) { return ReadShuffle(session) != "off"; }
bool MayShuffle(LegacySession& /*session*/) { return true; }

// By its title and, while the list is played in its order, its place in it: titles repeat. Where
// names cannot be read, by its place alone.
template <class AnySession>
bool IsPlaying(AnySession& session, NowPlaying* now, const ListedRecord& wanted) {
  if (now->state != kPlaying || !now->index) return false;
  const std::optional<std::string> title = ReadTitle(session, now);
  if (title && wanted.name && *title != *wanted.name) return false;
  if (now->index == wanted.index) return true;
  return title && wanted.name && MayShuffle(session);
}

std::string Described(const ListedRecord& track) {
  return "track " + std::to_string(track.index + 1) +
         (track.name ? ", '" + ShownName(*track.name) + "'" : "");
}

}  // namespace

NowPlaying PlayListed(Session& session, const ListedRecord& wanted) {
  const bool accepted = session.ipod().Select(kTracks, wanted.index) != 0;
  const Press press = {accepted, session.Last()};
  NowPlaying now = AwaitPlayer(session, [&](NowPlaying& seen) {
    return press.refused() || IsPlaying(session, &seen, wanted);
  });
  if (IsPlaying(session, &now, wanted)) return now;
  ReadTitle(session, &now);
  FailPress(session, press, "play " + Described(wanted), now,
            accepted ? ", not playing " + Described(wanted) : "");
}

NowPlaying PressFor(Session& session, unsigned char button, unsigned char state,
                    const std::string& what, const std::string& advice) {
  const Press press = PressButton(session, button);
  const NowPlaying now = AwaitPlayer(session, [&](const NowPlaying& seen) {
    return press.refused() || !press.pressed() || seen.state == state;
  });
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

namespace {

// The legacy interface counts a command without an answer as accepted, and one whose answer was
// lost as refused, so the state decides.
[[noreturn]] void FailLegacy(bool accepted, const std::string& what, const NowPlaying& now,
                             const std::string& instead = {}) {
  StopIfInterrupted();
  if (accepted) {
    throw CommandFailure(kFailed, "the iPod did not refuse, but is " + WhatItDoes(now) + instead);
  }
  throw CommandFailure(
      kFailed, "the iPod did not confirm the command to " + what + "; it is " + WhatItDoes(now));
}

// One button pauses what plays and goes on with what is paused, on every iPod; it is pressed only
// where it leads to `state`. The interface sends it once, so one that has got lost is pressed
// again.
void PlayOrPause(LegacySession& session, unsigned char state, const std::string& what) {
  constexpr int kAttempts = 3;
  NowPlaying now = LookAtPlayer(session);
  bool accepted = true;
  for (int attempt = 0; accepted && now.state != state && attempt < kAttempts; ++attempt) {
    accepted = session.interface().command_playcontrol(
                   static_cast<unsigned char>(ipod::IPOD_PLAYCONTROL_PLAYPAUSE)) != 0;
    now = AwaitPlayer(session, [&](NowPlaying& seen) { return !accepted || seen.state == state; });
  }
  if (now.state != state) FailLegacy(accepted, what, now);
}

NowPlaying PlayListed(LegacySession& session, LegacyLibrary& library, const ListedRecord& wanted) {
  // What was playing goes silent first, as the interface does it.
  session.interface().command_playcontrol(static_cast<unsigned char>(ipod::IPOD_PLAYCONTROL_STOP));
  const bool accepted = library.SelectRecord(wanted.index);
  NowPlaying now = AwaitPlayer(session, [&](NowPlaying& seen) {
    return library.refused() || IsPlaying(session, &seen, wanted);
  });
  if (IsPlaying(session, &now, wanted)) return now;
  ReadTitle(session, &now);
  if (!accepted) library.Require(false, "play " + Described(wanted) + "; it is " + WhatItDoes(now));
  FailLegacy(accepted, "", now, ", not playing " + Described(wanted));
}

}  // namespace

void RunLegacyPlay(const Context& context, LegacySession& session) {
  if (context.options.path.empty()) {
    PlayOrPause(session, kPlaying, "play");
  } else {
    LegacyLibrary library(session);
    LibraryWalk walk(library, context.options.hierarchy);
    PlayListed(session, library, FindTrack(walk, context.options.path));
  }
  ShowLegacyPlaying(context.output, session);
}

void RunLegacyPause(const Context& context, LegacySession& session) {
  if (LookAtPlayer(session).state == kPlaying) PlayOrPause(session, kPaused, "pause");
  ShowLegacyPlaying(context.output, session);
}

}  // namespace ipodctl
