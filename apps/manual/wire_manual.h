// SPDX-License-Identifier: MIT
// The manual page about what goes over the line.
#pragma once

#include <string>

/// ipodcomm-wire(7), for man.
std::string WireManualPage();
