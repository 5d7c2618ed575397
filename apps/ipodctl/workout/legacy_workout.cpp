// SPDX-License-Identifier: MIT
// ipodctl --legacy workout: logs a workout on the iPod while it goes on.
#include "legacy_commands.h"
#include "workout/legacy_writer.h"

namespace ipodctl {

void RunLegacyWorkout(const Context& context, LegacySession& session) {
  LegacyWorkoutLog log(session, context.output, context.dock);
  LogWorkout(context, RecordingFor(context.options.workout), log);
}

}  // namespace ipodctl
