// SPDX-License-Identifier: MIT
// The commands that go through the legacy interface.
#pragma once

#include <string>

#include "commands.h"
#include "ipod/legacy_session.h"

namespace ipodctl {

/// Commands end by returning, or by throwing a CommandFailure.
void RunLegacyInfo(const Context& context, LegacySession& session);
void RunLegacyBrowse(const Context& context, LegacySession& session);
void RunLegacyPlay(const Context& context, LegacySession& session);
void RunLegacyPause(const Context& context, LegacySession& session);
void RunLegacyNow(const Context& context, LegacySession& session);
void RunLegacyPrefs(const Context& context, LegacySession& session);
void RunLegacyWorkout(const Context& context, LegacySession& session);
/// Opens and closes the port itself.
void RunSelfTest(const Context& context);

/// Runs the command that the options name.
void RunLegacyCommand(const Context& context);
/// Whether a command goes through the legacy interface when asked to.
bool IsLegacyCommand(const std::string& name);
/// "info, browse, ... and selftest", for messages and help.
std::string LegacyCommandNames();

}  // namespace ipodctl
