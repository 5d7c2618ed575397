// SPDX-License-Identifier: MIT
#pragma once

#include "world/world.h"

namespace fuzz {

/// A world whose tick count wraps at once. Who runs next is not what is looked for here.
inline ipodcomm::virtual_platform::WorldOptions QuietWorld() {
  ipodcomm::virtual_platform::WorldOptions options;
  options.seed = 1;
  options.schedule = ipodcomm::virtual_platform::CooperativeSchedule();
  options.tick_count_ms = 0xFFFFFF00;
  options.quiet = true;
  return options;
}

}  // namespace fuzz
