// SPDX-License-Identifier: MIT
// A session on a real pseudo-terminal, whose cable is pulled and put back again and again: handles,
// threads and heap stay the same, and a command works each time. The iPod lives in a process of its
// own, so that what is counted is the library's.
#include <dirent.h>
#include <malloc.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <string>
#include <thread>

#include "ipodcomm/CIpodComm.h"
#include "simulator/pty/pty_server.h"

namespace {

using std::chrono::milliseconds;

constexpr const wchar_t* kName = L"Pod";
// By then everything is there that the process makes once and keeps.
constexpr unsigned long kFirstCycles = 100;
// One in so many is pulled in the middle of a command, which then waits for its time-out.
constexpr unsigned long kOneInTheMiddle = 16;

void Pause(milliseconds duration) { std::this_thread::sleep_for(duration); }

enum class Order : char { kUnplug = 'u', kUnplugSoon = 's', kReplug = 'r' };

// The iPod and its cable, at the other end of a socket.
class Dock {
 public:
  explicit Dock(const std::string& link) {
    int ends[2] = {-1, -1};
    if (socketpair(AF_UNIX, SOCK_STREAM, 0, ends) != 0) std::abort();
    process_ = fork();
    if (process_ < 0) std::abort();
    if (process_ == 0) {
      close(ends[0]);
      Serve(link, ends[1]);
    }
    close(ends[1]);
    orders_ = ends[0];
    AwaitDone();
  }
  Dock(const Dock&) = delete;
  Dock& operator=(const Dock&) = delete;
  ~Dock() {
    close(orders_);
    waitpid(process_, nullptr, 0);
  }

  void Do(Order order) {
    Tell(order);
    AwaitDone();
  }
  void Tell(Order order) {
    if (write(orders_, &order, 1) != 1) std::abort();
  }
  void AwaitDone() {
    char done = 0;
    if (read(orders_, &done, 1) != 1) std::abort();
  }

 private:
  [[noreturn]] static void Serve(const std::string& link, int orders) {
    ipodsim::Settings settings;
    settings.library = {};
    settings.library.name = "Pod";
    ipodsim::PtyServer server(settings, link);
    if (!server.Start()) {
      std::fprintf(stderr, "%s\n", server.error().c_str());
      std::_Exit(1);
    }
    constexpr char kDone = 'd';
    Order order = Order::kReplug;
    while (write(orders, &kDone, 1) == 1 && read(orders, &order, 1) == 1) {
      if (order == Order::kUnplugSoon) Pause(milliseconds(3));
      const bool plugged = order == Order::kReplug;
      plugged ? server.Replug() : server.Unplug();
      // The server's own thread makes the terminal and takes it away.
      while ((access(link.c_str(), F_OK) == 0) != plugged) Pause(milliseconds(1));
    }
    server.Stop();
    std::_Exit(0);
  }

  pid_t process_ = -1;
  int orders_ = -1;
};

unsigned EntriesOf(const char* folder) {
  DIR* const opened = opendir(folder);
  if (opened == nullptr) std::abort();
  unsigned count = 0;
  while (readdir(opened) != nullptr) ++count;
  closedir(opened);
  return count;
}

struct Held {
  unsigned handles = 0;
  unsigned threads = 0;
  std::size_t heap = 0;
};

// Once the threads that restart the driver, which takes a second, have ended.
Held HeldNow() {
  Pause(milliseconds(2500));
  return {EntriesOf("/proc/self/fd"), EntriesOf("/proc/self/task"), mallinfo2().uordblks};
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
    dock.Tell(Order::kUnplugSoon);
    Works(session);  // or not
    dock.AwaitDone();
  } else {
    dock.Do(Order::kUnplug);
  }
  session.Close();
  dock.Do(Order::kReplug);
  return session.Open() == 0 && Works(session);
}

int Fail(unsigned long cycles, const char* what) {
  std::printf("FAILED after %lu cycles: %s\n", cycles, what);
  return 1;
}

int Run(unsigned long cycles, const std::string& link) {
  constexpr std::size_t kMostGrowth = 64 * 1024;
  constexpr unsigned long kReportEvery = 1000;
  const auto began = std::chrono::steady_clock::now();
  Dock dock(link);
  setenv("IPODCOMM_COM2", link.c_str(), 1);
  CIpodComm session;
  if (session.Open() != 0 || !Works(session)) return Fail(0, "no command works");
  Held first;
  for (unsigned long number = 1; number <= kFirstCycles + cycles; ++number) {
    if (!Cycle(session, dock, number)) return Fail(number, "no command works");
    if (number == kFirstCycles) Print(number, first = HeldNow());
    if (number > kFirstCycles && number % kReportEvery == 0) Print(number, HeldNow());
  }
  const Held last = HeldNow();
  Print(kFirstCycles + cycles, last);
  if (last.handles != first.handles) return Fail(cycles, "not as many handles as before");
  if (last.threads != first.threads) return Fail(cycles, "not as many threads as before");
  if (last.heap > first.heap + kMostGrowth) return Fail(cycles, "the heap has grown");
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
