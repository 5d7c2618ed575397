// SPDX-License-Identifier: MIT
// A session on a pseudo-terminal, against the floors that the line's pauses set.
#include <poll.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include "figures.h"
#include "ipodcomm/CIpodComm.h"
#include "ipodcomm/ipod.h"
#include "simulator/pty/pty_server.h"
#include "trips.h"

namespace {

using bench::Clock;
using bench::Median;
using bench::MillisecondsSince;
using bench::Number;
using bench::Trip;

constexpr double kSyncPauseMs = 20;  // after the sync byte of every frame sent
constexpr double kBytePauseMs = 2;   // after every byte received

// Of this process, counted, not sampled: threads that sleep to the millisecond wake together with
// the samples.
double ProcessorSeconds() {
  timespec time = {};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

void SleepForMs(double duration_ms) {
  std::this_thread::sleep_for(std::chrono::duration<double, std::milli>(duration_ms));
}

double ResidentKilobytes() {
  long total_pages = 0;
  long resident_pages = 0;
  std::ifstream("/proc/self/statm") >> total_pages >> resident_pages;
  return static_cast<double>(resident_pages * sysconf(_SC_PAGESIZE)) / 1000;
}

Trip MeasureRoundTrip(CIpodComm& session) {
  constexpr int kTrips = 50;
  constexpr int kReplyBytes = 10;  // FF 55 06 04 00 2D tt tt mm checksum
  std::vector<double> trips;
  for (int i = 0; i < kTrips; ++i) {
    const Clock::time_point start = Clock::now();
    if (session.Command_GetShuffle(nullptr) == 1) trips.push_back(MillisecondsSince(start));
  }
  // The pause after the last byte no longer delays the answer.
  constexpr int kPauses = kReplyBytes - 1;
  return {Median(trips), {{1, kSyncPauseMs}, {kPauses, kBytePauseMs}}};
}

std::size_t Utf8Length(const wchar_t* text) {
  std::size_t length = 0;
  for (; *text != L'\0'; ++text) {
    const wchar_t character = *text;
    length += character < 0x80 ? 1 : character < 0x800 ? 2 : character < 0x10000 ? 3 : 4;
  }
  return length;
}

// Asks for the first tracks' names. @return the bytes of the frames that brought them
std::size_t ReadNames(CIpodComm& session, unsigned long count) {
  constexpr std::size_t kFrameBytes = 14;  // around the name: header, identifier, index, terminator
  std::size_t bytes = 0;
  session.Command_RetrieveCategorizedDatabaseRecords(0, count, ipod::IPOD_CATEGORY_TRACK);
  for (unsigned long i = 0; i < count; ++i) {
    wchar_t name[256];
    if (session.GetNextCategorizedRecord(name, 256) == 1) bytes += kFrameBytes + Utf8Length(name);
  }
  return bytes;
}

Trip MeasureRecords(CIpodComm& session) {
  constexpr unsigned long kRecords = 50;
  session.SelectTop(ipod::IPOD_CATEGORY_TRACK, nullptr, 0);
  const Clock::time_point start = Clock::now();
  const std::size_t bytes = ReadNames(session, kRecords);
  const double measured_ms = MillisecondsSince(start);
  return {measured_ms, {{1, kSyncPauseMs}, {static_cast<int>(bytes), kBytePauseMs}}};
}

// From the call to the acknowledgement, which tells that the iPod has the interval.
Trip MeasureIntervals(CIpodComm& session) {
  constexpr int kIntervals = 100;
  constexpr int kAckBytes = 10;  // FF 55 06 0C 00 tt tt status 07 checksum
  std::vector<double> trips;
  session.Sports_StartWorkout(L"ACME", L"Acme", L"T9", L"1", IPOD_EQUIPMENT_TYPE_TREADMILL, 70.5);
  for (int i = 0; i < kIntervals; ++i) {
    const Clock::time_point start = Clock::now();
    if (session.Sports_IntervalWorkout(IPOD_INTERVAL_TYPE_CONTINUE, i, 12.5, 0.75,
                                       IPOD_DISTANCE_TYPE_KM, 330, IPOD_SPEED_TYPE_PACE, 1.5, 140,
                                       6) == 1) {
      trips.push_back(MillisecondsSince(start));
    }
  }
  session.Sports_FinishWorkout(kIntervals, 12.5, 0.75, IPOD_DISTANCE_TYPE_KM, 330,
                               IPOD_SPEED_TYPE_PACE, 140);
  if (trips.empty()) trips.push_back(0);  // shown as such
  constexpr int kPauses = kAckBytes - 1;
  return {Median(trips), {{1, kSyncPauseMs}, {kPauses, kBytePauseMs}}};
}

// The least of a few, for whatever else runs on the machine only adds to it.
template <class Wait>
double LeastPercent(Wait wait) {
  constexpr int kRuns = 4;
  double least = 100;
  for (int i = 0; i < kRuns; ++i) {
    const Clock::time_point start = Clock::now();
    const double before = ProcessorSeconds();
    wait();
    least = std::min(least, 1e5 * (ProcessorSeconds() - before) / MillisecondsSince(start));
  }
  return least;
}

constexpr double kIdleRunMs = 2000;

double MeasureIdlePercent() {
  return LeastPercent([] { SleepForMs(kIdleRunMs); });
}

// What the kernel takes for the same waits with nothing around them.
double BareWaitsPercent(double pause_ms, bool polls_too) {
  return LeastPercent([=] {
    const Clock::time_point start = Clock::now();
    while (MillisecondsSince(start) < kIdleRunMs) {
      const timespec timeout = {0, 2'000'000};
      if (polls_too) ppoll(nullptr, 0, &timeout, nullptr);
      SleepForMs(pause_ms);
    }
  });
}

void PrintIdle(const std::string& conduct, double percent, double bare, const std::string& goal) {
  bench::PrintFigure("processor time, idle and open, " + conduct, Number(percent, 2) + " %",
                     "floor: " + Number(bare, 2) + " % for its waits alone; goal: " + goal);
}

// From the request to the last name, on a line that has the speed of a real one. The names are
// those of the simulated iPod's own library.
void PrintNamesAtLineSpeed(CIpodComm& session) {
  constexpr unsigned long kRecords = 200;
  constexpr double kByteMs = 10.5 / 57.6;
  constexpr double kRequestBytes = 17;
  session.SelectTop(ipod::IPOD_CATEGORY_TRACK, nullptr, 0);
  const Clock::time_point start = Clock::now();
  const std::size_t bytes = ReadNames(session, kRecords);
  const double measured_ms = MillisecondsSince(start);
  const double floor_ms = (kRequestBytes + static_cast<double>(bytes)) * kByteMs;
  bench::PrintFigure("200 record names in a row, fast", Number(measured_ms, 1) + " ms",
                     "floor: " + Number(floor_ms, 1) + " ms of bytes at 57600 baud, " +
                         Number(measured_ms / floor_ms, 3) + " times that; goal: 1.05 times");
}

// Docks the simulated iPod at the end of a line of this speed, in bits a second; 0 for none.
template <class Measure>
void WithSession(std::uint32_t baud, const tagIPOD_CONDUCT& conduct, Measure measure) {
  ipodsim::Settings settings;
  settings.fixed_latency = 0;
  settings.record_period = 0;
  settings.remote_ui_is_pending_first = false;
  ipodsim::PtyServer server(settings, {}, baud);
  if (!server.Start()) {
    std::fprintf(stderr, "No pseudo-terminal: %s\n", server.error().c_str());
    return;
  }
  setenv("IPODCOMM_COM2", server.device_path().c_str(), 1);
  const double before_kb = ResidentKilobytes();
  CIpodComm session;
  const double session_kb = ResidentKilobytes() - before_kb;
  SleepForMs(1200);  // the driver restart
  session.SetConduct(&conduct);
  session.SetIDPSEnable(1);
  tagIPOD_IDENTIFY_RESULT result = IPOD_IDENTIFY_RESULT_NONE;
  if (session.Open() != 0 ||
      session.Command_IdentifyDeviceLingos(0, &result, nullptr, nullptr) == 0 ||
      session.Command_EnterRemoteUIMode() == 0) {
    std::fprintf(stderr, "The simulated iPod was not identified.\n");
    return;
  }
  measure(session, session_kb);
  session.Close();
  server.Stop();
}

}  // namespace

void bench::MeasureSession() {
  PrintHeading("A session on a pseudo-terminal, as fast as memory");
  WithSession(0, IPOD_CONDUCT_FIELD, [](CIpodComm& session, double session_kb) {
    PrintTrip("one command's round trip", MeasureRoundTrip(session), "1.02 times");
    PrintTrip("one interval of a workout, written", MeasureIntervals(session), "1.02 times");
    PrintIdle("by default", MeasureIdlePercent(), BareWaitsPercent(2, true), "1 % of one core");
    PrintFigure("resident memory of the session", Number(session_kb, 0) + " kB", "");
    PrintTrip("50 record names in a row", MeasureRecords(session), "");
  });
  PrintHeading("A session on a pseudo-terminal of 57600 baud");
  WithSession(57600, IPOD_CONDUCT_FAST, [](CIpodComm& session, double /*session_kb*/) {
    PrintIdle("fast", MeasureIdlePercent(), BareWaitsPercent(16, false), "0.15 %");
    PrintNamesAtLineSpeed(session);
  });
}
