// SPDX-License-Identifier: MIT
#include "usage/serial_ports.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <system_error>

namespace usage {

namespace {

// The serial driver of a PC has terminals for ports that might be; their type is 0.
bool HasHardware(const std::filesystem::path& terminal) {
  std::error_code ignored;
  if (!std::filesystem::exists(terminal / "device", ignored)) return false;
  std::string type;
  std::ifstream(terminal / "type") >> type;
  return type != "0";
}

}  // namespace

std::vector<std::string> SerialPorts(const std::string& terminals) {
  std::vector<std::string> ports;
  std::error_code none;
  for (const auto& terminal : std::filesystem::directory_iterator(terminals, none)) {
    if (HasHardware(terminal.path()))
      ports.push_back("/dev/" + terminal.path().filename().string());
  }
  std::sort(ports.begin(), ports.end());
  return ports;
}

}  // namespace usage
