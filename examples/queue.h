// SPDX-License-Identifier: MIT
// What one thread leaves for another.
#pragma once

#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <optional>
#include <utility>

namespace example {

template <typename Item>
class Queue {
 public:
  void Push(Item item) {
    {
      const std::lock_guard<std::mutex> lock(mutex_);
      items_.push_back(std::move(item));
    }
    filled_.notify_one();
  }

  /// The oldest item; none when `patience` passes without one.
  std::optional<Item> Pop(std::chrono::milliseconds patience) {
    std::unique_lock<std::mutex> lock(mutex_);
    if (!filled_.wait_for(lock, patience, [this] { return !items_.empty(); })) return std::nullopt;
    Item item = std::move(items_.front());
    items_.pop_front();
    return item;
  }

  void Clear() {
    const std::lock_guard<std::mutex> lock(mutex_);
    items_.clear();
  }

 private:
  std::mutex mutex_;
  std::condition_variable filled_;
  std::deque<Item> items_;
};

}  // namespace example
