// SPDX-License-Identifier: MIT
// ipodctl prefs: shows or sets the iPod's preferences, through either interface.
#pragma once

#include "context.h"
#include "ipod/legacy_session.h"
#include "ipod/session.h"

namespace ipodctl {

void RunPrefs(const Context& context, Session& session);
/// Shows the legacy interface's display texts.
void RunLegacyPrefs(const Context& context, LegacySession& session);

}  // namespace ipodctl
