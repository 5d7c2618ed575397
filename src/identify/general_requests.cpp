// SPDX-License-Identifier: MIT
// CIpodComm: single General lingo requests.
#include <cstring>

#include "ipodcomm/CIpodComm.h"
#include "protocol/commands.h"
#include "protocol/numbers.h"
#include "protocol/text.h"
#include "session/exchange.h"

using ipodcomm::Answer;
using ipodcomm::Command;
using ipodcomm::kGeneralLingo;
namespace general = ipodcomm::general;

namespace {

// Texts are converted from this many bytes, whatever their length.
constexpr std::size_t kTextBytes = 256;

}  // namespace

int CIpodComm::Command_RequestRemoteUIMode() {
  return ExchangeForGeneralAck(Command(kGeneralLingo, general::kRequestRemoteUiMode));
}

int CIpodComm::Command_EnterRemoteUIMode() {
  const unsigned char mode[] = {0x01};
  if (ExchangeForGeneralAck(Command(kGeneralLingo, general::kSetUiMode, mode))) return 1;
  return ExchangeForGeneralAck(Command(kGeneralLingo, general::kEnterRemoteUiMode));
}

int CIpodComm::Command_RequestIpodName(wchar_t* name, unsigned long capacity) {
  unsigned char reply[kTextBytes] = {};
  if (!Exchange(Command(kGeneralLingo, general::kRequestIpodName),
                Answer(general::kReturnIpodName, reply))) {
    return 0;
  }
  ipodcomm::ClearCutCharacter(reply, kTextBytes);
  ipodcomm::TextFromUtf8(reply, kTextBytes, name, capacity);
  return 1;
}

int CIpodComm::Command_RequestIpodModelNum(unsigned long* model_id, wchar_t* text,
                                           unsigned long capacity) {
  constexpr std::size_t kTextPosition = 4;
  // The text is converted from 256 bytes behind the identifier, so four spare bytes follow the
  // reply.
  unsigned char reply[kTextPosition + kTextBytes] = {};
  if (!Exchange(Command(kGeneralLingo, general::kRequestIpodModelNumber),
                Answer(general::kReturnIpodModelNumber, reply, kTextBytes))) {
    return 0;
  }
  if (model_id != nullptr) *model_id = ipodcomm::ReadNumber32(reply);
  ipodcomm::ClearCutCharacter(reply + kTextPosition, kTextBytes - kTextPosition);
  ipodcomm::TextFromUtf8(reply + kTextPosition, kTextBytes, text, capacity);
  return 1;
}

// The sense of the result is the reverse of every other operation's. Hosts in the field compare
// with 0, so it stays.
int CIpodComm::Command_SetEventNotification(unsigned char* mask) {
  unsigned char reply[2] = {};
  const bool exchanged = Exchange(Command(kGeneralLingo, general::kSetEventNotification, mask, 8),
                                  Answer(general::kAck, reply));
  return !exchanged && reply[0] == 0;
}

int CIpodComm::Command_GetEventNotification(unsigned char* mask) {
  unsigned char reply[8] = {};
  tagIPOD_READ_PARAMS read = Answer(general::kRetSupportedEventNotification, reply);
  if (!Exchange(Command(kGeneralLingo, general::kGetSupportedEventNotification), &read) ||
      read.received_command != general::kRetSupportedEventNotification)
    return 0;
  std::memcpy(mask, reply, read.stored);
  return 1;
}

int CIpodComm::Command_RequestLingoProtocolVersion(unsigned char lingo, unsigned char* major,
                                                   unsigned char* minor) {
  const unsigned char data[] = {lingo};
  unsigned char reply[3] = {};
  tagIPOD_READ_PARAMS read = Answer(general::kReturnLingoProtocolVersion, reply);
  if (!Exchange(Command(kGeneralLingo, general::kRequestLingoProtocolVersion, data), &read) ||
      read.ack_received != 0)
    return 0;
  const tagIPOD_VERSION version = {reply[1], reply[2]};
  if (tagIPOD_VERSION* known = LingoVersion(lingo)) *known = version;
  if (major != nullptr) *major = version.major;
  if (minor != nullptr) *minor = version.minor;
  return 1;
}

int CIpodComm::Command_RequestLingoProtocolVersion(unsigned char lingo, tagIPOD_VERSION* version) {
  if (version == nullptr) return 0;
  return Command_RequestLingoProtocolVersion(lingo, &version->major, &version->minor);
}

// The session's record of a lingo's version, null for the lingoes that it does not use.
tagIPOD_VERSION* CIpodComm::LingoVersion(unsigned char lingo) {
  switch (lingo) {
    case ipodcomm::kGeneralLingo:
      return &identity_.general;
    case ipodcomm::kDisplayRemoteLingo:
      return &identity_.display_remote;
    case ipodcomm::kExtendedLingo:
      return &identity_.extended;
    case ipodcomm::kSportsLingo:
      return &identity_.sports;
    case ipodcomm::kStorageLingo:
      return &identity_.storage;
    default:
      return nullptr;
  }
}

int CIpodComm::Command_RequestMaxPayloadSize() {
  unsigned char reply[2] = {};
  if (!Exchange(Command(kGeneralLingo, general::kRequestMaxPayloadSize),
                Answer(general::kReturnMaxPayloadSize, reply))) {
    return 0;
  }
  identity_.max_payload_size = ipodcomm::ReadNumber16(reply);
  return 1;
}

unsigned short CIpodComm::GetMaxPayloadSize() { return identity_.max_payload_size; }

int CIpodComm::Command_CancelCommand(unsigned short transaction_id) {
  constexpr int kLooks = 10;
  constexpr unsigned short kNothing = 0xFFFF;
  SetOwnTransactionId(transaction_id);
  tagIPOD_WRITE_PARAMS write = Command(kGeneralLingo, general::kCancelCommand);
  if (WriteCommand(&write) != IPOD_COMM_OK) return 1;
  for (int look = 0; look < kLooks; ++look) {
    const unsigned short command = PeekNextReadPacket();
    if (command == kNothing) break;
    tagSERIAL_PACKET dropped = {};
    GetNextReadPacket(&dropped);
    if (command == general::kAck) break;
  }
  return 1;
}
