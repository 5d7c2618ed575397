// SPDX-License-Identifier: MIT
// The thing that is waited for: the signal of an event, or of a thread's end.
#include "platform/posix/signal.h"

namespace ipodcomm::platform {

// A waiter stays enrolled, whatever happens to it, until it has taken the signal's lock once more;
// so whoever grants it the signal, under that lock, always finds it alive.
class Signal::Enrolment {
 public:
  Enrolment(Signal& signal, Waiter& waiter) : signal_(signal), waiter_(waiter) {
    signal_.Append(waiter_);
  }
  Enrolment(const Enrolment&) = delete;
  Enrolment& operator=(const Enrolment&) = delete;
  ~Enrolment() { Withdraw(); }

  bool Withdraw() {
    const std::lock_guard lock(signal_.mutex_);
    signal_.Remove(waiter_);
    return waiter_.granted;
  }

 private:
  Signal& signal_;
  Waiter& waiter_;
};

void Signal::Set() {
  const std::lock_guard lock(mutex_);
  set_ = manual_ || waiters_ == nullptr;
  while (waiters_ != nullptr) {
    Waiter* const waiter = waiters_;
    waiters_ = waiter->next;
    waiter->granted = true;
    waiter->thread.Unpark();
    if (!manual_) break;
  }
}

void Signal::Append(Waiter& waiter) {
  Waiter** end = &waiters_;
  while (*end != nullptr) end = &(*end)->next;
  *end = &waiter;
}

void Signal::Remove(const Waiter& waiter) {
  Waiter** link = &waiters_;
  while (*link != nullptr && *link != &waiter) link = &(*link)->next;
  if (*link != nullptr) *link = waiter.next;
}

void Signal::Reset() {
  const std::lock_guard lock(mutex_);
  set_ = false;
}

DWORD Signal::Wait(DWORD timeout_ms) {
  ThreadState& thread = CurrentThread();
  thread.EndIfAsked();
  Waiter waiter{thread};
  std::unique_lock lock(mutex_);
  if (set_) {
    set_ = manual_;
    return WAIT_OBJECT_0;
  }
  if (timeout_ms == 0) return WAIT_TIMEOUT;
  thread.PreparePark();
  Enrolment enrolment(*this, waiter);
  lock.unlock();
  thread.Park(DeadlineIn(timeout_ms));
  return enrolment.Withdraw() ? WAIT_OBJECT_0 : WAIT_TIMEOUT;
}

}  // namespace ipodcomm::platform
