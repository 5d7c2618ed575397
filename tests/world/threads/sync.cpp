// SPDX-License-Identifier: MIT
// How events pass their signals on and critical sections their ownership.
#include "world/threads/sync.h"

namespace ipodcomm::virtual_platform {

void Event::Set(Scheduler& scheduler) {
  Thread* waiting = scheduler.LongestWaiting(*this);
  signalled = manual_reset || waiting == nullptr;
  if (manual_reset) {
    scheduler.WakeAll(*this);
  } else if (waiting != nullptr) {
    scheduler.Wake(*waiting);
  }
}

bool Event::TryTake() {
  const bool taken = signalled;
  if (!manual_reset) signalled = false;
  return taken;
}

void Section::Enter(Scheduler& scheduler) {
  Thread* self = Scheduler::Running();
  if (owner != self) {
    Await(scheduler);
    owner = self;
    depth = 0;
    ++self->sections_held;
  }
  ++depth;
}

void Section::Await(Scheduler& scheduler) {
  struct Counted {
    explicit Counted(int& waiting_count) : count(waiting_count) { ++count; }
    ~Counted() { --count; }
    int& count;
  } const counted(waiting);
  while (owner != nullptr) {
    // A wait that ends otherwise belongs to a test that has failed already.
    if (!scheduler.Block({"EnterCriticalSection", this, kNever, false})) return;
  }
}

bool Section::Leave(Scheduler& scheduler) {
  if (owner != Scheduler::Running()) return false;
  if (--depth > 0) return true;
  --owner->sections_held;
  owner = nullptr;
  scheduler.WakeAll(*this);
  return true;
}

std::string Section::Describe() const {
  return owner == nullptr ? name : name + " held by " + owner->name;
}

namespace {
constexpr unsigned kNumberBits = 24;
std::uintptr_t worlds = 0;
}  // namespace

Sections::Sections() : base_(++worlds << kNumberBits) {}

void Sections::Initialize(CRITICAL_SECTION* section) {
  const std::size_t number = sections_.size() + 1;
  sections_.push_back(std::make_unique<Section>("section" + std::to_string(number)));
  section->impl = reinterpret_cast<void*>(base_ + number);
}

Section* Sections::Find(const CRITICAL_SECTION* section) const {
  const std::uintptr_t number = reinterpret_cast<std::uintptr_t>(section->impl) - base_;
  if (number < 1 || number > sections_.size()) return nullptr;
  Section* found = sections_[number - 1].get();
  return found->gone() ? nullptr : found;
}

std::vector<std::string> Sections::names() const {
  std::vector<std::string> names;
  for (const auto& section : sections_) {
    if (!section->gone()) names.push_back(section->name);
  }
  return names;
}

}  // namespace ipodcomm::virtual_platform
