// SPDX-License-Identifier: MIT
// Which of the system's terminals are serial ports.
#include "usage/serial_ports.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "support/temporary_folder.h"

using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

TEST(SerialPorts, AreTerminalsWithHardwareBehindThem) {
  const test::TemporaryFolder folder;
  for (const char* name :
       {"ttyUSB1/device", "ttyUSB0/device", "ttyS0/device", "ttyS1/device", "tty7"}) {
    std::filesystem::create_directories(folder.path(name));
  }
  std::ofstream(folder.path("ttyS0/type")) << "4\n";
  std::ofstream(folder.path("ttyS1/type")) << "0\n";
  EXPECT_THAT(usage::SerialPorts(folder.path("")),
              ElementsAre("/dev/ttyS0", "/dev/ttyUSB0", "/dev/ttyUSB1"));
}

TEST(SerialPorts, AreNoneOnASystemThatListsNone) {
  EXPECT_THAT(usage::SerialPorts("/no/such/folder"), IsEmpty());
}

}  // namespace
