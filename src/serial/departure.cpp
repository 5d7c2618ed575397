// SPDX-License-Identifier: MIT
// How a thread ends: by itself, or ended by another, never both.
#include "ipodcomm/detail/Departure.h"

#include <new>

#include "platform/services.h"

namespace ipodcomm {

namespace {
// A claim lasts a few milliseconds, and a thread that is ended here must be in a sleep.
constexpr DWORD kLookAgainMs = 1;
}  // namespace

std::shared_ptr<Departure> Departure::Make() {
  try {
    return std::make_shared<Departure>();
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

void Departure::Leave() {
  State expected = State::kStaying;
  while (!state_.compare_exchange_strong(expected, State::kLeaving)) {
    if (expected == State::kLeaving) return;
    Sleep(kLookAgainMs);
    expected = State::kStaying;
  }
}

bool Departure::Claim() {
  State expected = State::kStaying;
  return state_.compare_exchange_strong(expected, State::kClaimed);
}

void Departure::Release() { state_ = State::kStaying; }

}  // namespace ipodcomm
