// SPDX-License-Identifier: MIT
// What the exported classes are made of; hosts have no use for it.
#pragma once

namespace ipodcomm {

/// The callback by which a host stops what goes on.
class KeepGoing {
 public:
  KeepGoing() = default;
  /// @param ask optional; called with `context`, false stops
  KeepGoing(bool (*ask)(void* context), void* context) : ask_(ask), context_(context) {}

  /// Asks. False while the host says stop.
  bool Ask() {
    stopped_ = ask_ != nullptr && !ask_(context_);
    return !stopped_;
  }
  /// What it said when it was asked last.
  bool stopped() const { return stopped_; }
  /// Whether there is anybody to ask.
  bool asks() const { return ask_ != nullptr; }

 private:
  bool (*ask_)(void* context) = nullptr;
  void* context_ = nullptr;
  bool stopped_ = false;
};

}  // namespace ipodcomm
