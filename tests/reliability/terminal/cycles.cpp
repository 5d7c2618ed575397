// SPDX-License-Identifier: MIT
// A session on a real pseudo-terminal, whose cable is pulled and put back again and again: handles,
// threads and heap stay the same, and a command works each time.
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <string>
#include <thread>

#include "dock.h"
#include "held.h"
#include "ipodcomm/CIpodComm.h"

namespace {

using terminal::Dock;
using terminal::Held;

constexpr const wchar_t* kName = L"Pod";
// By then everything is there that the process makes once and keeps.
constexpr unsigned long kFirstCycles = 100;
// One in so many is pulled in the middle of a command, which then waits for its time-out.
constexpr unsigned long kOneInTheMiddle = 16;

// Once the threads that restart the driver, which takes a second, have ended.
Held HeldAtRest() {
  std::this_thread::sleep_for(std::chrono::milliseconds(2500));
  return terminal::HeldNow();
}

void Print(unsigned long cycles, const Held& held) {
  std::printf("after %lu cycles: %u handles, %u threads, %zu bytes of heap\n", cycles, held.handles,
              held.threads, held.heap);
  std::fflush(stdout);
}

bool Works(CIpodComm& session) {
  wchar_t name[32] = {};
  return session.Command_RequestIpodName(name, 32) == 1 && std::wcscmp(name, kName) == 0;
}

bool Cycle(CIpodComm& session, Dock& dock, unsigned long number) {
  if (number % kOneInTheMiddle == 0) {
    dock.BeginUnplug();
    Works(session);  // or not
    dock.AwaitUnplug();
  } else {
    dock.Unplug();
  }
  session.Close();
  dock.Replug();
  return session.Open() == 0 && Works(session);
}

int Fail(unsigned long cycles, const char* what) {
  std::printf("FAILED after %lu cycles: %s\n", cycles, what);
  return 1;
}

ipodsim::Settings EmptyIpod() {
  ipodsim::Settings settings;
  settings.library = {};
  settings.library.name = "Pod";
  return settings;
}

int Run(unsigned long cycles, const std::string& link) {
  constexpr unsigned long kReportEvery = 1000;
  const auto began = std::chrono::steady_clock::now();
  Dock dock(EmptyIpod(), link, 0);
  setenv("IPODCOMM_COM2", link.c_str(), 1);
  CIpodComm session;
  if (session.Open() != 0 || !Works(session)) return Fail(0, "no command works");
  Held first;
  for (unsigned long number = 1; number <= kFirstCycles + cycles; ++number) {
    if (!Cycle(session, dock, number)) return Fail(number, "no command works");
    if (number == kFirstCycles) Print(number, first = HeldAtRest());
    if (number > kFirstCycles && number % kReportEvery == 0) Print(number, HeldAtRest());
  }
  const Held last = HeldAtRest();
  Print(kFirstCycles + cycles, last);
  if (const char* const grown = terminal::Grown(first, last)) return Fail(cycles, grown);
  const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - began;
  std::printf("cycles of the cable on a pseudo-terminal: %lu, 0 failures; %.0f s\n", cycles,
              taken.count());
  return 0;
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 3 || std::strcmp(arguments[1], "--runs") != 0) {
    std::fputs("usage: terminal_cycles --runs N\n", stderr);
    return 64;
  }
  char folder[] = "/tmp/terminal-cycles-XXXXXX";
  if (mkdtemp(folder) == nullptr) return 1;
  const int status =
      Run(std::strtoul(arguments[2], nullptr, 10), std::string(folder) + "/terminal");
  rmdir(folder);
  return status;
}
