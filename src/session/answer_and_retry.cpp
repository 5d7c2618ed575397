// SPDX-License-Identifier: MIT
// CIpodComm: waiting for answers, and retrying.
#include "ipodcomm/CIpodComm.h"
#include "protocol/commands.h"
#include "protocol/frame.h"

tagIPOD_COMM_ERROR CIpodComm::ReadCommand(tagIPOD_READ_PARAMS* read) {
  tagIPOD_COMM_ERROR result = IPOD_COMM_NO_ANSWER;
  int keep_reading = 1;
  tagSERIAL_PACKET packet = {};
  while (keep_reading != 0 && GetNextReadPacket(&packet)) {
    read->lingo = ipodcomm::ParseFrame(ipodcomm::FrameBytes(packet)).lingo;
    switch (read->lingo) {
      case ipodcomm::kGeneralLingo:
        result = ProcessLingoGeneralReadCommand(packet.data, packet.length, read, &keep_reading);
        break;
      case ipodcomm::kDisplayRemoteLingo:
        result =
            ProcessLingoDisplayRemoteReadCommand(packet.data, packet.length, read, &keep_reading);
        break;
      case ipodcomm::kExtendedLingo:
        result = ProcessLingoExtendedReadCommand(packet.data, packet.length, read, &keep_reading);
        break;
      case ipodcomm::kSportsLingo:
        result = ProcessLingoSportsReadCommand(packet.data, packet.length, read, &keep_reading);
        break;
      case ipodcomm::kStorageLingo:
        result = ProcessLingoStorageReadCommand(packet.data, packet.length, read, &keep_reading);
        break;
      default:  // dropped
        break;
    }
  }
  return result;
}

tagIPOD_COMM_ERROR CIpodComm::WriteReadCommand(tagIPOD_WRITE_PARAMS* write,
                                               tagIPOD_READ_PARAMS* read) {
  if (conduct_.robust != 0) return ExchangeRobustly(*write, read);
  tagIPOD_COMM_ERROR result = IPOD_COMM_NO_ANSWER;
  for (std::int32_t attempt = 0; attempt < read->retries; ++attempt) {
    // A failed write skips the read and keeps the result of the attempt before.
    if (WriteCommand(write) != IPOD_COMM_OK) continue;
    if (write->lingo == ipodcomm::kSimpleRemoteLingo) return IPOD_COMM_OK;
    result = ReadCommand(read);
    if (result == IPOD_COMM_OK) return IPOD_COMM_OK;
  }
  return result == IPOD_COMM_NO_ANSWER ? IPOD_COMM_RETRIES_EXHAUSTED : result;
}
