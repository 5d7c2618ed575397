// SPDX-License-Identifier: MIT
#include "apart.h"

#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>

namespace reliability {
namespace {

// What the process of the trials and the one that waits for it both see.
struct Shared {
  Tally tally;
  std::uint64_t number;
  bool ended;
  char text[4096];
};

Shared& SharedMemory() {
  static auto* const shared = static_cast<Shared*>(
      mmap(nullptr, sizeof(Shared), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0));
  if (shared == MAP_FAILED) std::abort();
  return *shared;
}

std::string Guarded(const Trial& trial, std::uint64_t number) {
  try {
    return trial(number);
  } catch (const std::exception& thrown) {
    return thrown.what();
  }
}

[[noreturn]] void RunTrials(const Places& places, const Trial& trial, unsigned most_seconds) {
  Shared& shared = SharedMemory();
  std::uint64_t number = places.first;
  for (; number < places.end && !shared.ended; number += places.step) {
    shared.number = number;
    alarm(most_seconds);
    const std::string wrong = Guarded(trial, number);
    alarm(0);
    if (wrong.empty()) continue;
    std::snprintf(shared.text, sizeof shared.text, "%s", wrong.c_str());
    break;
  }
  std::exit(0);
}

std::string HowItEnded(int status) {
  if (WIFEXITED(status) && WEXITSTATUS(status) == 0) return "";
  if (WIFEXITED(status)) return "ended with status " + std::to_string(WEXITSTATUS(status));
  const int signal = WTERMSIG(status);
  if (signal == SIGALRM) return "hung";
  return "ended by signal " + std::to_string(signal) + " (" + strsignal(signal) + ")";
}

}  // namespace

Tally& TotalTally() { return SharedMemory().tally; }

void EndSeries() { SharedMemory().ended = true; }

Verdict RunApart(const Places& places, const Trial& trial, unsigned most_seconds) {
  Shared& shared = SharedMemory();
  shared.ended = false;
  shared.text[0] = '\0';
  std::fflush(nullptr);
  const pid_t child = fork();
  if (child < 0) return {places.first, "no process could be started"};
  if (child == 0) RunTrials(places, trial, most_seconds);
  int status = 0;
  waitpid(child, &status, 0);
  const std::string said = shared.text;
  return {shared.number, said.empty() ? HowItEnded(status) : said};
}

}  // namespace reliability
