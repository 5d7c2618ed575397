// SPDX-License-Identifier: MIT
// Prints what the library costs a host that loads it and makes a session: KiB of memory, and
// microseconds until the session is there.
#include <dlfcn.h>

#include <chrono>
#include <cstdio>
#include <fstream>
#include <string>

namespace {

// Pages that this process has written to.
long PrivateKib() {
  std::ifstream pages("/proc/self/smaps_rollup");
  for (std::string line; std::getline(pages, line);) {
    long kib = 0;
    if (std::sscanf(line.c_str(), "Private_Dirty: %ld kB", &kib) == 1) return kib;
  }
  return 0;
}

using MakeSession = void* (*)();

MakeSession Load(const char* module) {
  void* const loaded = dlopen(module, RTLD_NOW);
  if (loaded == nullptr) return nullptr;
  return reinterpret_cast<MakeSession>(dlsym(loaded, "MakeSession"));
}

}  // namespace

int main() {
  using Clock = std::chrono::steady_clock;
  const long before_kib = PrivateKib();
  const Clock::time_point start = Clock::now();
  const MakeSession make_session = Load(FOOTPRINT_MODULE);
  if (make_session == nullptr || make_session() == nullptr) {
    std::fputs("footprint: the library does not load\n", stderr);
    return 1;
  }
  const auto took = std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - start);
  std::printf("memory %ld KiB, start %lld us\n", PrivateKib() - before_kib,
              static_cast<long long>(took.count()));
  return 0;
}
