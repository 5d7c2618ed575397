// SPDX-License-Identifier: MIT
// Finds the command by its name and gives it a session that is ready for it.
#include <iterator>

#include "console/failure.h"
#include "legacy_commands.h"

namespace ipodctl {

namespace {

constexpr const char* kSelfTest = "selftest";

struct Command {
  const char* name;
  void (*run)(const Context& context, LegacySession& session);
  bool needs_remote_ui;
};

constexpr Command kCommands[] = {
    {"info", RunLegacyInfo, false},       {"browse", RunLegacyBrowse, true},
    {"play", RunLegacyPlay, true},        {"pause", RunLegacyPause, true},
    {"now", RunLegacyNow, true},          {"prefs", RunLegacyPrefs, false},
    {"workout", RunLegacyWorkout, false},
};

}  // namespace

void RunLegacyCommand(const Context& context) {
  if (context.options.command == kSelfTest) {
    RunSelfTest(context);
    return;
  }
  for (const Command& command : kCommands) {
    if (context.options.command != command.name) continue;
    LegacySession session(context.dock);
    session.Identify();
    if (command.needs_remote_ui) session.EnterRemoteUi();
    command.run(context, session);
    return;
  }
  throw CommandFailure(kUsage, "there is no legacy command '" + context.options.command + "'");
}

bool IsLegacyCommand(const std::string& name) {
  for (const Command& command : kCommands) {
    if (name == command.name) return true;
  }
  return name == kSelfTest;
}

std::string LegacyCommandNames() {
  std::string names;
  for (const Command& command : kCommands) names += std::string(command.name) + ", ";
  names.erase(names.size() - 2);
  return names + " and " + kSelfTest;
}

}  // namespace ipodctl
