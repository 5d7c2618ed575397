// SPDX-License-Identifier: MIT
// Events and critical sections.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/services.h"
#include "world/threads/object.h"
#include "world/threads/scheduler.h"

namespace ipodcomm::virtual_platform {

/// A signal goes straight to the one that waits the longest (auto-reset) or to all that wait
/// (manual-reset); only what nobody waits for is kept.
struct Event : Object {
  Event(std::string event_name, bool is_manual_reset, bool set)
      : Object(std::move(event_name)), manual_reset(is_manual_reset), signalled(set) {}

  void Set(Scheduler& scheduler);
  void Reset() { signalled = false; }
  /// Takes a kept signal, if there is one.
  bool TryTake();

  const bool manual_reset;
  bool signalled;
};

/// A recursive lock. One that is left goes to whoever comes first, which the schedule decides.
/// Deleting it takes effect when nobody holds it or waits for it.
struct Section : Object {
  explicit Section(std::string section_name) : Object(std::move(section_name)) {}

  void Enter(Scheduler& scheduler);
  /// Does nothing, and says so, in a thread that does not hold it.
  bool Leave(Scheduler& scheduler);
  std::string Describe() const override;

  Thread* owner = nullptr;
  int depth = 0;
  int waiting = 0;
  bool deleted = false;
  bool gone() const { return deleted && owner == nullptr && waiting == 0; }

 private:
  void Await(Scheduler& scheduler);
};

/// The critical sections of a world. A CRITICAL_SECTION holds a number, never an address, so
/// copies, leftovers and bytes that never were one are recognised.
class Sections {
 public:
  Sections();
  void Initialize(CRITICAL_SECTION* section);
  /// Null for one that is deleted or never was one.
  Section* Find(const CRITICAL_SECTION* section) const;
  /// Those that are not deleted.
  std::vector<std::string> names() const;

 private:
  std::uintptr_t base_;  // tells the sections of this world from those of others
  std::vector<std::unique_ptr<Section>> sections_;
};

}  // namespace ipodcomm::virtual_platform
