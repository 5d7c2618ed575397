// SPDX-License-Identifier: MIT
// CIpodComm: waiting for answers, and retrying.
#include "identify/identify_report.h"
#include "ipodcomm/CIpodComm.h"
#include "platform/services.h"
#include "protocol/commands.h"
#include "protocol/frame.h"
#include "protocol/transaction_ids.h"
#include "session/own_answers.h"

using ipodcomm::OwnAnswers;

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
  OwnAnswers own(*write, read->expected_command);
  AwaitStopped();
  if (conduct_.robust == 0) {
    const tagIPOD_COMM_ERROR result = ExchangeByCommand(*write, &own, read);
    NoteExchange(own, 0);
    return result;
  }
  const DWORD started_ms = GetTickCount();
  const tagIPOD_COMM_ERROR result = ExchangeRobustly(*write, &own, read);
  NoteExchange(own, static_cast<std::uint32_t>(GetTickCount() - started_ms));
  return result;
}

int CIpodComm::GetLastExchange(tagIPOD_EXCHANGE* exchange) {
  if (exchange == nullptr) return 0;
  *exchange = last_exchange_;
  return 1;
}

void CIpodComm::NoteExchange(const OwnAnswers& own, std::uint32_t took_ms) {
  if (own.noted().lingo == ipodcomm::kSimpleRemoteLingo) return;  // has no answer
  // One that was stopped before it began is no step of the report.
  if (identifying_ != 0 && own.noted().attempts == 0 && StoppedByHost()) return;
  last_exchange_ = own.noted();
  last_exchange_.took_ms = took_ms;
  if (identifying_ != 0) ipodcomm::AddStep(&identify_report_, last_exchange_);
}

// Sends a command once for an exchange, which then knows the attempt.
bool CIpodComm::Attempt(const tagIPOD_WRITE_PARAMS& write, OwnAnswers* own) {
  const bool with_id =
      transaction_id_mode_ != 0 && ipodcomm::MayCarryTransactionId(write.lingo, write.command);
  std::uint16_t transaction_id = 0;
  if (Send(write, &transaction_id) != IPOD_COMM_OK) return false;
  with_id ? own->AddAttempt(transaction_id) : own->AddAttempt();
  return true;
}

// Recognises an answer by its command alone. What really came is only noted.
tagIPOD_COMM_ERROR CIpodComm::ExchangeByCommand(const tagIPOD_WRITE_PARAMS& write, OwnAnswers* own,
                                                tagIPOD_READ_PARAMS* read) {
  tagIPOD_COMM_ERROR result = IPOD_COMM_NO_ANSWER;
  watched_ = own;
  for (std::int32_t attempt = 0; attempt < read->retries && MayGoOn(); ++attempt) {
    // A failed write skips the read and keeps the result of the attempt before.
    if (!Attempt(write, own)) continue;
    result = write.lingo == ipodcomm::kSimpleRemoteLingo ? IPOD_COMM_OK : ReadCommand(read);
    if (result == IPOD_COMM_OK || StoppedByHost()) break;
  }
  watched_ = nullptr;
  if (StoppedByHost()) {
    // Also where the silence that was cut short would have made a success of what came before it.
    earlier_.NoteStopped(write, own->noted().attempts);
    return IPOD_COMM_RETRIES_EXHAUSTED;
  }
  return result == IPOD_COMM_NO_ANSWER ? IPOD_COMM_RETRIES_EXHAUSTED : result;
}
