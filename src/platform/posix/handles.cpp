// SPDX-License-Identifier: MIT
// The handles of this process, and their closing.
#include <utility>

#include "platform/common/out_of_memory.h"
#include "platform/posix/objects.h"
#include "platform/services.h"

namespace ipodcomm::platform {

HandleTable& Handles() {
  static auto* const handles = new HandleTable;
  return *handles;
}

HANDLE NewHandle(std::shared_ptr<Object> object) {
  const HANDLE none = nullptr;
  const HANDLE handle =
      FailWithoutMemory(none, [&object] { return Handles().Add(std::move(object)); });
  if (handle == nullptr) SetLastError(ERROR_NOT_ENOUGH_MEMORY);
  return handle;
}

}  // namespace ipodcomm::platform

using namespace ipodcomm::platform;

BOOL CloseHandle(HANDLE handle) {
  const auto object = OpenObject<Closable>(handle);
  if (object == nullptr) return FALSE;
  // Two threads may close the same handle at once; only one of them finds it still open here.
  if (Handles().Remove(handle) == nullptr) {
    SetLastError(ERROR_INVALID_HANDLE);
    return FALSE;
  }
  object->Close();
  return TRUE;
}
