// SPDX-License-Identifier: MIT
// What the exported classes are made of; hosts have no use for it.
#pragma once

#include <atomic>
#include <memory>

namespace ipodcomm {

/// How one thread ends: by itself, or ended by another that has no more use for it, never both.
///
/// A thread that leaves passes through the system's thread exit and may hold a lock of the system
/// there (on Windows the loader's). Ended at that moment, it would hold it for ever. So whoever
/// wants to end the thread claims it first, and a claimed thread does not leave: it sleeps, holding
/// nothing, until it is ended or released.
///
///   thread:   ...                Leave  return
///   another:  Claim  TerminateThread, or Release where that failed or is not due
class Departure {
 public:
  /// Null when memory is out.
  static std::shared_ptr<Departure> Make();

  /// The thread's last step before it returns, taken with no lock held. Blocks while it is claimed.
  void Leave();

  /// False when the thread is leaving already, or somebody else has claimed it.
  bool Claim();
  void Release();

 private:
  enum class State { kStaying, kClaimed, kLeaving };

  std::atomic<State> state_{State::kStaying};
};

}  // namespace ipodcomm
