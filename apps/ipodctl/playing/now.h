// SPDX-License-Identifier: MIT
// ipodctl now: what is playing, as text and as JSON, through either interface.
#pragma once

#include <cstdint>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>

#include "context.h"
#include "ipod/legacy_session.h"
#include "ipod/session.h"

namespace ipodctl {

// States of the player, by their numbers on the wire.
constexpr unsigned char kStopped = 0;
constexpr unsigned char kPlaying = 1;
constexpr unsigned char kPaused = 2;

struct NowPlaying {
  unsigned char state = kStopped;
  std::optional<unsigned long> index;  // in the now-playing list; none when nothing is loaded
  std::string title;
  std::string artist;
  std::string album;
  bool video = false;
  std::uint64_t length_ms = 0;
  std::uint64_t position_ms = 0;
};

/// "stopped", "playing", "paused", "winding forward" ...
std::string StateName(unsigned char state);

NowPlaying ReadNowPlaying(Session& session);
/// Reads state, length and position again, and the texts when the place in the list has changed.
void Refresh(Session& session, NowPlaying* now);
/// Waits some seconds for the player to reach `state` (an iPod takes its time to start a track).
NowPlaying WaitForState(Session& session, unsigned char state);

nlohmann::ordered_json ToJson(const NowPlaying& now);
/// "0:12 of 3:45"
std::string Progress(const NowPlaying& now);
/// "Artist - Album", or the one of them that is known.
std::string Origin(const NowPlaying& now);
void ShowNowPlaying(Output& output, const NowPlaying& now);

void RunNow(const Context& context, Session& session);

// Through the legacy interface (legacy_now.cpp).

/// Shows the player's display texts.
void ShowLegacyPlaying(Output& output, LegacySession& session);

/// Waits two seconds at most for the player to reach a state. @return whether it did
bool AwaitPlayerState(LegacySession& session, unsigned char wanted);

void RunLegacyNow(const Context& context, LegacySession& session);

}  // namespace ipodctl
