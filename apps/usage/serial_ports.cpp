// SPDX-License-Identifier: MIT
#include "usage/serial_ports.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <system_error>

namespace usage {

namespace {

namespace fs = std::filesystem;

std::string LineOf(const fs::path& file) {
  std::string line;
  std::ifstream stream(file);
  std::getline(stream, line);
  return line;
}

// The serial driver of a PC has terminals for ports that might be; their type is 0.
bool HasHardware(const fs::path& terminal) {
  std::error_code ignored;
  return fs::exists(terminal / "device", ignored) && LineOf(terminal / "type") != "0";
}

// The adapter that holds a port; empty for a port that is built in.
fs::path UsbDevice(const fs::path& terminal) {
  std::error_code failed;
  fs::path folder = fs::canonical(terminal / "device", failed);
  if (failed) return {};
  for (; folder.has_relative_path(); folder = folder.parent_path()) {
    if (fs::exists(folder / "idVendor", failed)) return folder;
  }
  return {};
}

// Many products are called by their maker's name first.
std::string AdapterName(const fs::path& usb) {
  const std::string maker = LineOf(usb / "manufacturer");
  std::string product = LineOf(usb / "product");
  if (product.empty()) {
    product = "USB adapter " + LineOf(usb / "idVendor") + ":" + LineOf(usb / "idProduct");
  }
  return maker.empty() || product.rfind(maker, 0) == 0 ? product : maker + " " + product;
}

std::string LinkTo(const std::string& name, const std::string& root) {
  std::error_code failed;
  for (const auto& link : fs::directory_iterator(root + "/dev/serial/by-id", failed)) {
    if (fs::read_symlink(link.path(), failed).filename() == name) return link.path().string();
  }
  return {};
}

SerialPort PortBehind(const fs::path& terminal, const std::string& root) {
  const std::string name = terminal.filename().string();
  SerialPort port;
  port.device = root + "/dev/" + name;
  port.link = LinkTo(name, root);
  const fs::path usb = UsbDevice(terminal);
  if (usb.empty()) return port;
  port.adapter = AdapterName(usb);
  port.serial_number = LineOf(usb / "serial");
  return port;
}

}  // namespace

std::string SystemRoot() {
  const char* const root = std::getenv("IPODCTL_SYSTEM_ROOT");
  return root == nullptr ? "" : root;
}

std::vector<SerialPort> SerialPorts(const std::string& root) {
  std::vector<SerialPort> ports;
  std::error_code none;
  for (const auto& terminal : fs::directory_iterator(root + "/sys/class/tty", none)) {
    if (HasHardware(terminal.path())) ports.push_back(PortBehind(terminal.path(), root));
  }
  std::sort(ports.begin(), ports.end(), [](const SerialPort& one, const SerialPort& other) {
    return one.device < other.device;
  });
  return ports;
}

}  // namespace usage
