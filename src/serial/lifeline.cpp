// SPDX-License-Identifier: MIT
// How an object and the threads that it started let go of each other.
#include "ipodcomm/detail/Lifeline.h"

#include <new>

#include "platform/services.h"

namespace ipodcomm {

namespace {
// The waits below are for turns of a few milliseconds and happen on destruction, copying and
// reopening only, so looking again is simpler than an event and cannot miss a wake-up.
constexpr DWORD kLookAgainMs = 1;
}  // namespace

void Lifeline::Begin() {
  begun_generation_ = generation_.load();
  ++inside_;
  ++begun_;
}

void Lifeline::Abandon() {
  --begun_;
  Leave();
}

bool Lifeline::Inherit(unsigned* generation) {
  int begun = begun_;
  while (begun > 0) {
    if (!begun_.compare_exchange_weak(begun, begun - 1)) continue;
    *generation = begun_generation_;
    return true;
  }
  *generation = generation_;
  return Enter(*generation);
}

bool Lifeline::Enter() {
  for (;;) {
    // A thread counts itself in and then looks; Close, Hold and Dismiss raise their mark and then
    // look at the count. So one of the two always sees the other.
    ++inside_;
    if (!gone_ && holds_ == 0) return true;
    --inside_;
    if (gone_) return false;
    Sleep(kLookAgainMs);
  }
}

bool Lifeline::Enter(unsigned generation) {
  if (!Enter()) return false;
  if (generation_ == generation) return true;
  Leave();
  return false;
}

void Lifeline::Leave() { --inside_; }

void Lifeline::Dismiss() {
  ++generation_;
  AwaitEmpty();
}

void Lifeline::Hold() {
  ++holds_;
  AwaitEmpty();
}

void Lifeline::Release() { --holds_; }

void Lifeline::Close() { gone_ = true; }

void Lifeline::End() {
  Close();
  AwaitEmpty();
}

void Lifeline::AwaitEmpty() const {
  while (inside_ != 0) Sleep(kLookAgainMs);
}

std::shared_ptr<Lifeline> OwnLifeline::Make() {
  try {
    return std::make_shared<Lifeline>();
  } catch (const std::bad_alloc&) {
    static Lifeline closed;
    closed.Close();
    return {std::shared_ptr<Lifeline>(), &closed};  // owned by nobody
  }
}

}  // namespace ipodcomm
