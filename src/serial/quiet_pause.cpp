// SPDX-License-Identifier: MIT
// A pause that another thread may end.
#include "ipodcomm/detail/QuietPause.h"
#include "platform/services.h"
#include "serial/event_wait.h"

namespace ipodcomm {

QuietPause::QuietPause(const QuietPause& other) {
  if (other.event_ != nullptr) Prepare();
}

QuietPause& QuietPause::operator=(const QuietPause& other) {
  if (other.event_ != nullptr) Prepare();
  return *this;
}

QuietPause::~QuietPause() {
  if (event_ != nullptr) CloseHandle(event_);
}

void QuietPause::Prepare() {
  if (event_ == nullptr) event_ = CreateEventW(nullptr, FALSE, FALSE, nullptr);
}

void QuietPause::Take(unsigned long duration_ms) {
  if (event_ != nullptr) {
    WaitForEvent(event_, duration_ms);
  } else {
    Sleep(duration_ms);
  }
}

void QuietPause::End() {
  if (event_ != nullptr) EventModify(event_, EVENT_SET);
}

}  // namespace ipodcomm
