// SPDX-License-Identifier: MIT
// The commands that press the player's buttons: play, pause, stop, next, previous, seek.
#pragma once

#include "context.h"
#include "ipod/legacy_session.h"
#include "ipod/session.h"

namespace ipodctl {

/// Starts what the options' path leads to; without a path goes on with what was playing.
void RunPlay(const Context& context, Session& session);
void RunLegacyPlay(const Context& context, LegacySession& session);

/// pause, stop, next and previous: one button each.
void RunPlayControl(const Context& context, Session& session);
void RunLegacyPause(const Context& context, LegacySession& session);

/// Winds for a while (seek.cpp).
void RunSeek(const Context& context, Session& session);

}  // namespace ipodctl
