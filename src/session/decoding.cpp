// SPDX-License-Identifier: MIT
// CIpodComm: the decoders, which find the awaited answer among the received packets.
#include <algorithm>
#include <cstring>

#include "ipodcomm/CIpodComm.h"
#include "platform/services.h"
#include "protocol/commands.h"
#include "protocol/frame.h"
#include "protocol/numbers.h"

using ipodcomm::FrameBytes;
using ipodcomm::ReceivedFrame;

namespace {

using ipodcomm::general::kAck;  // and the number that the other decoders accept
constexpr std::uint8_t kCommandPending = 0x06;

void SetKeepReading(int* keep_reading, bool keep) {
  if (keep_reading != nullptr) *keep_reading = keep ? 1 : 0;
}

/// Takes the frame's data, cut to the buffer, when it is the awaited answer.
bool TakeAnswer(const ReceivedFrame& frame, tagIPOD_READ_PARAMS* read) {
  if (frame.command != read->expected_command) return false;
  const auto capacity = static_cast<std::uint32_t>(std::max(read->size, std::int32_t{0}));
  read->stored = std::min(capacity, frame.data_length);
  read->size = static_cast<std::int32_t>(read->stored);
  if (read->stored != 0) std::memcpy(read->buffer, frame.data, read->stored);
  return true;
}

/// Records an ACK. Its bytes are kept as they lie in the frame, the status first; the buffer's size
/// says how many.
void TakeAck(const ReceivedFrame& frame, tagIPOD_READ_PARAMS* read) {
  read->ack_received = 1;
  if (read->size != 1 && read->size != 2) return;
  const FrameBytes data(frame.data, frame.data_length);
  const unsigned char bytes[] = {data[0], data[1]};
  std::memcpy(&read->ack, bytes, static_cast<std::size_t>(read->size));
}

bool TakeAcceptedAck(const ReceivedFrame& frame, tagIPOD_READ_PARAMS* read) {
  if (frame.command != kAck || read->accept_ack == 0) return false;
  TakeAck(frame, read);
  return true;
}

/// Lays the second packet over the first; its command, data position and length stay the first's.
void Overlay(const tagSERIAL_PACKET& second, FrameBytes* first, tagSERIAL_PACKET* merged) {
  const std::uint32_t first_length = std::min<std::uint32_t>(first->length(), sizeof merged->data);
  merged->length = std::max(first_length, second.length);
  std::memcpy(merged->data, first->at(0), first_length);
  std::memcpy(merged->data, second.data, second.length);
  *first = FrameBytes(merged->data, merged->length);
}

}  // namespace

/// The identifier is skipped only when it echoes the frame sent last; the own counter has stepped
/// since. Anything else stays in the data.
void CIpodComm::SkipEchoedTransactionId(ReceivedFrame* frame) const {
  if (transaction_id_mode_ == 0 || frame->data_length < 2) return;
  const auto next = static_cast<std::uint16_t>(ipodcomm::ReadNumber16(frame->data) + 1);
  if (next == own_transaction_id_) ipodcomm::SkipTransactionId(frame);
}

/// The steps that the Extended, Display Remote, Storage and Sports decoders share. True when
/// `frame` was the answer or an accepted ACK.
bool CIpodComm::TakeAnswerOrAck(const unsigned char* bytes, unsigned long length,
                                tagIPOD_READ_PARAMS* read) const {
  ReceivedFrame frame = ipodcomm::ParseFrame(FrameBytes(bytes, static_cast<std::uint32_t>(length)));
  SkipEchoedTransactionId(&frame);
  read->received_command = frame.command;
  return TakeAnswer(frame, read) || TakeAcceptedAck(frame, read);
}

tagIPOD_COMM_ERROR CIpodComm::ProcessLingoExtendedReadCommand(unsigned char* frame,
                                                              unsigned long length,
                                                              tagIPOD_READ_PARAMS* read,
                                                              int* keep_reading) {
  const bool taken = TakeAnswerOrAck(frame, length, read);
  SetKeepReading(keep_reading, !taken);
  return taken ? IPOD_COMM_OK : IPOD_COMM_UNEXPECTED;
}

tagIPOD_COMM_ERROR CIpodComm::ProcessLingoStorageReadCommand(unsigned char* frame,
                                                             unsigned long length,
                                                             tagIPOD_READ_PARAMS* read,
                                                             int* keep_reading) {
  return ProcessLingoExtendedReadCommand(frame, length, read, keep_reading);
}

