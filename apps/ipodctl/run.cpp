// SPDX-License-Identifier: MIT
// Finds the command by its name and gives it a session that is ready for it.
#include "run.h"

#include "console/failure.h"
#include "console/interrupt.h"
#include "ipod/info.h"
#include "library/browse.h"
#include "playing/control.h"
#include "playing/modes.h"
#include "playing/now.h"
#include "selftest.h"
#include "settings/prefs.h"
#include "settings/userdata.h"
#include "tour.h"
#include "workout/workout.h"

namespace ipodctl {

namespace {

template <class AnySession>
struct Command {
  const char* name;
  void (*run)(const Context& context, AnySession& session);
  bool needs_remote_ui;
};

// A command that makes its session itself, or none.
struct OwnSessionCommand {
  const char* name;
  void (*run)(const Context& context);
};

constexpr Command<Session> kCommands[] = {
    {"info", RunInfo, false},         {"browse", RunBrowse, true},    {"play", RunPlay, true},
    {"pause", RunPlayControl, true},  {"stop", RunPlayControl, true}, {"next", RunSkip, true},
    {"previous", RunSkip, true},      {"seek", RunSeek, true},        {"now", RunNow, true},
    {"shuffle", RunShuffle, true},    {"repeat", RunRepeat, true},    {"prefs", RunPrefs, false},
    {"userdata", RunUserdata, false},
};
constexpr OwnSessionCommand kOwnSessionCommands[] = {
    {"tour", RunTour},
    {"workout", RunWorkout},
};

constexpr Command<LegacySession> kLegacyCommands[] = {
    {"info", RunLegacyInfo, false},       {"browse", RunLegacyBrowse, true},
    {"play", RunLegacyPlay, true},        {"pause", RunLegacyPause, true},
    {"now", RunLegacyNow, true},          {"prefs", RunLegacyPrefs, false},
    {"workout", RunLegacyWorkout, false},
};
constexpr OwnSessionCommand kSelfTest = {"selftest", RunSelfTest};

// What a command that was cut short has not asked for it shows as not told.
void RequireWhole(const CtrlC& ctrl_c, const Options& options) {
  if (ctrl_c.cut_short() && !options.follow) StopIfInterrupted();
}

template <class AnySession>
void RunIn(AnySession& session, const Command<AnySession>& command, const Context& context) {
  session.Identify();
  if (command.needs_remote_ui) session.EnterRemoteUi();
  command.run(context, session);
  RequireWhole(session.ctrl_c(), context.options);
}

void RunLegacyCommand(const Context& context) {
  const std::string& name = context.options.command;
  if (name == kSelfTest.name) {
    kSelfTest.run(context);
    return;
  }
  for (const Command<LegacySession>& command : kLegacyCommands) {
    if (name != command.name) continue;
    LegacySession session(context.options, context.dock);
    RunIn(session, command, context);
    return;
  }
  throw CommandFailure(kUsage, "there is no legacy command '" + name + "'");
}

}  // namespace

void RunCommand(const Context& context) {
  if (context.options.legacy) {
    RunLegacyCommand(context);
    return;
  }
  const std::string& name = context.options.command;
  for (const OwnSessionCommand& command : kOwnSessionCommands) {
    if (name != command.name) continue;
    command.run(context);
    return;
  }
  for (const Command<Session>& command : kCommands) {
    if (name != command.name) continue;
    Session session(context.options, context.dock);
    RunIn(session, command, context);
    return;
  }
  throw CommandFailure(kUsage, "there is no command '" + name + "'");
}

bool IsLegacyCommand(const std::string& name) {
  for (const Command<LegacySession>& command : kLegacyCommands) {
    if (name == command.name) return true;
  }
  return name == kSelfTest.name;
}

std::string LegacyCommandNames() {
  std::string names;
  for (const Command<LegacySession>& command : kLegacyCommands) {
    names += std::string(command.name) + ", ";
  }
  names.erase(names.size() - 2);
  return names + " and " + kSelfTest.name;
}

}  // namespace ipodctl
