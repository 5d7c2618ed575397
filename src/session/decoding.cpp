// SPDX-License-Identifier: MIT
// CIpodComm: the decoders, which find the awaited answer among the received packets.
#include <algorithm>
#include <cstring>

#include "ipodcomm/CIpodComm.h"
#include "platform/services.h"
#include "protocol/commands.h"
#include "protocol/frame.h"
#include "protocol/transaction_ids.h"
#include "session/exchange.h"
#include "session/ipod_requests.h"
#include "session/keep_going.h"

using ipodcomm::FrameBytes;
using ipodcomm::ReceivedFrame;

namespace {

// The General lingo's, and the number that the decoders of the other lingoes accept.
constexpr std::uint16_t kAck = ipodcomm::general::kAck;
constexpr std::uint8_t kCommandPending = 0x06;

void SetKeepReading(int* keep_reading, bool keep) {
  if (keep_reading != nullptr) *keep_reading = keep ? 1 : 0;
}

// Stores the frame's data, cut to the buffer, when it is the awaited answer.
bool StoreAnswer(const ReceivedFrame& frame, tagIPOD_READ_PARAMS* read) {
  if (frame.command != read->expected_command) return false;
  ipodcomm::StoreData(frame, read);
  return true;
}

// Records an ACK. Its bytes are kept as they lie in the frame, the status first; the buffer's size
// says how many.
void StoreAck(const ReceivedFrame& frame, tagIPOD_READ_PARAMS* read) {
  read->ack_received = 1;
  if (read->size != 1 && read->size != 2) return;
  const FrameBytes data(frame.data, frame.data_length);
  const unsigned char bytes[] = {data[0], data[1]};
  std::memcpy(&read->ack, bytes, static_cast<std::size_t>(read->size));
}

bool StoreAcceptedAck(const ReceivedFrame& frame, tagIPOD_READ_PARAMS* read) {
  if (frame.command != kAck || read->accept_ack == 0) return false;
  StoreAck(frame, read);
  return true;
}

// An ACK that nobody waits for. Naming the awaited command it ends as a rejection; naming another,
// such as the command sent, it counts as success when silence follows. Callers that care look at
// the ACK-received flag.
tagIPOD_COMM_ERROR StoreUnawaitedAck(const ReceivedFrame& frame, tagIPOD_READ_PARAMS* read,
                                     int* keep_reading) {
  StoreAck(frame, read);
  const std::uint8_t acknowledged = FrameBytes(frame.data, frame.data_length)[1];
  if (acknowledged != read->expected_command) {
    SetKeepReading(keep_reading, true);
    return IPOD_COMM_OK;
  }
  SetKeepReading(keep_reading, read->final_command != read->expected_command);
  return IPOD_COMM_NO_ANSWER;
}

}  // namespace

// What the decoders of all lingoes but General begin with. The header form is that of the decoder
// that was called, whatever lingo the frame names. An identifier is skipped only when it echoes the
// frame sent last; anything else stays in the data. True when the frame was the answer or an
// accepted ACK.
bool CIpodComm::AcceptAnswer(std::uint8_t lingo, const unsigned char* bytes, unsigned long length,
                             tagIPOD_READ_PARAMS* read, int* keep_reading) const {
  ReceivedFrame frame =
      ipodcomm::ParseFrameOf(lingo, FrameBytes(bytes, static_cast<std::uint32_t>(length)));
  if (transaction_id_mode_ != 0 && ipodcomm::EchoesLastFrame(frame, outgoing_.own_transaction_id)) {
    ipodcomm::SkipTransactionId(&frame);
  }
  read->received_command = frame.command;
  const bool accepted = StoreAnswer(frame, read) || StoreAcceptedAck(frame, read);
  SetKeepReading(keep_reading, !accepted);
  return accepted;
}

tagIPOD_COMM_ERROR CIpodComm::ProcessLingoExtendedReadCommand(unsigned char* frame,
                                                              unsigned long length,
                                                              tagIPOD_READ_PARAMS* read,
                                                              int* keep_reading) {
  return AcceptAnswer(ipodcomm::kExtendedLingo, frame, length, read, keep_reading)
             ? IPOD_COMM_OK
             : IPOD_COMM_UNEXPECTED;
}

