// SPDX-License-Identifier: MIT
// Handles that stay harmless when they are stale.
//
// A handle is a number, never an address: an index into a table, and the generation of the entry it
// names. Closing an entry ends its generation, so every copy of the handle is refused from then on,
// whoever holds it and whatever is opened in its place. A generation never comes twice: an entry
// that has used all of its generations is retired.
#pragma once

#include <cstdint>
#include <memory>
#include <shared_mutex>
#include <vector>

#include "platform/services.h"

namespace ipodcomm::platform {

/// What a handle stands for. Shared: an operation in progress keeps its object alive while the
/// handle is closed under it.
class Object {
 public:
  Object() = default;
  Object(const Object&) = delete;
  Object& operator=(const Object&) = delete;
  virtual ~Object() = default;
};

/// All members may be called from any thread. Looking up takes the table's lock shared, so that two
/// lookups neither wait for each other nor order their threads.
class HandleTable {
 public:
  HandleTable() = default;
  HandleTable(const HandleTable&) = delete;
  HandleTable& operator=(const HandleTable&) = delete;

  /// A fresh handle, never null and never INVALID_HANDLE_VALUE; its value fits in 31 bits. Null
  /// when the table is full (65536 open objects); std::bad_alloc when memory is out.
  HANDLE Add(std::shared_ptr<Object> object);

  /// The open object, or null for any other handle.
  std::shared_ptr<Object> Find(HANDLE handle) const;

  /// The open object if it is a `Kind`, or null.
  template <class Kind>
  std::shared_ptr<Kind> FindAs(HANDLE handle) const {
    return std::dynamic_pointer_cast<Kind>(Find(handle));
  }

  /// Ends the handle and returns what it stood for; null for a handle that is not open.
  std::shared_ptr<Object> Remove(HANDLE handle);

 private:
  struct Entry {
    std::uint32_t generation = 0;
    std::shared_ptr<Object> object;
    std::uint32_t next_free = kNone;
  };
  static constexpr std::uint32_t kNone = 0xFFFFFFFF;

  const Entry* OpenEntry(HANDLE handle) const;
  std::uint32_t PopFree();
  void PushFree(std::uint32_t index);

  mutable std::shared_mutex lock_;
  std::vector<Entry> entries_;
  // A chain through the entries, so that closing a handle needs no memory. The longest closed is
  // used again first.
  std::uint32_t first_free_ = kNone;
  std::uint32_t last_free_ = kNone;
};

}  // namespace ipodcomm::platform
