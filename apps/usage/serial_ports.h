// SPDX-License-Identifier: MIT
// The serial ports of this machine.
#pragma once

#include <string>
#include <vector>

namespace usage {

struct SerialPort {
  std::string device;         // "/dev/ttyUSB0"
  std::string adapter;        // "FTDI FT232R USB UART"; empty for a port that is built in
  std::string serial_number;  // of the adapter; empty when it has none
  std::string link;           // a name that stays when ports come and go; empty when there is none
};

/// Where the system's folders /sys and /dev are: "", or as IPODCTL_SYSTEM_ROOT says, by which tests
/// put adapters of their own in their place.
std::string SystemRoot();

/// The ports that have hardware behind them, in order.
std::vector<SerialPort> SerialPorts(const std::string& root = SystemRoot());

}  // namespace usage
