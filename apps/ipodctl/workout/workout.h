// SPDX-License-Identifier: MIT
// ipodctl workout: logs a workout on the iPod while it goes on, through either interface.
#pragma once

#include "context.h"
#include "ipod/legacy_session.h"
#include "workout/recording.h"

namespace ipodctl {

/// The workout that the options describe, read from a file or made up. Throws a CommandFailure when
/// the file cannot be read.
Recording RecordingFor(const WorkoutOptions& options);

/// Opens and identifies a session itself.
void RunWorkout(const Context& context);
void RunLegacyWorkout(const Context& context, LegacySession& session);

}  // namespace ipodctl
