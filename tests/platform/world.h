// SPDX-License-Identifier: MIT
// What the conformance suite needs to know of a platform, and to have done to it.
//
// The suite's tests are compiled once and linked with one world each: world_posix.cpp,
// world_virtual.cpp, world_windows.cpp. The thread that constructs the World is the platform's
// first thread. Tests use nothing but the platform's services and this; they let time pass with
// Sleep.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/services.h"

namespace ipodcomm::test {

using Bytes = std::vector<std::uint8_t>;

/// Where platforms may differ. A flag says what holds where it is true.
struct Traits {
  /// The port kPort exists and World's far-end members work.
  bool has_port = false;
  /// CreateFileW refuses arguments that the library never gives, with 87; else a port may be opened
  /// for reading alone.
  bool checks_open_arguments = false;
  /// A port that is open is denied with 5; else it opens again.
  bool opens_a_port_once = false;
  /// One and a half stop bits read back as such; else as two.
  bool keeps_stop_bits = false;
  /// SetCommState refuses all impossible settings with 87; else some only, with 50.
  bool checks_line_settings = false;
  /// WaitCommEvent waits; else it returns at once, with success and no events.
  bool waits_for_events = false;
  /// Closing a port ends a read in progress; else the read goes on to its own end.
  bool closing_ends_reads = false;
  /// A read on a line that has gone away fails; else it succeeds at once with 0 bytes.
  bool fails_reads_of_vanished_lines = false;
  /// The value of a closed handle never stands for anything again.
  bool retires_handles = false;
  /// TerminateThread lets the thread reach a point where it holds no lock, and unwinds its stack.
  bool ends_threads_at_safe_points = false;
  /// A lock tolerates a lone leave, a copy as bytes is the same lock, and a deleted lock is
  /// harmless.
  bool tolerates_lock_misuse = false;
  /// LocalFree refuses what the heap did not hand out.
  bool checks_heap_blocks = false;
  /// DeactivateDevice refuses a handle that ActivateDevice did not hand out; else it takes any that
  /// may be one.
  bool checks_device_handles = false;
  /// Conversions that were cut leave text that ends with a terminator.
  bool terminates_cut_conversions = false;
  /// How far the tick count may lag behind.
  DWORD tick_step_ms = 1;
};

class World {
 public:
  World();
  World(const World&) = delete;
  World& operator=(const World&) = delete;
  ~World();

  Traits traits() const;

  /// The port under test. It has a far end, and nobody has opened it yet.
  static constexpr const wchar_t* kPort = L"COM2:";

  /// The far end sends `bytes`. Does not wait for their arrival.
  void Send(const Bytes& bytes);
  /// Waits until the far end has received `count` bytes since the last call, and returns them all.
  /// Gives up, returning fewer, when nothing comes for ten seconds.
  Bytes Receive(std::size_t count);
  /// The device goes away while its port is open, for good.
  void Unplug();

  /// Makes GetFileVersionInfoW find `contents` under `name`.
  void PlaceFile(const wchar_t* name, const Bytes& contents);

 private:
  struct Implementation;
  std::unique_ptr<Implementation> implementation_;
};

}  // namespace ipodcomm::test
