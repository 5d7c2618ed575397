// SPDX-License-Identifier: MIT
// What the exported classes are made of; hosts have no use for it.
#pragma once

#include <atomic>
#include <memory>

#include "ipodcomm/platform.h"

namespace ipodcomm {

/// Lets an object be destroyed, copied or reopened while threads that it started are at work.
///
/// Threads outlive the object, so they hold its lifeline, not the object. They enter it for each
/// turn of work and touch the object only inside; the object ends the lifeline first thing in its
/// destructor, which waits until nobody is inside. A thread that stays inside for a few
/// milliseconds at a time therefore never delays a destructor, and none ever meets a dead object.
///
///   owner:   Begin  CreateThread  ...                                End
///   thread:           work  Leave  { Sleep  Enter  work  Leave }     Enter fails: let go
///
/// Built from atomics alone, so a thread that the platform ends outside leaves nothing locked.
class Lifeline {
 public:
  /// Enters on behalf of a thread about to be created, which inherits the turn and its Leave.
  void Begin();
  /// The thread could not be created.
  void Abandon();
  /// A thread's first step: takes over the turn that Begin entered, and tells the generation. A
  /// thread that the host itself runs has none waiting and enters; false when the object is gone.
  bool Inherit(unsigned* generation);

  /// Begins a turn of work. False, and nothing to leave, once the object is gone.
  bool Enter();
  /// The same for a thread of this generation: false also once it was dismissed.
  bool Enter(unsigned generation);
  void Leave();
  bool gone() const { return gone_; }
  /// Whether nobody is inside.
  bool empty() const { return inside_ == 0; }

  /// Turns away the threads begun so far; returns when none of them is inside.
  void Dismiss();
  /// Keeps every thread outside while the object is copied; returns when nobody is inside.
  void Hold();
  void Release();

  /// The object is going: nobody enters any more. Close only says so, End waits as well.
  void Close();
  void End();

 private:
  void AwaitEmpty() const;

  std::atomic<int> inside_{0};
  std::atomic<int> holds_{0};
  std::atomic<bool> gone_{false};
  std::atomic<unsigned> generation_{0};
  std::atomic<unsigned> begun_generation_{0};
  std::atomic<int> begun_{0};  // turns that wait for their threads
};

/// Keeps an object's threads outside for a scope.
class LifelineHold {
 public:
  explicit LifelineHold(Lifeline& line) : line_(line) { line_.Hold(); }
  ~LifelineHold() { line_.Release(); }
  LifelineHold(const LifelineHold&) = delete;
  LifelineHold& operator=(const LifelineHold&) = delete;

 private:
  Lifeline& line_;
};

/// An object's own lifeline. A copy of the object gets a new one, because the threads are not its.
/// Where memory is out it is one that is closed from the start: no thread enters it.
class OwnLifeline {
 public:
  OwnLifeline() : line_(Make()) {}
  OwnLifeline(const OwnLifeline& /*other*/) : OwnLifeline() {}
  // NOLINTNEXTLINE(bugprone-unhandled-self-assignment): assigns nothing
  OwnLifeline& operator=(const OwnLifeline& /*other*/) { return *this; }
  ~OwnLifeline() = default;

  const std::shared_ptr<Lifeline>& shared() const { return line_; }
  Lifeline& operator*() const { return *line_; }
  Lifeline* operator->() const { return line_.get(); }

 private:
  static std::shared_ptr<Lifeline> Make();

  std::shared_ptr<Lifeline> line_;
};

}  // namespace ipodcomm
