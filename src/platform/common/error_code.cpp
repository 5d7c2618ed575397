// SPDX-License-Identifier: MIT
// The last error code, one per thread.
#include "platform/services.h"

namespace {
thread_local DWORD last_error = ERROR_SUCCESS;
}

DWORD GetLastError() { return last_error; }

void SetLastError(DWORD code) { last_error = code; }
