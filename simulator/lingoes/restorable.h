// SPDX-License-Identifier: MIT
// A setting that an accessory may change for good or only for as long as it is docked.

#pragma once

#include <optional>

namespace ipodsim {

/// What an accessory may ask for along with a new value.
enum class AtDetach { kKeep, kRestore };

/// Remembers what a setting was before the accessory asked to have it restored.
template <typename Value>
class Restorable {
 public:
  /// To be called before the setting is changed from `current`. What is restored is the value from
  /// before the first change; a later change for good calls that off.
  void NoticeChange(const Value& current, AtDetach at_detach) {
    if (at_detach == AtDetach::kKeep) {
      original_.reset();
    } else if (!original_) {
      original_ = current;
    }
  }
  /// What to set back to, once.
  std::optional<Value> PopOriginal() {
    std::optional<Value> original;
    original.swap(original_);
    return original;
  }

 private:
  std::optional<Value> original_;
};

}  // namespace ipodsim
