// SPDX-License-Identifier: MIT
// Which of the system's terminals are serial ports.
#include "usage/serial_ports.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>

#include "support/temporary_folder.h"

using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

using usage::SerialPort;

// A system's folders, with the adapters that a test plugs in.
class System {
 public:
  void AddBuiltIn(const std::string& name, const std::string& type) const {
    std::filesystem::create_directories(folder_.path("sys/class/tty/" + name + "/device"));
    Write("sys/class/tty/" + name + "/type", type);
  }

  // What the adapter tells: "product", "manufacturer" and others.
  void AddUsb(const std::string& name, const std::map<std::string, std::string>& told) const {
    const std::string usb = "sys/devices/pci0/usb1/" + name + "-adapter";
    std::filesystem::create_directories(folder_.path(usb + "/interface/" + name));
    // The adapter's own hub, which is none.
    Write("sys/devices/pci0/usb1/product", "Host Controller");
    Write("sys/devices/pci0/usb1/idVendor", "1d6b");
    for (const auto& [file, text] : told) Write(usb + "/" + file, text);
    std::filesystem::create_directories(folder_.path("sys/class/tty/" + name));
    std::filesystem::create_symlink(folder_.path(usb + "/interface/" + name),
                                    folder_.path("sys/class/tty/" + name + "/device"));
  }

  void AddLink(const std::string& link, const std::string& name) const {
    std::filesystem::create_directories(folder_.path("dev/serial/by-id"));
    std::filesystem::create_symlink("../../" + name, folder_.path("dev/serial/by-id/" + link));
  }

  std::string root() const { return folder_.path(""); }
  std::vector<SerialPort> ports() const { return usage::SerialPorts(root()); }

 private:
  void Write(const std::string& file, const std::string& line) const {
    std::ofstream(folder_.path(file)) << line << "\n";
  }

  test::TemporaryFolder folder_;
};

TEST(SerialPorts, AreTerminalsWithHardwareBehindThem) {
  const System system;
  system.AddUsb("ttyUSB1", {{"idVendor", "0403"}});
  system.AddUsb("ttyUSB0", {{"idVendor", "0403"}});
  system.AddBuiltIn("ttyS0", "4");
  system.AddBuiltIn("ttyS1", "0");
  std::filesystem::create_directories(system.root() + "sys/class/tty/tty7");
  std::vector<std::string> devices;
  for (const SerialPort& port : system.ports()) devices.push_back(port.device);
  const std::string dev = system.root() + "/dev/";
  EXPECT_THAT(devices, ElementsAre(dev + "ttyS0", dev + "ttyUSB0", dev + "ttyUSB1"));
}

TEST(SerialPorts, TellTheirAdaptersAsFarAsThoseTellThemselves) {
  const System system;
  system.AddBuiltIn("ttyS0", "4");
  system.AddUsb("ttyUSB0", {{"idVendor", "0403"},
                            {"manufacturer", "Serial Works"},
                            {"product", "Line One"},
                            {"serial", "A9007"}});
  system.AddUsb("ttyUSB1", {{"idVendor", "0403"},
                            {"manufacturer", "Serial Works"},
                            {"product", "Serial Works Line Two"}});
  system.AddUsb("ttyUSB2", {{"idVendor", "0403"}, {"idProduct", "6001"}});
  system.AddLink("usb-Line_One-A9007", "ttyUSB0");
  const std::vector<SerialPort> ports = system.ports();
  ASSERT_EQ(ports.size(), 4U);
  EXPECT_EQ(ports[0].adapter, "");
  EXPECT_EQ(ports[0].serial_number, "");
  EXPECT_EQ(ports[0].link, "");
  EXPECT_EQ(ports[1].adapter, "Serial Works Line One");
  EXPECT_EQ(ports[1].serial_number, "A9007");
  EXPECT_EQ(ports[1].link, system.root() + "/dev/serial/by-id/usb-Line_One-A9007");
  EXPECT_EQ(ports[2].adapter, "Serial Works Line Two");
  EXPECT_EQ(ports[2].link, "");
  EXPECT_EQ(ports[3].adapter, "USB adapter 0403:6001");
}

TEST(SerialPorts, AreNoneOnASystemThatListsNone) {
  EXPECT_THAT(usage::SerialPorts("/no/such/folder"), IsEmpty());
}

}  // namespace
