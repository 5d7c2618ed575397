// SPDX-License-Identifier: MIT
// The program's commands.
#pragma once

#include "console/output.h"
#include "ipod/dock.h"
#include "ipod/session.h"
#include "options.h"
#include "workout/recording.h"

namespace ipodctl {

class WorkoutLog;

/// What every command works with. The session is identified unless the command does that itself.
struct Context {
  const Options& options;
  Dock& dock;
  Output& output;
};

/// Commands end by returning, or by throwing a CommandFailure.
void RunInfo(const Context& context, Session& session);
void RunBrowse(const Context& context, Session& session);
void RunPlay(const Context& context, Session& session);
void RunPlayControl(const Context& context, Session& session);  // pause, stop, next, previous
void RunSeek(const Context& context, Session& session);
void RunNow(const Context& context, Session& session);
void RunShuffle(const Context& context, Session& session);
void RunRepeat(const Context& context, Session& session);
void RunPrefs(const Context& context, Session& session);
void RunUserdata(const Context& context, Session& session);
void RunTour(const Context& context);
void RunWorkout(const Context& context);

/// The workout that the options describe. Throws a CommandFailure for an unusable file.
Recording RecordingFor(const WorkoutOptions& options);
/// Logs a workout while its clock goes on.
void LogWorkout(const Context& context, Recording recording, WorkoutLog& log);

/// Needs no iPod. Returns the exit status.
int RunReport(const Options& options, Output& output);

/// Runs the command that the options name.
void RunCommand(const Context& context);

}  // namespace ipodctl
