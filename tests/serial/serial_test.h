// SPDX-License-Identifier: MIT
// A serial port of the library on a docked, scripted iPod.
#pragma once

#include <utility>

#include "support/packets.h"
#include "support/session_test.h"

namespace test {

/// A port that is made, and not open. Its locks are "section1" (state) and "section2" (port), its
/// event is "event1".
class SerialTest : public DockTest {
 protected:
  /// Opens without a read thread.
  void OpenForRawAccess() { EXPECT_EQ(serial_.Open(false), 0); }
  /// Opens with a read thread and lets it begin its first read.
  void OpenForPackets() {
    EXPECT_EQ(serial_.Open(true), 0);
    world_.Settle();
  }
  bool Running() { return CIpodSerialPeer::Running(serial_) != 0; }
  bool ThreadRunning() { return CIpodSerialPeer::ThreadRunning(serial_) != 0; }
  HANDLE Port() { return CIpodSerialPeer::Port(serial_); }

  /// What is queued, front first, as text; takes it.
  std::vector<std::string> DrainPackets() {
    std::vector<std::string> packets;
    tagSERIAL_PACKET packet = {};
    while (serial_.GetNextPacket(&packet, 0)) packets.push_back(Text(packet));
    return packets;
  }

  CIpodSerial serial_;
};

}  // namespace test
