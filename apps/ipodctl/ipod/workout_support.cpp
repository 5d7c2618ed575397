// SPDX-License-Identifier: MIT
// Asks the model number, then the iPod.
#include "ipod/workout_support.h"

#include "ipod/display_text.h"

namespace ipodctl {

bool TakesWorkouts(ipod& docked) {
  DisplayText number;
  if (docked.getipodmodelnum(number.buffer()) == 0) return false;
  const std::string family = number.text().substr(0, 4);
  if (family != "0014" && family != "0017") return false;
  int supported = 0;
  unsigned char extra = 0;
  return docked.issports(&supported, &extra) != 0 && supported != 0;
}

}  // namespace ipodctl
