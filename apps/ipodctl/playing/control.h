// SPDX-License-Identifier: MIT
// The commands that press the player's buttons: play, pause, stop, next, previous, seek.
#pragma once

#include "context.h"
#include "ipod/legacy_session.h"
#include "ipod/session.h"

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

/// Starts what the options' path leads to; without a path goes on with what was playing.
void RunPlay(const Context& context, Session& session);
void RunLegacyPlay(const Context& context, LegacySession& session);

/// pause, stop, next and previous: one button each.
void RunPlayControl(const Context& context, Session& session);
void RunLegacyPause(const Context& context, LegacySession& session);

/// Winds for a while (seek.cpp).
void RunSeek(const Context& context, Session& session);

}  // namespace ipodctl
