// SPDX-License-Identifier: MIT
// Logs a workout on the iPod, an interval every so often by a timer. Ctrl-C ends it early, and what
// was done until then is saved whole.
//
//   workout [SECONDS [INTERVAL]]
#include <ipodcomm/CIpodComm.h>
#include <ipodcomm/DocumentText.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <thread>

#include "docking.h"

namespace {

volatile std::sig_atomic_t stopped = 0;

struct Reading {
  double kcal;
  double km;
  double pace;  // seconds per kilometre
  int bpm;
};

// A console reads its sensors here. This one runs at 10 km/h.
Reading ReadSensors(int seconds) { return {seconds * 0.15, seconds / 360.0, 360, 120}; }

bool Start(CIpodComm& session) {
  // Names go into an XML document, so what they hold must not be taken for its markup.
  const std::wstring maker = ipodcomm::DocumentText(L"Ross & S\u00F6hne");
  if (session.Sports_StartWorkout(L"ross", maker.c_str(), L"QZ104", L"SN-0042",
                                  IPOD_EQUIPMENT_TYPE_TREADMILL, 72.5) == 0) {
    return false;
  }
  // Starting succeeds when the file is open; whether all of its header is in it is told here.
  tagIPOD_WORKOUT_FILE file = {};
  session.GetWorkoutFile(&file);
  return file.failed_writes == 0;
}

bool Record(CIpodComm& session, tagIPOD_INTERVAL_TYPE event, int seconds) {
  const Reading now = ReadSensors(seconds);
  std::printf("%4d s  %.2f km\n", seconds, now.km);
  std::fflush(stdout);
  return session.Sports_IntervalWorkout(event, seconds, now.kcal, now.km, IPOD_DISTANCE_TYPE_KM,
                                        now.pace, IPOD_SPEED_TYPE_PACE, 1.5, now.bpm, -1) != 0;
}

bool Finish(CIpodComm& session, int seconds) {
  const Reading all = ReadSensors(seconds);
  const int closed = session.Sports_FinishWorkout(seconds, all.kcal, all.km, IPOD_DISTANCE_TYPE_KM,
                                                  all.pace, IPOD_SPEED_TYPE_PACE, all.bpm);
  tagIPOD_WORKOUT_FILE file = {};
  session.GetWorkoutFile(&file);
  if (closed == 0 || file.failed_writes != 0) return false;
  std::printf("Saved: %d s, %u bytes.\n", seconds, static_cast<unsigned>(file.write_offset));
  return true;
}

// Nothing more is written once something is missing: it would stand behind a gap.
bool Log(CIpodComm& session, int seconds, int every) {
  if (!Start(session) || !Record(session, IPOD_INTERVAL_TYPE_START, 0)) return false;
  const auto start = std::chrono::steady_clock::now();
  int now = 0;
  while (now < seconds && stopped == 0) {
    std::this_thread::sleep_until(start + std::chrono::seconds(++now));
    const bool due = now % every == 0 && now < seconds;
    if (due && !Record(session, IPOD_INTERVAL_TYPE_CONTINUE, now)) return false;
  }
  return Record(session, IPOD_INTERVAL_TYPE_END, now) && Finish(session, now);
}

}  // namespace

int main(int argc, char** argv) {
  const int seconds = std::max(1, argc > 1 ? std::atoi(argv[1]) : 60);
  const int every = std::max(1, argc > 2 ? std::atoi(argv[2]) : 10);
  std::signal(SIGINT, [](int) { stopped = 1; });
  CIpodComm session;
  std::string failure = example::Dock(session);
  if (failure.empty() && session.SupportsSports() == 0) {
    failure = "This iPod keeps no workouts.";
  } else if (failure.empty() && !Log(session, seconds, every)) {
    failure = example::WhyNot(session, "take all of the workout");
  }
  session.Close();
  if (failure.empty()) return 0;
  std::fprintf(stderr, "%s\n", failure.c_str());
  return 1;
}
