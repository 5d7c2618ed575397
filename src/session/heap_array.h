// SPDX-License-Identifier: MIT
// Memory of a size that only the call tells: payloads and texts.
#pragma once

#include <cstddef>
#include <utility>

#include "platform/services.h"

namespace ipodcomm {

/// Zeroed elements from the platform's heap, which get them back at the end of the scope. Null when
/// the heap has none: nothing is thrown, so the operation fails as it describes.
template <class Element>
class HeapArray {
 public:
  explicit HeapArray(std::size_t count)
      : data_(count <= kMostElements
                  ? static_cast<Element*>(LocalAlloc(LPTR, count * sizeof(Element)))
                  : nullptr) {}
  HeapArray(HeapArray&& other) noexcept : data_(std::exchange(other.data_, nullptr)) {}
  HeapArray(const HeapArray&) = delete;
  HeapArray& operator=(const HeapArray&) = delete;
  ~HeapArray() {
    if (data_ != nullptr) LocalFree(data_);
  }

  Element* data() const { return data_; }

 private:
  static constexpr std::size_t kMostElements = static_cast<std::size_t>(-1) / sizeof(Element);

  Element* data_;
};

}  // namespace ipodcomm
