// SPDX-License-Identifier: MIT
// CIpodComm: Sports capabilities, asked for and answered, and the user's data.
#include "ipodcomm/CIpodComm.h"
#include "ipodcomm/ipod.h"
#include "protocol/commands.h"
#include "protocol/numbers.h"
#include "session/exchange.h"

using ipodcomm::Answer;
using ipodcomm::Command;
using ipodcomm::kSportsLingo;
namespace sports = ipodcomm::sports;

namespace {

// What the user's data are asked for by.
constexpr unsigned char kFlag = 2;
constexpr unsigned char kWeight = 3;
constexpr unsigned char kValue = 4;

}  // namespace

int CIpodComm::SupportsSports() { return identity_.sports_supported; }

// Answers `01` with version 1.01: `02 01 01`.
void CIpodComm::Return_SportsDeviceVersion() {
  const unsigned char version[] = {0x01, 0x01};
  tagIPOD_WRITE_PARAMS write = Command(kSportsLingo, sports::kRetDeviceVersion, version);
  WriteCommand(&write);
}

// Answers `03` with the device's capabilities: `04 02 00 00`.
void CIpodComm::Return_SportsDeviceCaps() {
  const unsigned char caps[] = {0x02, 0x00, 0x00};
  tagIPOD_WRITE_PARAMS write = Command(kSportsLingo, sports::kRetDeviceCaps, caps);
  WriteCommand(&write);
}

int CIpodComm::Command_SportsGetIpodCaps(unsigned short* caps, unsigned char* extra) {
  unsigned char reply[3] = {};
  if (!Exchange(Command(kSportsLingo, sports::kGetIpodCaps), Answer(sports::kRetIpodCaps, reply)))
    return 0;
  if (caps != nullptr) *caps = ipodcomm::ReadNumber16(reply);
  if (extra != nullptr) *extra = reply[2];
  return 1;
}

bool CIpodComm::KeepsUserData() {
  unsigned short caps = 0;
  return Command_SportsGetIpodCaps(&caps, nullptr) != 0 &&
         (caps & ipod::IPOD_SPORTS_GETIPODCAPS_MASK_USERDATA) != 0;
}

bool CIpodComm::GetUserDataItem(unsigned char type, unsigned char* reply, std::size_t size) {
  const unsigned char data[] = {type};
  return Exchange(Command(kSportsLingo, sports::kGetUserData, data),
                  Answer(sports::kRetUserData, reply, size));
}

// Every item lies behind its data type, which the iPod repeats. Each has a reply of its own: an
// item that the iPod refuses reads as 0, never as the one before.
int CIpodComm::Command_GetUserData(int* flag, unsigned short* weight, unsigned char* value) {
  if (!KeepsUserData()) return 0;
  if (flag != nullptr) {
    unsigned char reply[2] = {};
    if (!GetUserDataItem(kFlag, reply, sizeof reply)) return 0;
    *flag = reply[1] == 2 ? 1 : 0;
  }
  if (weight != nullptr) {
    unsigned char reply[3] = {};
    if (!GetUserDataItem(kWeight, reply, sizeof reply)) return 0;
    *weight = ipodcomm::ReadNumber16(reply + 1);
  }
  if (value != nullptr) {
    unsigned char reply[2] = {};
    if (!GetUserDataItem(kValue, reply, sizeof reply)) return 0;
    *value = reply[1];
  }
  return 1;
}

int CIpodComm::Command_SetUserWeight(unsigned short weight) {
  if (!KeepsUserData()) return 0;
  unsigned char data[3] = {kWeight};
  ipodcomm::WriteNumber16(data + 1, weight);
  unsigned char ack[2] = {};
  return Exchange(Command(kSportsLingo, sports::kSetUserData, data), Answer(sports::kAck, ack)) &&
         ack[0] == 0;
}
