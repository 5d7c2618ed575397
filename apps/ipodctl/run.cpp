// SPDX-License-Identifier: MIT
// Finds the command by its name and gives it a session that is ready for it.
#include <iterator>

#include "commands.h"
#include "console/failure.h"
#include "legacy_commands.h"

namespace ipodctl {

namespace {

struct Command {
  const char* name;
  void (*run)(const Context& context, Session& session);
  bool needs_remote_ui;
};

constexpr Command kCommands[] = {
    {"info", RunInfo, false},
    {"browse", RunBrowse, true},
    {"play", RunPlay, true},
    {"pause", RunPlayControl, true},
    {"stop", RunPlayControl, true},
    {"next", RunPlayControl, true},
    {"previous", RunPlayControl, true},
    {"seek", RunSeek, true},
    {"now", RunNow, true},
    {"shuffle", RunShuffle, true},
    {"repeat", RunRepeat, true},
    {"prefs", RunPrefs, false},
    {"userdata", RunUserdata, false},
};

}  // namespace

void RunCommand(const Context& context) {
  if (context.options.legacy) {
    RunLegacyCommand(context);
    return;
  }
  if (context.options.command == "tour") {
    RunTour(context);
    return;
  }
  if (context.options.command == "workout") {
    RunWorkout(context);
    return;
  }
  for (const Command& command : kCommands) {
    if (context.options.command != command.name) continue;
    Session session(context.options, context.dock);
    session.Identify();
    if (command.needs_remote_ui) session.EnterRemoteUi();
    command.run(context, session);
    return;
  }
  throw CommandFailure(kUsage, "there is no command '" + context.options.command + "'");
}

}  // namespace ipodctl
