// SPDX-License-Identifier: MIT
// CIpodComm: what the accessory tells the iPod about its Sports lingo.
#include "ipodcomm/CIpodComm.h"
#include "session/exchange.h"

int CIpodComm::SupportsSports() { return identity_.sports_supported; }

/// Answers `01` with version 1.01: `02 01 01`.
void CIpodComm::Return_SportsDeviceVersion() {
  const unsigned char version[] = {0x01, 0x01};
  tagIPOD_WRITE_PARAMS write = ipodcomm::Command(ipodcomm::kSportsLingo, 0x02, version);
  WriteCommand(&write);
}

/// Answers `03` with the device's capabilities: `04 02 00 00`.
void CIpodComm::Return_SportsDeviceCaps() {
  const unsigned char caps[] = {0x02, 0x00, 0x00};
  tagIPOD_WRITE_PARAMS write = ipodcomm::Command(ipodcomm::kSportsLingo, 0x04, caps);
  WriteCommand(&write);
}
