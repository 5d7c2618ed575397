// SPDX-License-Identifier: MIT
// The same workout on the legacy interface: no threads, no session, a line of the document at a
// time.
//
//   legacy_workout [SECONDS [INTERVAL]]
#include <ipodcomm/DocumentText.h>
#include <ipodcomm/ipod.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>

namespace {

volatile std::sig_atomic_t stopped = 0;

struct Reading {
  unsigned kcal;
  float km;
  unsigned pace;  // seconds per kilometre
  unsigned bpm;
};

// A console reads its sensors here. This one runs at 10 km/h.
Reading ReadSensors(unsigned seconds) {
  return {seconds * 15 / 100, static_cast<float>(seconds) / 360, 360, 120};
}

// No result says that the iPod accepts the console, so it is asked for something that every iPod
// tells.
bool Identify(ipod& dock) {
  wchar_t model[10] = L"";
  dock.command_identifydevicelingos(0);
  return dock.getipodmodelnum(model) != 0;
}

bool Start(ipod& dock) {
  // The interface sends a byte of each character, so what is no ASCII goes to it as UTF-8.
  std::wstring maker = ipodcomm::LegacyDocumentText(L"Ross & S\u00F6hne");
  wchar_t unused[] = L"";
  wchar_t model[] = L"QZ104";
  wchar_t serial_number[] = L"SN-0042";
  wchar_t gym[] = L"Riverside";
  wchar_t place[] = L"Springfield";
  return dock.startworkout(ipod::IPOD_SPORTS_WORKOUTTYPE_TREADMILL, maker.data(), unused, model,
                           serial_number, gym, place, 72.5F) != 0;
}

bool Record(ipod& dock, unsigned char event, unsigned seconds) {
  const Reading now = ReadSensors(seconds);
  std::printf("%4u s  %.2f km\n", seconds, static_cast<double>(now.km));
  std::fflush(stdout);
  return dock.intervalworkout(event, seconds, now.kcal, now.km, 0, now.pace, 0, 0, now.bpm, 1.5F,
                              4) != 0;
}

bool Finish(ipod& dock, unsigned seconds) {
  const Reading all = ReadSensors(seconds);
  if (dock.finishworkout(seconds, all.kcal, all.km, 0, all.pace, 0, 0, all.bpm) == 0) return false;
  std::printf("Saved: %u s, %lu bytes.\n", seconds, dock.getworkoutsize());
  return true;
}

bool Log(ipod& dock, unsigned seconds, unsigned every) {
  if (!Start(dock) || !Record(dock, ipod::IPOD_SPORTS_INTERVAL_TYPE_START, 0)) return false;
  const auto start = std::chrono::steady_clock::now();
  unsigned now = 0;
  while (now < seconds && stopped == 0) {
    std::this_thread::sleep_until(start + std::chrono::seconds(++now));
    const bool due = now % every == 0 && now < seconds;
    if (due && !Record(dock, ipod::IPOD_SPORTS_INTERVAL_TYPE_CONTINUE, now)) return false;
  }
  return Record(dock, ipod::IPOD_SPORTS_INTERVAL_TYPE_END, now) && Finish(dock, now);
}

// Runs on one port from its opening to its end. A failure is told by what was tried last.
int Run(ipod& dock, unsigned seconds, unsigned every) {
  if (dock.openport() == 0) return std::fputs("The port cannot be opened.\n", stderr), 1;
  const bool identified = Identify(dock);
  const bool logged = identified && Log(dock, seconds, every);
  dock.closeport();
  if (!identified) std::fputs("No iPod answers. Is one docked and switched on?\n", stderr);
  if (identified && !logged) std::fprintf(stderr, "Not saved whole: %ls\n", dock.getlasttry());
  return logged ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
  std::signal(SIGINT, [](int) { stopped = 1; });
  ipod dock;
  dock.SetConduct(&IPOD_LEGACY_CONDUCT_ROBUST);
  return Run(dock, static_cast<unsigned>(std::max(1, argc > 1 ? std::atoi(argv[1]) : 60)),
             static_cast<unsigned>(std::max(1, argc > 2 ? std::atoi(argv[2]) : 10)));
}
