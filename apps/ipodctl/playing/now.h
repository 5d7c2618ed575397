// SPDX-License-Identifier: MIT
// ipodctl now: what is playing, as text and as JSON, through either interface.
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>

#include "context.h"
#include "ipod/legacy_session.h"
#include "ipod/session.h"
#include "playing/player.h"

namespace ipodctl {

nlohmann::ordered_json ToJson(const NowPlaying& now);
/// "0:12 of 3:45"
std::string Progress(const NowPlaying& now);
/// "Artist - Album", or the one of them that is known.
std::string Origin(const NowPlaying& now);
void ShowNowPlaying(Output& output, const NowPlaying& now);

void RunNow(const Context& context, Session& session);

// Through the legacy interface (legacy_now.cpp).

/// Shows the player's display texts.
void ShowLegacyPlaying(Output& output, LegacySession& session);

void RunLegacyNow(const Context& context, LegacySession& session);

}  // namespace ipodctl
