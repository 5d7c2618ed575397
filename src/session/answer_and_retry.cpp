// SPDX-License-Identifier: MIT
// CIpodComm: waiting for answers, and retrying.
#include <cstring>

#include "ipodcomm/CIpodComm.h"
#include "protocol/commands.h"
#include "protocol/frame.h"
#include "session/answer_rules.h"

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
  const tagIPOD_COMM_ERROR result =
      conduct_.robust != 0 ? ExchangeRobustly(*write, read) : ExchangeByCommand(write, read);
  NoteExchange(*write, *read, result);
  return result;
}

int CIpodComm::GetLastExchange(tagIPOD_EXCHANGE* exchange) {
  if (exchange == nullptr) return 0;
  *exchange = last_exchange_;
  return 1;
}

// An ACK that refuses is itself the answer where an ACK was awaited; elsewhere it is kept apart.
// Its status is not kept by the default conduct where the answer would be longer than an ACK.
void CIpodComm::NoteExchange(const tagIPOD_WRITE_PARAMS& write, const tagIPOD_READ_PARAMS& read,
                             tagIPOD_COMM_ERROR result) {
  last_exchange_ = {IPOD_EXCHANGE_UNANSWERED, write.command, write.lingo, 0};
  bool refused = false;
  if (read.ack_received != 0 && read.stored == 0) {
    std::memcpy(&last_exchange_.status, &read.ack, sizeof last_exchange_.status);
    refused = true;
  } else if (result == IPOD_COMM_OK && read.stored != 0 &&
             ipodcomm::IsAck({read.lingo, read.received_command, 0, 0, nullptr})) {
    last_exchange_.status = read.buffer[0];
    refused = last_exchange_.status != 0;
  }
  if (refused) {
    last_exchange_.result = IPOD_EXCHANGE_REFUSED;
  } else if (result == IPOD_COMM_OK) {
    last_exchange_.result = IPOD_EXCHANGE_ANSWERED;
  }
}

// Recognises an answer by its command alone.
tagIPOD_COMM_ERROR CIpodComm::ExchangeByCommand(tagIPOD_WRITE_PARAMS* write,
                                                tagIPOD_READ_PARAMS* read) {
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
