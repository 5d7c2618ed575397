// SPDX-License-Identifier: MIT
// Shuffle and repeat: reading, setting, and their names.
#pragma once

#include <string>

#include "ipod/session.h"

namespace ipodctl {

/// @return "off", "tracks" or "albums"
std::string ReadShuffle(Session& session);
/// @param keep whether it also holds after the iPod is taken out of the dock
void SetShuffle(Session& session, const std::string& mode, bool keep);

/// @return "off", "one" or "all"
std::string ReadRepeat(Session& session);
void SetRepeat(Session& session, const std::string& mode, bool keep);

}  // namespace ipodctl
