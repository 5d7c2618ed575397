// SPDX-License-Identifier: MIT
// Asks the player through the legacy interface.
#include "playing/player.h"

namespace ipodctl {

namespace {

constexpr unsigned long kNoTrack = 0xFFFFFFFF;
constexpr std::size_t kPositionAt = 4;
constexpr std::size_t kStateAt = 8;

}  // namespace

unsigned char StateIn(const LegacyAnswer& status) { return status.data.at(kStateAt); }

NowPlaying LookAtPlayer(LegacySession& session) {
  NowPlaying now;
  const LegacyAnswer status = session.Ask(StatusQuestion());
  session.Require(status, "tell its play status");
  now.state = StateIn(status);
  if (now.state == kStopped) return now;
  now.length_ms = status.Number(0);
  now.position_ms = status.Number(kPositionAt);
  const LegacyAnswer index =
      session.Ask({[](ipod& docked) { return docked.command_getcurrentplayingtrackindex(); },
                   ipod::IPOD_COMMAND_GETCURRENTPLAYINGTACKINDEX,
                   ipod::IPOD_COMMAND_RETURNCURRENTPLAYINGTRACKINDEX, 4});
  session.Require(index, "tell which track it is playing");
  if (index.Number(0) != kNoTrack) now.index = index.Number(0);
  return now;
}

// A title that is too long for the interface is lost like one that does not come.
std::optional<std::string> ReadTitle(LegacySession& session, NowPlaying* now) {
  if (now->title || !now->index) return now->title;
  const unsigned long track = *now->index;
  const LegacyAnswer title = session.Ask(
      {[track](ipod& docked) { return docked.command_getindexedplayingtracktitle(track); },
       ipod::IPOD_COMMAND_GETINDEXPLAYINGTRACKTITLE,
       ipod::IPOD_COMMAND_RETURNINDEXEDPLAYINGTRACKTITLE, 1, true});
  if (title.answered()) {
    now->title = TextIn(title);
  } else {
    session.RequireAnswers();
  }
  return now->title;
}

}  // namespace ipodctl
