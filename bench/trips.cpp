// SPDX-License-Identifier: MIT
#include "trips.h"

#include <sys/prctl.h>

#include <algorithm>
#include <thread>

#include "figures.h"

namespace bench {
namespace {

// What the kernel makes of a pause of this length, for a thread that wakes punctually.
double BarePauseMs(double asked_ms) {
  constexpr double kEnoughMs = 200;
  const int count = std::clamp(static_cast<int>(kEnoughMs / asked_ms), 5, 100);
  std::vector<double> taken;
  std::thread sleeper([&taken, asked_ms, count] {
    prctl(PR_SET_TIMERSLACK, 1UL, 0UL, 0UL, 0UL);
    for (int i = 0; i < count; ++i) {
      const Clock::time_point start = Clock::now();
      std::this_thread::sleep_for(std::chrono::duration<double, std::milli>(asked_ms));
      taken.push_back(MillisecondsSince(start));
    }
  });
  sleeper.join();
  return Median(taken);
}

std::string TimesThat(double measured_ms, double floor_ms) {
  return Number(measured_ms / floor_ms, 3) + " times that";
}

}  // namespace

double MillisecondsSince(Clock::time_point start) {
  return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

double Median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

void PrintTrip(const std::string& name, const Trip& trip, const std::string& goal) {
  double floor_ms = 0;
  double bare_ms = 0;
  for (const Pauses& pauses : trip.pauses) {
    floor_ms += pauses.count * pauses.each_ms;
    bare_ms += pauses.count * BarePauseMs(pauses.each_ms);
  }
  PrintFigure(name, Number(trip.measured_ms, 1) + " ms",
              "floor: " + Number(floor_ms, 1) + " ms of pauses kept on purpose, " +
                  TimesThat(trip.measured_ms, floor_ms) + (goal.empty() ? "" : "; goal: " + goal));
  PrintFigure("  these pauses alone", Number(bare_ms, 1) + " ms", TimesThat(bare_ms, floor_ms));
}

}  // namespace bench
