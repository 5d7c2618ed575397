// SPDX-License-Identifier: MIT
// How threads begin and end.
#include <algorithm>
#include <utility>

#include "world/threads/race_detector.h"
#include "world/threads/scheduler.h"

namespace ipodcomm::virtual_platform {
namespace {

struct ThreadStart {
  Scheduler* scheduler;
  Thread* thread;
};

}  // namespace

thread_local Thread* Scheduler::running_ = nullptr;

Scheduler::Scheduler(Clock& clock, Timeline& timeline, std::unique_ptr<Schedule> schedule)
    : clock_(clock), timeline_(timeline), schedule_(std::move(schedule)) {
  threads_.push_back(std::make_shared<Thread>(1, "host"));
  ready_.push_back(&host());
  host().fiber = std::make_unique<Fiber>();
  running_ = &host();
}

Scheduler::~Scheduler() {
  Close();
  running_ = nullptr;
}

std::shared_ptr<Thread> Scheduler::Start(std::string name, THREAD_START_ROUTINE* routine,
                                         void* argument) {
  if (closing_) return nullptr;
  ForgetEnded();
  auto thread = std::make_shared<Thread>(static_cast<int>(threads_.size()) + 1, std::move(name));
  thread->routine = routine;
  thread->argument = argument;
  Released(thread.get());
  auto start = std::make_unique<ThreadStart>(ThreadStart{this, thread.get()});
  thread->fiber = Fiber::Make(ThreadMain, start.get());
  if (thread->fiber == nullptr) return nullptr;
  static_cast<void>(start.release());  // the thread's own now
  threads_.push_back(thread);
  ready_.push_back(thread.get());
  return thread;
}

void Scheduler::ThreadMain(void* argument) {
  Fiber* next = nullptr;
  Fiber* self = nullptr;
  {
    const std::unique_ptr<ThreadStart> start(static_cast<ThreadStart*>(argument));
    self = start->thread->fiber.get();
    DWORD exit_code = 0;
    if (start->scheduler->Begin(*start->thread)) exit_code = RunRoutine(*start->thread);
    next = &start->scheduler->Finish(*start->thread, exit_code);
  }
  self->LeaveFor(*next);
}

bool Scheduler::Begin(Thread& self) {
  const Unwatched unwatched;
  Acquired(&self);
  return !self.end_asked && !closing_;
}

// Its frame is all that is watched of the platform here, so it touches nothing but the routine.
DWORD Scheduler::RunRoutine(Thread& self) {
  try {
    return self.routine(self.argument);
  } catch (const ThreadEnd&) {
    return 0;
  }
}

// @return where to go on, once nothing is left on the thread's stack
Fiber& Scheduler::Finish(Thread& self, DWORD exit_code) {
  const Unwatched unwatched;
  Released(&self);
  if (!self.end_asked) self.exit_code = exit_code;
  // On its way out through the system a thread may hold a lock there, and others run meanwhile.
  self.leaving = true;
  if (!closing_) Step();
  self.state = ThreadState::kEnded;
  Remove(ready_, self);
  WakeAll(self);
  running_ = closing_ ? &host() : &Choose(kNobody);
  return *running_->fiber;
}

void Scheduler::End(Thread& thread, DWORD exit_code) {
  if (thread.state == ThreadState::kEnded) return;
  if (thread.leaving) {
    GiveUp("TerminateThread(" + thread.name +
           ") met a thread on its way out, which may have held "
           "a lock of the system: on Windows the process hangs");
    if (Running() == &host()) FailHost();
  }
  thread.end_asked = true;
  thread.exit_code = exit_code;
  // A thread that ends itself does so here, or at its next safe point when it holds a section.
  if (&thread == Running()) return EndIfAsked(thread, true);
  const bool can_end = thread.wait.safe_point && thread.sections_held == 0;
  if (thread.state == ThreadState::kWaiting && can_end) MakeReady(thread);
  while (thread.state != ThreadState::kEnded) {
    if (!Block({"TerminateThread", &thread, kNever, false})) return;
  }
}

void Scheduler::Close() {
  closing_ = true;
  // The list does not grow any more: no thread starts while the world is closing.
  for (const auto& thread : threads_) {
    if (thread.get() == &host()) continue;
    if (thread->state == ThreadState::kWaiting) MakeReady(*thread);
    if (thread->state == ThreadState::kReady) SwitchTo(*thread);
    Acquired(thread.get());
  }
  ForgetEnded();
}

void Scheduler::ForgetEnded() {
  for (const auto& thread : threads_) {
    if (thread->state == ThreadState::kEnded) thread->fiber = nullptr;
  }
}

}  // namespace ipodcomm::virtual_platform