tagIPOD_COMM_ERROR CIpodComm::ProcessLingoDisplayRemoteReadCommand(unsigned char* frame,
                                                                   unsigned long length,
                                                                   tagIPOD_READ_PARAMS* read,
                                                                   int* keep_reading) {
  return ProcessLingoExtendedReadCommand(frame, length, read, keep_reading);
}

tagIPOD_COMM_ERROR CIpodComm::ProcessLingoSportsReadCommand(unsigned char* frame,
                                                            unsigned long length,
                                                            tagIPOD_READ_PARAMS* read,
                                                            int* keep_reading) {
  const bool taken = TakeAnswerOrAck(frame, length, read);
  SetKeepReading(keep_reading, !taken);
  if (taken) return IPOD_COMM_OK;
  // Requests of the iPod that come while an answer is awaited are served at once.
  switch (read->received_command) {
    case ipodcomm::sports::kGetDeviceCaps:
      Return_SportsDeviceCaps();
      return IPOD_COMM_NO_ANSWER;
    case ipodcomm::sports::kGetDeviceVersion:
      Return_SportsDeviceVersion();
      return IPOD_COMM_NO_ANSWER;
    default:
      return IPOD_COMM_UNEXPECTED;
  }
}

tagIPOD_COMM_ERROR CIpodComm::ProcessLingoGeneralReadCommand(unsigned char* frame,
                                                             unsigned long length,
                                                             tagIPOD_READ_PARAMS* read,
                                                             int* keep_reading) {
  SetKeepReading(keep_reading, false);
  FrameBytes current(frame, static_cast<std::uint32_t>(length));
  ReceivedFrame parsed = ipodcomm::ParseFrame(current);
  // An ACK of exactly two data bytes is taken as status and command, without an identifier.
  const bool bare_ack = parsed.command == kAck && parsed.data_length == 2;
  if (transaction_id_mode_ != 0 && !bare_ack) ipodcomm::SkipTransactionId(&parsed);

  tagSERIAL_PACKET merged = {};
  if (parsed.command == kAck && current[5] == kCommandPending) {
    tagSERIAL_PACKET second = {};
    if (GetNextReadPacket(&second)) {
      if (AwaitPendingData(second)) {
        SetKeepReading(keep_reading, true);
        return IPOD_COMM_OK;
      }
      if (read->expected_command == kAck && FrameBytes(second)[4] == kAck) {
        Overlay(second, &current, &merged);
        parsed.data = current.at(parsed.data_position);
      }
    }
  }

  read->received_command = parsed.command;
  if (TakeAnswer(parsed, read) || TakeAcceptedAck(parsed, read)) return IPOD_COMM_OK;
  if (parsed.command == kAck) return TakeRejectingAck(parsed, read, keep_reading);
  // Success, though nothing was stored, when silence follows. Prescribed so; callers that care look
  // at what was received.
  SetKeepReading(keep_reading, true);
  return IPOD_COMM_OK;
}

/// A second pending ACK names a time to wait in which the port may fill. Its status byte 06 is the
/// high byte of that number, so it is never below the limit and the wait never happens. Prescribed
/// so, and kept exactly: iPods in the field are served by the ordinary read wait.
bool CIpodComm::AwaitPendingData(const tagSERIAL_PACKET& packet) {
  constexpr std::uint32_t kPendingLimitMs = 10000;
  constexpr int kPendingLooks = 10;
  const FrameBytes bytes(packet);
  if (bytes[4] != kAck || bytes[5] != kCommandPending) return false;
  const std::uint32_t pause_ms = bytes.Number32(5);
  if (pause_ms >= kPendingLimitMs) return false;
  for (int look = 0; look < kPendingLooks; ++look) {
    Sleep(pause_ms);
    if (serial_.CheckReceiveData() != 0) return true;
  }
  return false;
}

/// An ACK that nobody waits for. Naming the awaited command it ends as a rejection; naming another,
/// such as the command sent, it counts as success when silence follows. Callers that care look at
/// the ACK-received flag.
tagIPOD_COMM_ERROR CIpodComm::TakeRejectingAck(const ReceivedFrame& frame,
                                               tagIPOD_READ_PARAMS* read, int* keep_reading) {
  TakeAck(frame, read);
  const std::uint8_t acknowledged = FrameBytes(frame.data, frame.data_length)[1];
  if (acknowledged != read->expected_command) {
    SetKeepReading(keep_reading, true);
    return IPOD_COMM_OK;
  }
  SetKeepReading(keep_reading, read->final_command != read->expected_command);
  return IPOD_COMM_NO_ANSWER;
}
