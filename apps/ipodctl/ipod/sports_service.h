// SPDX-License-Identifier: MIT
// Whether the iPod offers its Sports service, which keeps workouts and knows its user.
#pragma once

#include <string>

#include "ipod/session.h"

namespace ipodctl {

/// Throws the CommandFailure that says why the iPod does not offer it.
/// @param lack what it does not do therefore: "this iPod does not take workouts"
/// @param advice what to do where it has none; may be empty
void RequireSportsService(Session& session, const std::string& lack, const std::string& advice);

}  // namespace ipodctl
