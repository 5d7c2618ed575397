// SPDX-License-Identifier: MIT
// ipodctl --legacy now: what is playing.
#include "legacy/legacy_commands.h"
#include "legacy/playing.h"

namespace ipodctl {

void RunLegacyNow(const Context& context, LegacySession& session) {
  ShowLegacyPlaying(context.output, session);
}

}  // namespace ipodctl
