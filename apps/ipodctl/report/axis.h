// SPDX-License-Identifier: MIT
// Axes that end and tick on round numbers, and courses thinned to what a picture can show.
#pragma once

#include <cstddef>
#include <vector>

#include "report/workout_figures.h"

namespace ipodctl {

struct Scale {
  double low = 0;
  double high = 1;
  std::vector<double> ticks;  // ascending, from low to high
};

/// 1, 2 or 5 times a power of ten. @param at_least more than 0
double RoundNumber(double at_least);

/// A scale in steps of 1, 2 or 5 times a power of ten that takes in [low, high].
/// @param smallest_step steps are at least so large
Scale NumberScale(double low, double high, std::size_t most_ticks, double smallest_step);
/// The same in steps that clocks have: 5, 10, 15, 30 seconds, and so on.
Scale ClockScale(double low, double high, std::size_t most_ticks);

/// Round times from 0 to `end` seconds, which need not be one itself.
std::vector<double> TimeTicks(double end, std::size_t most_ticks);

/// The first, lowest, highest and last of the samples that fall into each of `columns` equal
/// parts of [0, end]. What is thinner than a column, a gap too, is lost.
std::vector<Sample> Thinned(const std::vector<Sample>& course, double end, std::size_t columns);

}  // namespace ipodctl
