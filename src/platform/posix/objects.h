// SPDX-License-Identifier: MIT
// The handles of this process.
#pragma once

#include "platform/common/handle_table.h"

namespace ipodcomm::platform {

/// What CloseHandle may be asked to close: ports, threads and events.
class Closable : public Object {
 public:
  /// Called once, when the handle has been closed. Others may still be using the object.
  virtual void Close() {}
};

/// Every open handle. Lives as long as the process: threads may outlive main.
HandleTable& Handles();

/// The open object behind a handle; without one, sets code 6 and returns null.
template <class Kind>
std::shared_ptr<Kind> OpenObject(HANDLE handle) {
  auto object = Handles().FindAs<Kind>(handle);
  if (object == nullptr) SetLastError(ERROR_INVALID_HANDLE);
  return object;
}

/// A handle for `object`; when there is none left, sets code 8 and returns null.
HANDLE NewHandle(std::shared_ptr<Object> object);

}  // namespace ipodcomm::platform
