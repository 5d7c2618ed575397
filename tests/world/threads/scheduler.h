// SPDX-License-Identifier: MIT
// One thread at a time, and a clock that moves only when all of them wait.
//
//              Block                     deadline, Wake
//   running ----------> waiting ----------------------------> ready
//      ^  |                                                     |
//      |  +---- Step: another one is chosen ------------------> |
//      +------------------------- chosen -----------------------+
//
// There is no scheduler thread. Whoever stops running decides who goes on, and moves the clock
// first when nobody is ready; a sleeper that is itself the next to wake just returns. All members
// are called by the thread that runs.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "world/clock.h"
#include "world/threads/next_thread.h"
#include "world/threads/thread.h"

namespace ipodcomm::virtual_platform {

class Scheduler {
 public:
  /// The calling thread becomes the host.
  Scheduler(Clock& clock, Timeline& timeline, std::unique_ptr<Schedule> schedule);
  Scheduler(const Scheduler&) = delete;
  Scheduler& operator=(const Scheduler&) = delete;
  /// Ends every other thread. Called by the host.
  ~Scheduler();

  /// The calling thread, or null when the world does not know it.
  static Thread* Running() { return running_; }
  Thread& host() { return *threads_.front(); }
  const std::vector<std::shared_ptr<Thread>>& threads() const { return threads_; }
  /// The decisions so far, as ReplaySchedule takes them.
  const std::vector<int>& decisions() const { return decisions_; }

  /// A thread that is about to begin. Null when the system has none to give, or at the world's end.
  std::shared_ptr<Thread> Start(std::string name, THREAD_START_ROUTINE* routine, void* argument);
  /// Ends a thread at its next safe point; returns once it has ended.
  void End(Thread& thread, DWORD exit_code);

  /// A decision: somebody else may run now.
  void Step();
  /// Waits until woken (true) or until the deadline (false). Throws ThreadEnd where the thread is
  /// to end, and Deadlock in the host when nothing can ever wake it.
  bool Block(const Wait& wait);
  /// Wakes a waiting thread.
  void Wake(Thread& thread);
  /// Wakes all that wait for an object.
  void WakeAll(const Object& object);
  /// The one that waits for an object the longest, or null.
  Thread* LongestWaiting(const Object& object) const;

  /// Ends all threads but the host, one after the other, by unwinding.
  void Close();
  /// Waits fail at once after Close, in destructors that run while a thread unwinds.
  bool closing() const { return closing_; }

  /// What every thread does, one to a line.
  std::string Describe() const;

 private:
  static void ThreadMain(void* argument);
  bool Begin(Thread& self);
  static DWORD RunRoutine(Thread& self);
  Fiber& Finish(Thread& self, DWORD exit_code);
  void ForgetEnded();

  Thread& Choose(int running);
  void Pause(std::int64_t duration_us);
  void SwitchTo(Thread& next);
  void MoveClock();
  void MakeReady(Thread& thread);
  static void Remove(std::vector<Thread*>& threads, const Thread& thread);
  void EndIfAsked(Thread& self, bool safe_point) const;
  void GiveUp(const std::string& reason);
  void FailHost();
  void CountStep();

  static thread_local Thread* running_;  // null in a thread of the system that made no world

  Clock& clock_;
  Timeline& timeline_;
  const std::unique_ptr<Schedule> schedule_;
  std::vector<std::shared_ptr<Thread>> threads_;  // all there ever were, by number
  std::vector<Thread*> ready_;                    // the running one included, by number
  std::vector<Thread*> waiting_;                  // the longest waiting first
  std::vector<Thread*> waited_;                   // those that waited when the clock moved
  std::vector<int> candidates_;                   // the numbers of the ready ones, for a decision
  std::vector<int> decisions_;
  std::uint64_t calls_ = 0;
  std::uint64_t steps_at_this_time_ = 0;
  std::string hopeless_reason_;  // why the host cannot go on
  bool closing_ = false;
};

}  // namespace ipodcomm::virtual_platform
