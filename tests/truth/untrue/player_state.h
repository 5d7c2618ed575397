// SPDX-License-Identifier: MIT
// What a player's state is called.
#pragma once

#include <string>

#include "simulator/player/player.h"

namespace truth {

std::string StateName(ipodsim::PlayerState state);

}  // namespace truth
