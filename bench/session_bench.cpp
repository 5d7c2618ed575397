// SPDX-License-Identifier: MIT
// A session on a pseudo-terminal, against the floors that the line's pauses set.
#include <sys/resource.h>
#include <unistd.h>

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
using bench::PrintTrip;
using bench::SleepOvershootMs;
using bench::Trip;

constexpr double kSyncPauseMs = 20;  // after the sync byte of every frame sent
constexpr double kBytePauseMs = 2;   // after every byte received

double ProcessorSeconds() {
  rusage usage = {};
  getrusage(RUSAGE_SELF, &usage);
  const auto seconds = [](const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
  };
  return seconds(usage.ru_utime) + seconds(usage.ru_stime);
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
  return {Median(trips), kSyncPauseMs + kPauses * kBytePauseMs,
          SleepOvershootMs(kSyncPauseMs) + kPauses * SleepOvershootMs(kBytePauseMs)};
}

std::size_t Utf8Length(const wchar_t* text) {
  std::size_t length = 0;
  for (; *text != L'\0'; ++text) {
    const auto character = static_cast<std::uint32_t>(*text);
    length += character < 0x80 ? 1 : character < 0x800 ? 2 : character < 0x10000 ? 3 : 4;
  }
  return length;
}

Trip MeasureRecords(CIpodComm& session) {
  constexpr unsigned long kRecords = 1000;
  constexpr std::size_t kFrameBytes = 14;  // around the name: header, identifier, index, terminator
  session.SelectTop(ipod::IPOD_CATEGORY_TRACK, nullptr, 0);
  std::size_t bytes = 0;
  const Clock::time_point start = Clock::now();
  session.Command_RetrieveCategorizedDatabaseRecords(0, kRecords, ipod::IPOD_CATEGORY_TRACK);
  for (unsigned long i = 0; i < kRecords; ++i) {
    wchar_t name[256];
    if (session.GetNextCategorizedRecord(name, 256) == 1) bytes += kFrameBytes + Utf8Length(name);
  }
  const double measured_ms = MillisecondsSince(start);
  const auto pauses = static_cast<double>(bytes);
  return {measured_ms, kSyncPauseMs + pauses * kBytePauseMs,
          pauses * SleepOvershootMs(kBytePauseMs)};
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
  return {Median(trips), kSyncPauseMs + kPauses * kBytePauseMs,
          SleepOvershootMs(kSyncPauseMs) + kPauses * SleepOvershootMs(kBytePauseMs)};
}

double MeasureIdlePercent() {
  constexpr double kSeconds = 5;
  const double before = ProcessorSeconds();
  std::this_thread::sleep_for(std::chrono::duration<double>(kSeconds));
  return 100 * (ProcessorSeconds() - before) / kSeconds;
}

}  // namespace

void bench::MeasureSession() {
  ipodsim::Settings settings;
  settings.fixed_latency = 0;
  settings.record_period = 0;
  ipodsim::PtyServer server(settings);
  if (!server.Start()) {
    std::fprintf(stderr, "No pseudo-terminal: %s\n", server.error().c_str());
    return;
  }
  setenv("IPODCOMM_COM2", server.device_path().c_str(), 1);

  const double before_kb = ResidentKilobytes();
  CIpodComm session;
  const double session_kb = ResidentKilobytes() - before_kb;
  std::this_thread::sleep_for(std::chrono::milliseconds(1200));  // the driver restart
  session.SetIDPSEnable(1);
  tagIPOD_IDENTIFY_RESULT result = IPOD_IDENTIFY_RESULT_NONE;
  if (session.Open() != 0 ||
      session.Command_IdentifyDeviceLingos(0, &result, nullptr, nullptr) == 0) {
    std::fprintf(stderr, "The simulated iPod was not identified.\n");
    return;
  }

  PrintHeading("A session on a pseudo-terminal");
  PrintTrip("one command's round trip", MeasureRoundTrip(session), "goal: within 2 %");
  PrintTrip("one interval of a workout, written", MeasureIntervals(session), "goal: within 2 %");
  PrintFigure("processor time, idle and open", Number(MeasureIdlePercent(), 2) + " %",
              "goal: under 1 % of one core");
  PrintFigure("resident memory of the session", Number(session_kb, 0) + " kB", "");
  PrintTrip("1,000 record names in a row", MeasureRecords(session), "");
  session.Close();
  server.Stop();
}
