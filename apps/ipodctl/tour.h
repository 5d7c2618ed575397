// SPDX-License-Identifier: MIT
// ipodctl tour: everything that a docked iPod can do for a console, step by step.
#pragma once

#include "context.h"

namespace ipodctl {

/// Opens and identifies a session itself.
void RunTour(const Context& context);

}  // namespace ipodctl
