// SPDX-License-Identifier: MIT
// Logs an error from inside another library, as the library under a host does.
#include "ipodcomm/TraceLog.h"

__attribute__((visibility("default"))) void LogFromLibrary() {
  CKORVATrace::LogSoftwareError(L"CIpodSerial::Open", L"Error %d", 5);
}
