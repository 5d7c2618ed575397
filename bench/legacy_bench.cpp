// SPDX-License-Identifier: MIT
// The legacy interface on a pseudo-terminal, against the floors that its pauses set.
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "figures.h"
#include "ipodcomm/ipod.h"
#include "simulator/pty/pty_server.h"
#include "trips.h"

namespace {

using bench::Clock;
using bench::MillisecondsSince;
using bench::Trip;

constexpr double kSyncPauseMs = 5;  // after the sync byte of every frame sent

// What a byte awaited in vain costs: the read's time-out and the pause behind it, five times.
constexpr int kEmptyReads = 5;
constexpr double kReadTimeoutMs = 400;
constexpr double kEmptyReadPauseMs = 200;

// Bytes that arrive are not paused for, so the name's length does not count.
Trip MeasureName(ipod& docked) {
  constexpr int kTrips = 200;
  std::vector<double> trips;
  for (int i = 0; i < kTrips; ++i) {
    wchar_t name[256];
    const Clock::time_point start = Clock::now();
    if (docked.getipodname(name) == 1) trips.push_back(MillisecondsSince(start));
  }
  if (trips.empty()) trips.push_back(0);  // shown as such
  return {bench::Median(trips), {{1, kSyncPauseMs}}};
}

Trip MeasureSilence(ipod& docked) {
  wchar_t name[256];
  const Clock::time_point start = Clock::now();
  docked.getipodname(name);
  const double taken_ms = MillisecondsSince(start);
  return {taken_ms,
          {{1, kSyncPauseMs}, {kEmptyReads, kReadTimeoutMs}, {kEmptyReads, kEmptyReadPauseMs}}};
}

// Docks a simulated iPod that answers at once, or never.
template <class Measure>
void PrintDocked(ipodsim::Profile profile, const std::string& name, Measure measure) {
  ipodsim::Settings settings;
  settings.profile = profile;
  settings.fixed_latency = 0;
  ipodsim::PtyServer server(settings);
  if (!server.Start()) {
    std::fprintf(stderr, "No pseudo-terminal: %s\n", server.error().c_str());
    return;
  }
  setenv("IPODCOMM_COM2", server.device_path().c_str(), 1);
  ipod docked;
  if (docked.openport() == 0) {
    std::fprintf(stderr, "The port did not open.\n");
    return;
  }
  bench::PrintTrip(name, measure(docked), "");
  docked.closeport();
  server.Stop();
}

}  // namespace

void bench::MeasureLegacy() {
  PrintHeading("The legacy interface on a pseudo-terminal");
  PrintDocked(ipodsim::Profile::kNano, "getipodname's round trip", MeasureName);
  PrintDocked(ipodsim::Profile::kSilent, "getipodname of a silent iPod", MeasureSilence);
}
