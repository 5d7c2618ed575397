// SPDX-License-Identifier: MIT
// ipodctl --legacy now: what is playing.
#include "legacy_commands.h"
#include "playing/legacy_now.h"

namespace ipodctl {

void RunLegacyNow(const Context& context, LegacySession& session) {
  ShowLegacyPlaying(context.output, session);
}

}  // namespace ipodctl
