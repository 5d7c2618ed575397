// SPDX-License-Identifier: MIT
// The legacy serial port on a docked, scripted iPod.
#pragma once

#include "support/packets.h"
#include "support/session_test.h"

namespace test {

/// A port that is made, and not open; "COM3:" exists beside "COM2:".
class LegacyPort : public DockTest {
 protected:
  LegacyPort() { world_.line("COM3:").Plug(other_device_); }
  ~LegacyPort() override { world_.line("COM3:").Unplug(); }

  void Open() { EXPECT_EQ(serial_.openport(), 1); }
  unsigned long Write(ipodserial& serial, const char* text) {
    Bytes bytes = Hex(text);
    return serial.writeport(bytes.data(), static_cast<int>(bytes.size()));
  }
  HANDLE Port() { return ipodserialPeer::Port(serial_); }

  ScriptedDevice other_device_;
  ipodserial serial_;
};

}  // namespace test
