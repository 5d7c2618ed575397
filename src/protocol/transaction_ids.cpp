// SPDX-License-Identifier: MIT
// Which frames carry transaction identifiers, and how the accessory's own ones step.
#include "protocol/transaction_ids.h"

#include <algorithm>

#include "protocol/commands.h"
#include "protocol/numbers.h"

namespace ipodcomm {

bool MayCarryTransactionId(std::uint8_t lingo, std::uint16_t command) {
  if (lingo != kGeneralLingo) return true;
  return command != general::kIdentifyDeviceLingoes && command != general::kRetAccessoryInfo &&
         command != general::kRequestRemoteUiMode;
}

std::uint16_t RequestTransactionId(const FrameBytes& frame) {
  constexpr std::uint32_t kPosition = 5;
  return frame.Number16(kPosition);
}

// One step when the own identifier is not ahead of the iPod's. It does not become the iPod's plus
// one, so the two counters stay apart; iPods in the field have always met it so.
std::uint16_t OwnIdAfterRequest(std::uint16_t own, std::uint16_t requested) {
  return static_cast<std::uint16_t>(own <= requested ? own + 1 : own);
}

bool EchoesLastFrame(const ReceivedFrame& frame, std::uint16_t own) {
  if (frame.data_length < kTransactionIdSize) return false;
  return static_cast<std::uint16_t>(ReadNumber16(frame.data) + 1) == own;
}

void SkipTransactionId(ReceivedFrame* frame) {
  const std::uint32_t skipped = std::min(kTransactionIdSize, frame->data_length);
  frame->data_position += skipped;
  frame->data += skipped;
  frame->data_length -= skipped;
}

bool SkipIdOf(const SentIds& sent, ReceivedFrame* frame) {
  if (frame->data_length < kTransactionIdSize) return false;
  if (!sent.Contain(ReadNumber16(frame->data))) return false;
  SkipTransactionId(frame);
  return true;
}

}  // namespace ipodcomm
