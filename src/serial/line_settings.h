// SPDX-License-Identifier: MIT
// The line's fixed settings.
#pragma once

#include "platform/services.h"

namespace ipodcomm {

/// 57600 baud, 8 data bits, no parity, no flow control of any kind.
DCB LineSettings();

/// Reads return within 2 ms; writes never time out.
COMMTIMEOUTS LineTimeouts();

}  // namespace ipodcomm
