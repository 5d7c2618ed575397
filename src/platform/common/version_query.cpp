// SPDX-License-Identifier: MIT
// Looks up values in a version resource that was read from a file.
#include "platform/common/version_block.h"
#include "platform/services.h"

BOOL VerQueryValueW(const void* block, const wchar_t* sub_block, void** value, UINT* length) {
  ipodcomm::platform::VersionValue found;
  if (sub_block == nullptr || value == nullptr || length == nullptr ||
      !ipodcomm::platform::FindVersionValue(block, sub_block, &found)) {
    SetLastError(ERROR_RESOURCE_TYPE_NOT_FOUND);
    return FALSE;
  }
  // The signature is older than const; the text is not to be written to.
  *value = const_cast<void*>(found.data);
  *length = found.length;
  return TRUE;
}
