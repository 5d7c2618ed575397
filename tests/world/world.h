// SPDX-License-Identifier: MIT
// A deterministic world for tests: threads, clock, serial lines and everything else that the
// platform's services reach, behind the same services.
//
// The thread that makes the world is its host thread: a test simply calls the library. Only one
// thread runs at a time, the clock moves only when all of them wait, and which one runs next
// follows from the seed, so a run repeats exactly. README.md shows how tests are written with it.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/services.h"
#include "world/clock.h"
#include "world/line/serial_line.h"
#include "world/services/device_manager.h"
#include "world/services/recorder.h"
#include "world/threads/deadlock.h"
#include "world/threads/next_thread.h"

namespace ipodcomm::virtual_platform {

struct WorldState;

/// What is not set is drawn from the seed.
struct WorldOptions {
  std::optional<std::uint64_t> seed = std::nullopt;  ///< else IPODCOMM_SEED, else 1
  std::unique_ptr<Schedule> schedule = nullptr;
  std::optional<std::uint32_t> tick_count_ms = std::nullopt;
  bool quiet = false;  ///< does not print the seed: for thousands of worlds in a row
};

/// One at a time. It must be made before and destroyed after everything that uses the services.
/// Members are called by the host thread. Nothing that a test does here takes virtual time, except
/// where it says so.
class World {
 public:
  /// Prints the seed and what was drawn from it. COM2: exists, with nothing connected.
  explicit World(WorldOptions options = {});
  World(const World&) = delete;
  World& operator=(const World&) = delete;
  /// Ends the threads that are left, by unwinding, and returns all memory. Prints the command that
  /// repeats the run when the test has failed.
  ~World();

  std::uint64_t seed() const;
  /// The decisions of the schedule so far, for ReplaySchedule.
  std::vector<int> decisions() const;

  // Time.
  std::int64_t now_us() const;
  /// Lets time pass: the host sleeps and everybody else goes on. Not recorded.
  void Advance(std::int64_t duration_us);
  /// Lets everybody else run until all of them wait, without any time passing.
  void Settle();
  /// Sets what GetTickCount returns now.
  void SetTickCount(std::uint32_t tick_count_ms);

  // Threads. The host is called "host", the others "thread2" and so on in the order of their
  // creation, unless they are named here in advance; a second one of the same routine is "name 2".
  void NameThreads(const std::vector<std::string>& names);
  void NameRoutine(THREAD_START_ROUTINE* routine, const std::string& name);
  /// Ends all threads but the host now, as the end of the world does, and orders all they did
  /// before what follows. None can be started any more.
  void EndThreads();
  /// Threads that have not ended, the host not counted.
  std::vector<std::string> live_threads() const;
  /// What every thread does, one to a line.
  std::string DescribeThreads() const;

  // The serial line of a port; creates the port when there is none.
  SerialLine& line(const std::string& port = "COM2:");

  // Faults. The `nth` call of a service from now on fails with `code`: once, or for ever from then
  // on; counted in one thread only when one is named.
  void FailOnce(const std::string& service, unsigned nth, DWORD code,
                const std::string& thread = "");
  void FailFrom(const std::string& service, unsigned nth, DWORD code,
                const std::string& thread = "");
  void ClearFaults();
  /// Calls of a service so far.
  unsigned call_count(const std::string& service) const;

  // Recording, off until asked for. Without names every service is recorded.
  void Record(const std::vector<std::string>& services = {});
  void StopRecording();
  Calls calls() const;
  /// The record so far; a new one begins.
  Calls DrainCalls();
  /// DrainCalls() as text, "Sleep(20)".
  std::vector<std::string> DrainRecord();

  // The rest of the platform.
  /// 32-bit values of HKEY_LOCAL_MACHINE. Empty at first.
  void SetRegistryValue(const std::wstring& key, const std::wstring& name, std::uint32_t value);
  std::optional<std::uint32_t> RegistryValue(const std::wstring& key, const std::wstring& name);
  /// Drivers activated so far, by the library or here.
  std::vector<DriverInstance> drivers() const;
  HANDLE ActivateDriver(const std::string& driver, DWORD client_info);
  /// Gives a file a version resource; files have none at first. Empty text: none again.
  void SetFileVersion(const std::wstring& file, const std::wstring& file_version);
  /// Makes a file of the test's own, an executable with a version resource or anything else.
  void PlaceFile(const std::wstring& file, const std::vector<std::uint8_t>& contents);
  /// What was written to the debug output, one entry per call, in UTF-8.
  std::vector<std::string> debug_output() const;

  /// What is open or allocated now: handles, critical sections, heap blocks and pages, by name.
  std::vector<std::string> leftovers() const;
  /// Handles and blocks that were given back when they had been already: "event2 (closed) by host".
  /// A system may have given the same to somebody else by then.
  std::vector<std::string> given_back_twice() const;

 private:
  std::unique_ptr<WorldState> state_;
};

/// What a test framework tells worlds, so that they need not know it. Both may be empty.
struct TestHooks {
  /// Whether the running test has failed.
  std::function<bool()> failed;
  /// The command that repeats it, without the seed.
  std::function<std::string()> command;
};
void SetTestHooks(TestHooks hooks);

}  // namespace ipodcomm::virtual_platform
