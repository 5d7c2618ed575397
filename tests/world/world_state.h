// SPDX-License-Identifier: MIT
// What the services find behind them: all parts of the one world there is.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/common/handle_table.h"
#include "platform/common/registry_store.h"
#include "world/clock.h"
#include "world/line/serial_line.h"
#include "world/services/device_manager.h"
#include "world/services/failing_services.h"
#include "world/services/memory_blocks.h"
#include "world/services/names.h"
#include "world/services/recorder.h"
#include "world/threads/scheduler.h"
#include "world/threads/sync.h"

namespace ipodcomm::virtual_platform {

/// What the version services find in a file: a block, or the code with which they fail.
struct VersionFile {
  DWORD code = ERROR_SUCCESS;
  std::vector<std::uint8_t> block;
};

struct WorldState {
  WorldState(std::uint64_t world_seed, std::unique_ptr<Schedule> schedule)
      : seed(world_seed), lines(clock, seed), scheduler(clock, lines, std::move(schedule)) {
    lines.SetScheduler(scheduler);
  }

  /// The open object behind a handle if it is a `Kind`, else null.
  template <class Kind>
  std::shared_ptr<Kind> Find(HANDLE handle) {
    return handles.FindAs<Kind>(handle);
  }

  const std::uint64_t seed;
  Clock clock;
  SerialLines lines;
  platform::HandleTable handles;
  Names names;
  Sections sections;
  std::map<std::wstring, std::weak_ptr<Event>> named_events;
  platform::RegistryStore registry;
  DeviceManager devices;
  std::map<std::wstring, VersionFile> version_files;  // by file name
  MemoryBlocks heap{"block"};
  MemoryBlocks pages{"pages"};
  Faults faults;
  Recorder recorder;
  std::vector<std::string> debug_output;
  std::vector<std::string> given_back_twice;
  // Last: the threads that it ends use all of the above.
  Scheduler scheduler;
};

/// The world, or null when there is none.
WorldState* CurrentWorld();

}  // namespace ipodcomm::virtual_platform
