// SPDX-License-Identifier: MIT
// What a service does when memory is out: it fails like any other, and throws nothing.
#pragma once

#include <new>

#include "platform/services.h"

namespace ipodcomm::platform {

/// The result of `work`; when that finds no memory, `failure`, with code 8 for GetLastError.
template <class Result, class Work>
Result FailWithoutMemory(Result failure, Work work) {
  try {
    return work();
  } catch (const std::bad_alloc&) {
    SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    return failure;
  }
}

}  // namespace ipodcomm::platform
