// SPDX-License-Identifier: MIT
// A fuzzer's bytes, taken from the front: what is missing reads as 0.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace fuzz {

class Input {
 public:
  Input(const std::uint8_t* data, std::size_t size) : next_(data), end_(data + size) {}

  bool empty() const { return next_ == end_; }
  std::uint8_t Byte() { return empty() ? std::uint8_t{0} : *next_++; }
  /// As many as there are, at most `count`.
  std::vector<std::uint8_t> Bytes(std::size_t count) {
    const std::uint8_t* const begin = next_;
    next_ += std::min(count, static_cast<std::size_t>(end_ - next_));
    return {begin, next_};
  }
  std::vector<std::uint8_t> Rest() { return {std::exchange(next_, end_), end_}; }

 private:
  const std::uint8_t* next_;
  const std::uint8_t* const end_;
};

}  // namespace fuzz
