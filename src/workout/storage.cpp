// SPDX-License-Identifier: MIT
// CIpodComm: what the accessory tells the iPod about its Storage lingo.
#include "ipodcomm/CIpodComm.h"
#include "session/exchange.h"

int CIpodComm::Command_ST_RetAccessoryCaps(unsigned char major, unsigned char minor) {
  storage_write_offset_ = 0;
  unsigned char caps[22] = {};
  caps[19] = 0xFF;
  caps[20] = major;
  caps[21] = minor;
  tagIPOD_WRITE_PARAMS write = ipodcomm::Command(ipodcomm::kStorageLingo, 0x82, caps);
  return WriteCommand(&write) == IPOD_COMM_OK;
}
