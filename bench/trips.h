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

/// So many pauses of one length.
struct Pauses {
  int count;
  double each_ms;
};

/// What an exchange took, and the pauses that it consists of.
struct Trip {
  double measured_ms;
  std::vector<Pauses> pauses;
};

/// Prints it beside its floor, the sum of its pauses, and what the machine makes of these pauses
/// alone, taken just now.
/// @param goal empty for none
void PrintTrip(const std::string& name, const Trip& trip, const std::string& goal);

}  // namespace bench
