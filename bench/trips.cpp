// SPDX-License-Identifier: MIT
#include "trips.h"

#include <algorithm>
#include <thread>

#include "figures.h"

namespace bench {

double MillisecondsSince(Clock::time_point start) {
  return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

double Median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

double SleepOvershootMs(double asked_ms) {
  constexpr int kSleeps = 200;
  const Clock::time_point start = Clock::now();
  for (int i = 0; i < kSleeps; ++i) {
    std::this_thread::sleep_for(std::chrono::duration<double, std::milli>(asked_ms));
  }
  return MillisecondsSince(start) / kSleeps - asked_ms;
}

void PrintTrip(const std::string& name, const Trip& trip, const std::string& goal) {
  PrintFigure(name, Number(trip.measured_ms, 1) + " ms",
              "floor: " + Number(trip.floor_ms, 1) + " ms of pauses kept on purpose");
  PrintFigure("  the kernel's sleeps overshoot by", Number(trip.overshoot_ms, 1) + " ms", "");
  PrintFigure("  above the floor otherwise", Number(trip.ExcessPercent(), 1) + " %", goal);
}

}  // namespace bench
