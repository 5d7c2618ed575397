// SPDX-License-Identifier: MIT
// What the exported classes are made of; hosts have no use for it.
#pragma once

#include <atomic>

namespace ipodcomm {

/// A flag, counter or handle that one thread writes while others read it. Copies take its value.
template <typename T>
class Shared {
 public:
  Shared(T value) : value_(value) {}  // NOLINT(google-explicit-constructor): reads like the value
  Shared(const Shared& other) : value_(other.value_.load()) {}
  Shared& operator=(const Shared& other) {
    value_ = other.value_.load();
    return *this;
  }
  Shared& operator=(T value) {
    value_ = value;
    return *this;
  }
  ~Shared() = default;

  operator T() const { return value_.load(); }  // NOLINT(google-explicit-constructor)
  T exchange(T value) { return value_.exchange(value); }
  /// Adds in one step. @return the value before.
  T fetch_add(T amount) { return value_.fetch_add(amount); }

 private:
  std::atomic<T> value_;
};

}  // namespace ipodcomm
