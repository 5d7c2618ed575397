// SPDX-License-Identifier: MIT
// ipodctl workout: logs a workout on the iPod while it goes on, through either interface.
#pragma once

#include "context.h"
#include "ipod/legacy_session.h"

namespace ipodctl {

/// Opens and identifies a session itself.
void RunWorkout(const Context& context);
void RunLegacyWorkout(const Context& context, LegacySession& session);

}  // namespace ipodctl
