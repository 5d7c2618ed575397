// SPDX-License-Identifier: MIT
#include "ipod/ctrl_c.h"

#include <algorithm>

#include "console/clock.h"
#include "console/interrupt.h"

namespace ipodctl {

bool CtrlC::MayGoOn(void* ctrl_c) {
  auto& asked = *static_cast<CtrlC*>(ctrl_c);
  if (!Interrupted() || SteadyTime() < asked.to_the_end_until_) return true;
  asked.cut_short_ = true;
  return false;
}

ToTheEnd::ToTheEnd(CtrlC& ctrl_c, std::chrono::microseconds most)
    : ctrl_c_(ctrl_c), before_(ctrl_c.to_the_end_until_) {
  ctrl_c_.to_the_end_until_ = std::max(before_, SteadyTime() + most);
}

ToTheEnd::~ToTheEnd() { ctrl_c_.to_the_end_until_ = before_; }

}  // namespace ipodctl
