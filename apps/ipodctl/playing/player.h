// SPDX-License-Identifier: MIT
// The iPod's player as it is: read once, or looked at until it has got somewhere.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "ipod/legacy_session.h"
#include "ipod/session.h"
#include "ipodcomm/ipod.h"

namespace ipodctl {

// States of the player, by their numbers on the wire.
constexpr unsigned char kStopped = 0;
constexpr unsigned char kPlaying = 1;
constexpr unsigned char kPaused = 2;
constexpr unsigned char kWindingForward = 3;
constexpr unsigned char kWindingBack = 4;

struct NowPlaying {
  unsigned char state = kStopped;
  std::optional<unsigned long> index;  // in the now-playing list; none when nothing is loaded
  // None when they were not read, or the iPod does not tell them.
  std::optional<std::string> title;
  std::optional<std::string> artist;
  std::optional<std::string> album;
  std::optional<std::string> chapter;  // of the few tracks that have some
  std::optional<bool> video;
  std::uint64_t length_ms = 0;
  std::uint64_t position_ms = 0;
};

/// "stopped", "playing", "paused", "winding forward" ...
std::string StateName(unsigned char state);
/// "stopped", "paused on track 1", "playing track 3, 'Bridges'"; tracks are counted from 1.
std::string WhatItDoes(const NowPlaying& now);

// Each throws a CommandFailure when the iPod does not tell, but for texts that it refuses to tell.

/// State, times and place in the list.
NowPlaying LookAtPlayer(Session& session);
/// Reads the title unless it has been read. None when the iPod refuses to tell it.
std::optional<std::string> ReadTitle(Session& session, NowPlaying* now);
/// Reads what LookAtPlayer leaves out.
void ReadTexts(Session& session, NowPlaying* now);
/// All of it.
NowPlaying ReadNowPlaying(Session& session);
/// Reads state, length and position again, and the texts when the place in the list has changed.
void Refresh(Session& session, NowPlaying* now);
// The same through the legacy interface (legacy_player.cpp).
NowPlaying LookAtPlayer(LegacySession& session);
/// The state in a whole answer to StatusQuestion.
unsigned char StateIn(const LegacyAnswer& status);
std::optional<std::string> ReadTitle(LegacySession& session, NowPlaying* now);

/// How many tracks the now-playing list has; none when the iPod does not tell.
std::optional<unsigned long> CountPlayingTracks(Session& session);

/// Looks at the player until `there` is true, some two seconds at most (an iPod takes its time to
/// start a track). @return the last look
NowPlaying AwaitLook(const std::function<NowPlaying()>& look,
                     const std::function<bool(NowPlaying& now)>& there);
template <class AnySession>
NowPlaying AwaitPlayer(AnySession& session, const std::function<bool(NowPlaying& now)>& there) {
  return AwaitLook([&session] { return LookAtPlayer(session); }, there);
}

/// Whether a command was accepted by the iPod, and what it answered if not.
struct Press {
  bool accepted;
  tagIPOD_EXCHANGE exchange;

  bool refused() const { return !accepted && exchange.result == IPOD_EXCHANGE_REFUSED; }
  /// The library presses no button that would do the opposite: it has looked at the player then.
  bool pressed() const { return exchange.command != ipod::IPOD_COMMAND_GETPLAYSTATUS; }
};
Press PressButton(Session& session, unsigned char button);
/// Throws the CommandFailure of a command that has not had its effect: what the iPod said, and what
/// it does instead. @param what the rest of "the iPod refused to ..."
[[noreturn]] void FailPress(Session& session, const Press& press, const std::string& what,
                            const NowPlaying& now, const std::string& advice = {});

}  // namespace ipodctl
