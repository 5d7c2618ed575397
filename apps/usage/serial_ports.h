// SPDX-License-Identifier: MIT
// The serial ports of this machine.
#pragma once

#include <string>
#include <vector>

namespace usage {

/// The devices that have hardware behind them, such as /dev/ttyUSB0, in order.
/// @param terminals the folder in which the system lists its terminals
std::vector<std::string> SerialPorts(const std::string& terminals = "/sys/class/tty");

}  // namespace usage
