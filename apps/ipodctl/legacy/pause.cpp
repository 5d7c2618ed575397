// SPDX-License-Identifier: MIT
// ipodctl --legacy pause: pauses what plays.
#include "legacy/legacy_commands.h"
#include "legacy/playing.h"

namespace ipodctl {

void RunLegacyPause(const Context& context, LegacySession& session) {
  session.Require(session.interface().pausestop() != 0, "pause");
  ShowLegacyPlaying(context.output, session);
}

}  // namespace ipodctl
