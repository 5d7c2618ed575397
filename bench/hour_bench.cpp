// SPDX-License-Identifier: MIT
// The figures in virtual time, and a workout of an hour. The virtual platform takes the real one's
// place, so this is a program of its own.
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "figures.h"
#include "ipodcomm/CIpodComm.h"
#include "simulator/simulated_ipod.h"
#include "world/world.h"

namespace {

using ipodcomm::virtual_platform::kSecond;
using ipodcomm::virtual_platform::World;

constexpr int kIntervals = 3600;

struct Hour {
  int written = 0;
  unsigned long blocks_after_a_minute = 0;
  unsigned long blocks_after_the_hour = 0;
};

// An interval a second, each begun on the second.
Hour Log(World& world, CIpodComm& session) {
  Hour hour;
  const std::int64_t begin_us = world.now_us();
  for (int second = 0; second < kIntervals; ++second) {
    hour.written += session.Sports_IntervalWorkout(
        second == 0 ? IPOD_INTERVAL_TYPE_START : IPOD_INTERVAL_TYPE_CONTINUE, second,
        second * 0.125, second * 0.003, IPOD_DISTANCE_TYPE_KM, 330, IPOD_SPEED_TYPE_PACE, 1.5, 140,
        6);
    if (second == 60) hour.blocks_after_a_minute = bench::LiveBlockCount();
    const std::int64_t next_us = begin_us + (second + 1) * kSecond;
    if (next_us > world.now_us()) world.Advance(next_us - world.now_us());
  }
  hour.blocks_after_the_hour = bench::LiveBlockCount();
  return hour;
}

bool MeasureHour() {
  ipodsim::SimulatedIpod ipod{ipodsim::Settings()};
  World world({1});
  world.line().PlugModel(ipod);
  CIpodComm session;
  world.Advance(2 * kSecond);
  session.SetIDPSEnable(1);
  if (session.Open() != 0 ||
      session.Command_IdentifyDeviceLingos(0, nullptr, nullptr, nullptr) == 0) {
    std::fprintf(stderr, "The simulated iPod was not identified.\n");
    return false;
  }
  const auto start = std::chrono::steady_clock::now();
  const int started = session.Sports_StartWorkout(L"ACME", L"Acme", L"T9", L"1",
                                                  IPOD_EQUIPMENT_TYPE_TREADMILL, 70.5);
  const Hour hour = Log(world, session);
  const int finished = session.Sports_FinishWorkout(kIntervals, 450, 10.8, IPOD_DISTANCE_TYPE_KM,
                                                    330, IPOD_SPEED_TYPE_PACE, 140);
  const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
  if (started == 0 || finished == 0 || hour.written != kIntervals) {
    std::fprintf(stderr, "The workout was not written: %d intervals\n", hour.written);
    return false;
  }
  bench::PrintHeading("An hour's workout in virtual time");
  bench::PrintFigure("3,600 intervals", bench::Number(taken.count(), 2) + " s",
                     "goal: under 10 s of real time");
  const auto growth = static_cast<double>(hour.blocks_after_the_hour) -
                      static_cast<double>(hour.blocks_after_a_minute);
  bench::PrintFigure("blocks of memory more than after a minute", bench::Number(growth, 0),
                     "goal: 0");
  session.Close();
  world.line().Unplug();
  return true;
}

}  // namespace

int main() {
  bench::MeasureLine();
  return MeasureHour() ? EXIT_SUCCESS : EXIT_FAILURE;
}
