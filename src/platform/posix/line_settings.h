// SPDX-License-Identifier: MIT
// A port's settings as the terminal driver wants them.
#pragma once

#include <termios.h>

#include "platform/services.h"

namespace ipodcomm::platform {

/// The settings of a port that nobody has configured: 9600 baud, 8 data bits, 1 stop bit.
DCB DefaultSettings();

/// Changes `line` to a raw line with `settings`. False, and no change, for settings that the line
/// cannot have.
bool ApplySettings(const DCB& settings, termios* line);

}  // namespace ipodcomm::platform
