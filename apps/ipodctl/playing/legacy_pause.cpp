// SPDX-License-Identifier: MIT
// ipodctl --legacy pause: pauses what plays.
#include "legacy_commands.h"
#include "playing/legacy_now.h"

namespace ipodctl {

void RunLegacyPause(const Context& context, LegacySession& session) {
  session.Require(session.interface().pausestop() != 0, "pause");
  ShowLegacyPlaying(context.output, session);
}

}  // namespace ipodctl
