// SPDX-License-Identifier: MIT
// Where the platform's device manager keeps the running serial driver.
#pragma once

#include "platform/services.h"

namespace ipodcomm {

/// Handle of the active serial driver, from the value "Hnd" under "Drivers\Active\18".
/// INVALID_HANDLE_VALUE when it is unknown; a missing value is created with that default (-1).
HANDLE ActiveSerialDriver();

}  // namespace ipodcomm
