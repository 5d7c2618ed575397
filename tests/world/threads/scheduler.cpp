// SPDX-License-Identifier: MIT
// Decisions, waits and the clock.
#include "world/threads/scheduler.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <utility>

#include "world/threads/deadlock.h"

namespace ipodcomm::virtual_platform {
namespace {

// So many steps without any time passing are a busy loop, which would never end.
constexpr std::uint64_t kMaxStepsAtOneTime = 5'000'000;

std::string Seconds(std::int64_t time_us) {
  char text[32];
  std::snprintf(text, sizeof text, "%.6f s", static_cast<double>(time_us) / 1e6);
  return text;
}

std::string DescribeWait(const Wait& wait) {
  std::string text = wait.service;
  if (wait.object != nullptr) text += "(" + wait.object->Describe() + ")";
  return text + (wait.deadline_us == kNever ? " for ever" : " until " + Seconds(wait.deadline_us));
}

}  // namespace

void Scheduler::Step() {
  CountStep();
  if (closing_) return;
  if (const std::int64_t pause_us = schedule_->PauseUs(calls_++)) return Pause(pause_us);
  if (ready_.size() == 1) return;
  SwitchTo(Choose(Running()->number));
}

// Nobody is ended here, also not at the end of the world: the call may come from a destructor.
void Scheduler::Pause(std::int64_t duration_us) {
  Thread& self = *Running();
  self.wait = {"its processor", nullptr, clock_.now_us() + duration_us, false};
  self.woken = false;
  self.state = ThreadState::kWaiting;
  Remove(ready_, self);
  waiting_.push_back(&self);
  SwitchTo(Choose(kNobody));
}

bool Scheduler::Block(const Wait& wait) {
  Thread& self = *Running();
  CountStep();
  EndIfAsked(self, wait.safe_point);
  // Destructors that wait while their thread is being ended find that nothing comes any more.
  if (closing_ && &self != &host()) return false;
  self.wait = wait;
  self.woken = false;
  self.state = ThreadState::kWaiting;
  Remove(ready_, self);
  waiting_.push_back(&self);
  SwitchTo(Choose(kNobody));
  if (self.hopeless) FailHost();
  EndIfAsked(self, wait.safe_point);
  return self.woken;
}

void Scheduler::Wake(Thread& thread) {
  thread.woken = true;
  MakeReady(thread);
}

void Scheduler::WakeAll(const Object& object) {
  while (Thread* thread = LongestWaiting(object)) Wake(*thread);
}

Thread* Scheduler::LongestWaiting(const Object& object) const {
  const auto found = std::find_if(waiting_.begin(), waiting_.end(), [&](const Thread* thread) {
    return thread->wait.object == &object;
  });
  return found != waiting_.end() ? *found : nullptr;
}

Thread& Scheduler::Choose(int running) {
  while (ready_.empty()) MoveClock();
  if (ready_.size() == 1) return *ready_.front();
  candidates_.clear();
  for (const Thread* thread : ready_) candidates_.push_back(thread->number);
  const int chosen = schedule_->Choose(decisions_.size(), candidates_, running);
  if (std::find(candidates_.begin(), candidates_.end(), chosen) == candidates_.end()) {
    std::fprintf(stderr, "virtual platform: the schedule chose thread %d, which cannot run\n",
                 chosen);
    std::abort();
  }
  decisions_.push_back(chosen);
  return *threads_[static_cast<std::size_t>(chosen) - 1];
}

void Scheduler::MoveClock() {
  std::int64_t next_us = timeline_.NextEvent();
  for (const Thread* thread : waiting_) next_us = std::min(next_us, thread->wait.deadline_us);
  if (next_us == kNever) return GiveUp("nobody can ever go on");
  if (next_us > clock_.now_us()) steps_at_this_time_ = 0;
  clock_.MoveTo(next_us);
  timeline_.RunUntil(clock_.now_us());
  waited_ = waiting_;
  for (Thread* thread : waited_) {
    if (thread->state == ThreadState::kWaiting && thread->wait.deadline_us <= clock_.now_us()) {
      MakeReady(*thread);
    }
  }
}

void Scheduler::MakeReady(Thread& thread) {
  Remove(waiting_, thread);
  thread.state = ThreadState::kReady;
  const auto place = std::find_if(ready_.begin(), ready_.end(), [&](const Thread* other) {
    return other->number > thread.number;
  });
  ready_.insert(place, &thread);
}

void Scheduler::Remove(std::vector<Thread*>& threads, const Thread& thread) {
  threads.erase(std::find(threads.begin(), threads.end(), &thread));
}

void Scheduler::SwitchTo(Thread& next) {
  Thread& self = *Running();
  if (&next == &self) return;
  running_ = &next;
  self.fiber->SwitchTo(*next.fiber);
}

void Scheduler::EndIfAsked(Thread& self, bool safe_point) const {
  const bool at_end_of_world = closing_ && &self != threads_.front().get();
  const bool asked = self.end_asked && safe_point && self.sections_held == 0;
  if ((at_end_of_world || asked) && std::uncaught_exceptions() == 0) throw ThreadEnd();
}

void Scheduler::CountStep() {
  if (++steps_at_this_time_ < kMaxStepsAtOneTime) return;
  steps_at_this_time_ = 0;
  const std::string reason = Running()->name + " runs without ever waiting";
  if (closing_) {
    std::fprintf(stderr, "virtual platform: %s at the end of the world\n", reason.c_str());
    std::abort();
  }
  GiveUp(reason);
  SwitchTo(host());
  if (Running() == &host()) FailHost();
}

void Scheduler::GiveUp(const std::string& reason) {
  hopeless_reason_ = reason + " " + Describe();
  std::fprintf(stderr, "virtual platform: %s", hopeless_reason_.c_str());
  host().hopeless = true;
  if (host().state == ThreadState::kWaiting) MakeReady(host());
}

void Scheduler::FailHost() {
  host().hopeless = false;
  // The test's objects are destroyed while the failure travels; what they wait for ends at once.
  if (std::uncaught_exceptions() == 0) throw Deadlock(hopeless_reason_);
}

std::string Scheduler::Describe() const {
  std::string text = "at " + Seconds(clock_.now_us()) + ":\n";
  for (const auto& thread : threads_) {
    if (thread->state == ThreadState::kEnded) continue;
    const bool waits = thread->state == ThreadState::kWaiting;
    text += "  " + thread->name + ": " + (waits ? DescribeWait(thread->wait) : "can run");
    if (thread->sections_held > 0) {
      text += ", holds " + std::to_string(thread->sections_held) + " section(s)";
    }
    text += "\n";
  }
  return text;
}

}  // namespace ipodcomm::virtual_platform
