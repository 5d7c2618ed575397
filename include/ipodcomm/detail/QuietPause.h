// SPDX-License-Identifier: MIT
// What the exported classes are made of; hosts have no use for it.
#pragma once

#include "ipodcomm/detail/Shared.h"
#include "ipodcomm/platform.h"

namespace ipodcomm {

/// The pause of a thread that has nothing to do, which another thread may end.
///
/// It has no event, and needs none, before it is prepared. A copy of a prepared one has an event of
/// its own.
class QuietPause {
 public:
  QuietPause() = default;
  QuietPause(const QuietPause& other);
  QuietPause& operator=(const QuietPause& other);
  ~QuietPause();

  /// Makes the event, once. Without memory for it pauses last their full time.
  void Prepare();
  /// Pauses for `duration_ms`, or until End is called; not at all when it was called since the last
  /// pause. One thread.
  void Take(unsigned long duration_ms);
  /// Any thread.
  void End();

 private:
  Shared<HANDLE> event_ = nullptr;
};

}  // namespace ipodcomm
