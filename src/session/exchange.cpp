// SPDX-License-Identifier: MIT
// CIpodComm: what operations call to send a command and check its answer in one step.
#include "session/exchange.h"

#include <cstring>

#include "ipodcomm/CIpodComm.h"
#include "ipodcomm/TraceLog.h"

namespace ipodcomm {

void StoreData(const ReceivedFrame& answer, tagIPOD_READ_PARAMS* read) {
  const auto capacity = static_cast<std::uint32_t>(std::max(read->size, std::int32_t{0}));
  read->stored = std::min(capacity, answer.data_length);
  read->size = static_cast<std::int32_t>(read->stored);
  if (read->stored != 0) std::memcpy(read->buffer, answer.data, read->stored);
}

}  // namespace ipodcomm

bool CIpodComm::Exchange(tagIPOD_WRITE_PARAMS write, tagIPOD_READ_PARAMS* read) {
  return WriteReadCommand(&write, read) == IPOD_COMM_OK;
}

bool CIpodComm::Exchange(tagIPOD_WRITE_PARAMS write, tagIPOD_READ_PARAMS read) {
  return Exchange(write, &read);
}

// Sends a General command that is answered by an ACK (status, command); true on status 0 for it.
bool CIpodComm::ExchangeForGeneralAck(tagIPOD_WRITE_PARAMS write) {
  unsigned char ack[2] = {};
  return Exchange(write, ipodcomm::Answer(ipodcomm::general::kAck, ack)) && ack[0] == 0 &&
         ack[1] == write.command;
}

// Sends an Extended Interface (or Simple Remote) command that is answered by an ACK (status,
// command), whose status may be asked for; true when the exchange succeeded.
bool CIpodComm::ExchangeForExtendedAck(tagIPOD_WRITE_PARAMS write, unsigned char* status) {
  unsigned char ack[3] = {};
  if (!Exchange(write, ipodcomm::Answer(ipodcomm::extended::kAck, ack))) return false;
  if (status != nullptr) *status = ack[0];
  return true;
}

// The same; true on status 0, while any other is logged.
bool CIpodComm::ExchangeForLoggedAck(tagIPOD_WRITE_PARAMS write, const wchar_t* function,
                                     const wchar_t* refusal) {
  unsigned char status = 0;
  if (!ExchangeForExtendedAck(write, &status)) return false;
  if (status != 0) CKORVATrace::LogSoftwareError(function, refusal, status);
  return status == 0;
}
