// SPDX-License-Identifier: MIT
// What is playing, as the legacy interface tells it.
#pragma once

#include "console/output.h"
#include "ipod/legacy_session.h"

namespace ipodctl {

/// Shows the player's display texts.
void ShowLegacyPlaying(Output& output, LegacySession& session);

/// Waits two seconds at most for the player to reach a state. @return whether it did
bool AwaitPlayerState(LegacySession& session, unsigned char wanted);

}  // namespace ipodctl
