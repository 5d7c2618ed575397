// SPDX-License-Identifier: MIT
// Writing the report of an identification.
#pragma once

#include "ipodcomm/IpodTypes.h"

namespace ipodcomm {

/// Adds a step, or counts it where the report is full.
inline void AddStep(tagIPOD_IDENTIFY_REPORT* report, const tagIPOD_EXCHANGE& step) {
  if (report->steps < tagIPOD_IDENTIFY_REPORT::kMostSteps) {
    report->step[report->steps++] = step;
  } else {
    ++report->steps_left_out;
  }
}

}  // namespace ipodcomm
