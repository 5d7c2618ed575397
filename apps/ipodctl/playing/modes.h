// SPDX-License-Identifier: MIT
// ipodctl shuffle and repeat: the play modes, their names, reading and setting them.
#pragma once

#include <string>

#include "context.h"
#include "ipod/session.h"

namespace ipodctl {

/// @return "off", "tracks" or "albums"
std::string ReadShuffle(Session& session);
/// Throws a CommandFailure when it has not come true.
/// @param keep whether it also holds after the iPod is taken out of the dock
void SetShuffle(Session& session, const std::string& mode, bool keep);

/// @return "off", "one" or "all"
std::string ReadRepeat(Session& session);
void SetRepeat(Session& session, const std::string& mode, bool keep);

void RunShuffle(const Context& context, Session& session);
void RunRepeat(const Context& context, Session& session);

}  // namespace ipodctl