tagIPOD_COMM_ERROR CIpodComm::ProcessLingoStorageReadCommand(unsigned char* frame,
                                                             unsigned long length,
                                                             tagIPOD_READ_PARAMS* read,
                                                             int* keep_reading) {
  return AcceptAnswer(ipodcomm::kStorageLingo, frame, length, read, keep_reading)
             ? IPOD_COMM_OK
             : IPOD_COMM_UNEXPECTED;
}

tagIPOD_COMM_ERROR CIpodComm::ProcessLingoDisplayRemoteReadCommand(unsigned char* frame,
                                                                   unsigned long length,
                                                                   tagIPOD_READ_PARAMS* read,
                                                                   int* keep_reading) {
  return ProcessLingoStorageReadCommand(frame, length, read, keep_reading);
}

tagIPOD_COMM_ERROR CIpodComm::ProcessLingoSportsReadCommand(unsigned char* frame,
                                                            unsigned long length,
                                                            tagIPOD_READ_PARAMS* read,
                                                            int* keep_reading) {
  if (AcceptAnswer(ipodcomm::kSportsLingo, frame, length, read, keep_reading)) return IPOD_COMM_OK;
  // The iPod's requests that come while an answer is awaited are answered at once.
  const ipodcomm::IpodRequest* request =
      ipodcomm::FindRequest(ipodcomm::kSportsLingo, read->received_command);
  if (request == nullptr) return IPOD_COMM_UNEXPECTED;
  ReactTo(*request, frame, 0);
  return IPOD_COMM_NO_ANSWER;
}

tagIPOD_COMM_ERROR CIpodComm::ProcessLingoGeneralReadCommand(unsigned char* frame,
                                                             unsigned long length,
                                                             tagIPOD_READ_PARAMS* read,
                                                             int* keep_reading) {
  SetKeepReading(keep_reading, false);
  const FrameBytes bytes(frame, static_cast<std::uint32_t>(length));
  ReceivedFrame parsed = ipodcomm::ParseFrameOf(ipodcomm::kGeneralLingo, bytes);
  // An ACK of exactly two data bytes is status and command, without an identifier.
  const bool bare_ack = parsed.command == kAck && parsed.data_length == 2;
  if (transaction_id_mode_ != 0 && !bare_ack) ipodcomm::SkipTransactionId(&parsed);

  // The status is looked for where it lies without an identifier, so a pending ACK that carries one
  // is a refusal. Hosts go on all the same.
  tagSERIAL_PACKET second = {};
  if (parsed.command == kAck && bytes[5] == kCommandPending && GetNextReadPacket(&second)) {
    if (AwaitPendingData(second)) {
      SetKeepReading(keep_reading, true);
      return IPOD_COMM_OK;
    }
    // The second ACK replaces the first one's bytes in the caller's frame, which is read on where
    // the first one's data lie.
    if (read->expected_command == kAck && FrameBytes(second)[4] == kAck) {
      std::memcpy(frame, second.data, std::min(second.length, bytes.length()));
    }
  }

  read->received_command = parsed.command;
  if (StoreAnswer(parsed, read) || StoreAcceptedAck(parsed, read)) return IPOD_COMM_OK;
  if (parsed.command == kAck) return StoreUnawaitedAck(parsed, read, keep_reading);
  // Success, though nothing was stored, when silence follows: hosts count on it where an iPod
  // answers with another command than the one that the library knows. Callers that must know look
  // at what was received.
  SetKeepReading(keep_reading, true);
  return IPOD_COMM_OK;
}

// A second pending ACK names a time to wait in which the port may fill. Its status byte 06 is the
// high byte of that number, so it is never below the limit and the wait never happens: iPods in the
// field are used to the ordinary read wait instead.
bool CIpodComm::AwaitPendingData(const tagSERIAL_PACKET& packet) {
  constexpr std::uint32_t kPendingLimitMs = 10000;
  constexpr int kPendingLooks = 10;
  const FrameBytes bytes(packet);
  if (bytes[4] != kAck || bytes[5] != kCommandPending) return false;
  const std::uint32_t pause_ms = bytes.Number32(5);
  if (pause_ms >= kPendingLimitMs) return false;
  for (int look = 0; look < kPendingLooks; ++look) {
    ipodcomm::PauseInSlices(HostToAsk(), pause_ms);
    if (StoppedByHost()) return false;
    if (serial_.CheckReceiveData() != 0) return true;
  }
  return false;
}
