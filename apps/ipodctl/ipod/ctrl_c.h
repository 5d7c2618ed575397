// SPDX-License-Identifier: MIT
// Ctrl-C's say in exchanges with the iPod.
#pragma once

#include <chrono>

namespace ipodctl {

/// Ends every exchange within 100 ms of Ctrl-C, except while a ToTheEnd lives.
class CtrlC {
 public:
  /// For an interface's SetKeepGoing; the context is the object.
  static bool MayGoOn(void* ctrl_c);
  /// Whether it has ended an exchange, so that what that asked for may be missing.
  bool cut_short() const { return cut_short_; }

 private:
  friend class ToTheEnd;

  std::chrono::microseconds to_the_end_until_{0};  // by the steady clock
  bool cut_short_ = false;
};

/// What is asked while it lives is not ended by Ctrl-C: what has begun on the iPod is to be brought
/// to its end.
class ToTheEnd {
 public:
  /// @param most for so long
  explicit ToTheEnd(CtrlC& ctrl_c, std::chrono::microseconds most = std::chrono::hours(24 * 365));
  ~ToTheEnd();
  ToTheEnd(const ToTheEnd&) = delete;
  ToTheEnd& operator=(const ToTheEnd&) = delete;

 private:
  CtrlC& ctrl_c_;
  const std::chrono::microseconds before_;
};

}  // namespace ipodctl
