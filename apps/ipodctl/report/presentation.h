// SPDX-License-Identifier: MIT
// How a page is to be presented: its language, its units, and what is known of who worked out.
#pragma once

#include <optional>
#include <string>

#include "report/measures.h"
#include "report/wording.h"

namespace ipodctl {

struct Presentation {
  Wording words = Wording();
  Measures measures = Measures();
  /// Beats per minute; without it nothing is said of heart-rate zones.
  std::optional<double> max_heart_rate;
  /// Where the overview of all workouts is, as a link; empty: there is none.
  std::string overview;
};

}  // namespace ipodctl
