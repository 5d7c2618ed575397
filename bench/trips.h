// SPDX-License-Identifier: MIT
// Times of exchanges, against the floors that the line's pauses set.
#pragma once

#include <chrono>
#include <string>
#include <vector>

namespace bench {

using Clock = std::chrono::steady_clock;

double MillisecondsSince(Clock::time_point start);
/// @param values at least one
double Median(std::vector<double> values);
/// How much longer the kernel sleeps than it is asked to, on average.
double SleepOvershootMs(double asked_ms);

/// What was measured, what the pauses ask for, and what the kernel's sleeps add to them.
struct Trip {
  double measured_ms;
  double floor_ms;
  double overshoot_ms;

  double ExcessPercent() const { return 100 * (measured_ms - overshoot_ms - floor_ms) / floor_ms; }
};

void PrintTrip(const std::string& name, const Trip& trip, const std::string& goal);

}  // namespace bench
