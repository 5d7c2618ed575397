// SPDX-License-Identifier: MIT
// The library's lock over the platform's critical section.
#include "ipodcomm/detail/Lock.h"

#include "platform/services.h"

namespace ipodcomm {

Lock::Lock() { InitializeCriticalSection(&section_); }

Lock::Lock(const Lock& /*other*/) : Lock() {}

Lock& Lock::operator=(const Lock& /*other*/) { return *this; }

Lock::~Lock() { Delete(); }

void Lock::Enter() {
  if (deleted_) return;
  EnterCriticalSection(&section_);
  owner_ = GetCurrentThreadId();
  ++depth_;
}

void Lock::Leave() {
  if (deleted_ || owner_ != GetCurrentThreadId()) return;
  if (--depth_ == 0) owner_ = 0;
  LeaveCriticalSection(&section_);
}

void Lock::Delete() {
  if (!deleted_.exchange(true)) DeleteCriticalSection(&section_);
}

}  // namespace ipodcomm
