// SPDX-License-Identifier: MIT
// The commands that press the player's buttons: play, pause, stop, next, previous, seek. Each looks
// whether it had its effect, and fails with what is true instead: an iPod may accept a command and
// ignore it, or carry it out although its answer was lost.
#pragma once

#include "context.h"
#include "ipod/legacy_session.h"
#include "ipod/session.h"
#include "library/walk.h"
#include "playing/player.h"

namespace ipodctl {

// Buttons, by their numbers on the wire.
constexpr unsigned char kStopButton = 2;
constexpr unsigned char kNextButton = 3;
constexpr unsigned char kPreviousButton = 4;
constexpr unsigned char kForwardButton = 5;
constexpr unsigned char kBackButton = 6;
constexpr unsigned char kEndWindingButton = 7;
constexpr unsigned char kPlayButton = 10;
constexpr unsigned char kPauseButton = 11;

/// Plays a track of the list that was walked to last, and waits until it plays.
NowPlaying PlayListed(Session& session, const ListedRecord& wanted);
/// Presses a button and waits for the state that it leads to. @param what it is to do
NowPlaying PressFor(Session& session, unsigned char button, unsigned char state,
                    const std::string& what, const std::string& advice = {});
/// Skips to the next or the previous track, or this one's start (skip.cpp).
NowPlaying Skip(Session& session, bool forward);

/// Starts what the options' path leads to; without a path goes on with what was playing.
void RunPlay(const Context& context, Session& session);
void RunLegacyPlay(const Context& context, LegacySession& session);

/// pause and stop
void RunPlayControl(const Context& context, Session& session);
void RunLegacyPause(const Context& context, LegacySession& session);

/// next and previous
void RunSkip(const Context& context, Session& session);
/// Winds for a while (seek.cpp).
void RunSeek(const Context& context, Session& session);

}  // namespace ipodctl
