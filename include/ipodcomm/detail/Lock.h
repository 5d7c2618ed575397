// SPDX-License-Identifier: MIT
// What the exported classes are made of; hosts have no use for it.
#pragma once

#include <atomic>

#include "ipodcomm/platform.h"

namespace ipodcomm {

/// A recursive lock over the platform's critical section that knows its owner.
///
/// Leaving it unheld does nothing, and so does entering it once it is deleted. A copy is a new,
/// free lock: copies of an object share handles, never a lock.
class IPODCOMM_API Lock {
 public:
  Lock();
  Lock(const Lock& other);
  Lock& operator=(const Lock& other);
  ~Lock();

  void Enter();
  void Leave();
  /// Gives the critical section back before the object ends. No other thread may be in it.
  void Delete();

 private:
  CRITICAL_SECTION section_;
  std::atomic<bool> deleted_{false};
  std::atomic<unsigned long> owner_{0};  // thread that holds it, 0 when free
  unsigned depth_ = 0;                   // entries of the owner
};

/// Holds a lock for a scope.
class LockScope {
 public:
  explicit LockScope(Lock& lock) : lock_(lock) { lock_.Enter(); }
  ~LockScope() { lock_.Leave(); }
  LockScope(const LockScope&) = delete;
  LockScope& operator=(const LockScope&) = delete;

 private:
  Lock& lock_;
};

}  // namespace ipodcomm
