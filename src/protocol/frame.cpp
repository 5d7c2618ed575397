// SPDX-License-Identifier: MIT
// The layout of frames on the wire.
#include "protocol/frame.h"

#include <algorithm>

#include "protocol/commands.h"
#include "protocol/transaction_ids.h"

namespace ipodcomm {

namespace {

constexpr std::uint32_t kLengthPosition = 2;
constexpr std::uint32_t kLingoPosition = 3;
constexpr std::uint32_t kLargeLengthPosition = 3;
constexpr std::uint32_t kLargeLingoPosition = 5;
constexpr std::uint32_t kLargeNotificationDataPosition = 8;
constexpr std::uint32_t kChecksumSize = 1;
constexpr std::uint32_t kMaxLengthByte = 255;

std::uint32_t CommandSize(std::uint8_t lingo) { return lingo == kExtendedLingo ? 2 : 1; }

std::uint32_t LingoPosition(const FrameBytes& frame) {
  return frame.large() ? kLargeLingoPosition : kLingoPosition;
}

std::uint32_t BodyLength(const FrameBytes& frame) {
  return frame.large() ? frame.Number16(kLargeLengthPosition) : frame[kLengthPosition];
}

// The data from `position` on: `declared` bytes of them, but none past the checksum's place.
void LocateData(const FrameBytes& frame, std::uint32_t position, std::uint32_t header_size,
                ReceivedFrame* parsed) {
  const std::uint32_t body = BodyLength(frame);
  const std::uint32_t declared = body > header_size ? body - header_size : 0;
  const std::uint32_t end = frame.length() > kChecksumSize ? frame.length() - kChecksumSize : 0;
  parsed->data_position = std::min(position, end);
  parsed->data_length = std::min(declared, end - parsed->data_position);
  parsed->data = frame.at(parsed->data_position);
}

}  // namespace

std::uint16_t FrameBytes::Number16(std::uint32_t position) const {
  return static_cast<std::uint16_t>((*this)[position] << 8 | (*this)[position + 1]);
}

std::uint32_t FrameBytes::Number32(std::uint32_t position) const {
  return static_cast<std::uint32_t>(Number16(position)) << 16 | Number16(position + 2);
}

ReceivedFrame ParseFrame(const FrameBytes& frame) {
  return ParseFrameOf(frame[LingoPosition(frame)], frame);
}

ReceivedFrame ParseFrameOf(std::uint8_t lingo, const FrameBytes& frame) {
  const std::uint32_t lingo_position = LingoPosition(frame);
  const std::uint32_t command_size = CommandSize(lingo);
  ReceivedFrame parsed = {};
  parsed.lingo = frame[lingo_position];
  parsed.command =
      command_size == 2 ? frame.Number16(lingo_position + 1) : frame[lingo_position + 1];
  LocateData(frame, lingo_position + 1 + command_size, 1 + command_size, &parsed);
  return parsed;
}

ReceivedFrame ParseNotification(const FrameBytes& frame) {
  ReceivedFrame parsed = ParseFrame(frame);
  if (frame.large()) LocateData(frame, kLargeNotificationDataPosition, 3, &parsed);
  return parsed;
}

std::uint32_t FrameSize(std::uint8_t lingo, bool with_transaction_id, std::uint32_t data_length) {
  const std::uint32_t header =
      1 + CommandSize(lingo) + (with_transaction_id ? kTransactionIdSize : 0);
  if (data_length > kMaxLengthByte - header) return 0;
  return kLingoPosition + header + data_length + kChecksumSize;
}

std::uint32_t WriteHeader(unsigned char* frame, std::uint32_t frame_size, std::uint8_t lingo,
                          std::uint16_t command) {
  unsigned char* next = frame;
  *next++ = kSyncByte;
  *next++ = 0x55;
  *next++ = static_cast<unsigned char>(frame_size - kLingoPosition - kChecksumSize);
  *next++ = lingo;
  if (CommandSize(lingo) == 2) *next++ = static_cast<unsigned char>(command >> 8);
  *next++ = static_cast<unsigned char>(command);
  return static_cast<std::uint32_t>(next - frame);
}

void WriteChecksum(unsigned char* frame, std::uint32_t frame_size) {
  std::uint8_t sum = 0;
  for (std::uint32_t i = kLengthPosition; i < frame_size - 1; ++i) {
    sum = static_cast<std::uint8_t>(sum + frame[i]);
  }
  frame[frame_size - 1] = static_cast<unsigned char>(0x100 - sum);
}

}  // namespace ipodcomm
