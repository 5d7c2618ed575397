// SPDX-License-Identifier: MIT
// The least that every host does with the library: it makes a session and keeps it.
#include <ipodcomm/CIpodComm.h>

extern "C" __attribute__((visibility("default"))) void* MakeSession() { return new CIpodComm; }
