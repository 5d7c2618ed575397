// SPDX-License-Identifier: MIT
// The program's own trace library, which says nothing: so many failures are logged here on purpose.
#include "ipodcomm/TraceLog.h"

void CKORVATrace::LogSoftwareError(const wchar_t* /*source*/, const wchar_t* /*format*/, ...) {}
