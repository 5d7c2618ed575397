// SPDX-License-Identifier: MIT
// The layout of frames on the wire.
//
//   FF 55 LL lingo cc [tt tt] data... checksum           one-byte command
//   FF 55 LL 04 cc cc [tt tt] data... checksum           two-byte command (Extended Interface)
//   FF 55 00 HH LL lingo cc [tt tt] data... checksum     large form, received only
//   FF 55 00 HH LL 04 cc cc [tt tt] data... checksum
//
// LL counts from the lingo through the last data byte; tt tt is the transaction identifier.
#pragma once

#include <cstdint>

#include "ipodcomm/IpodTypes.h"

namespace ipodcomm {

constexpr std::uint8_t kSyncByte = 0xFF;

/// Bytes of a received frame. What lies past its end reads as 0, so that no frame, however short,
/// is read outside its bytes.
class FrameBytes {
 public:
  FrameBytes(const unsigned char* bytes, std::uint32_t length) : bytes_(bytes), length_(length) {}
  explicit FrameBytes(const tagSERIAL_PACKET& packet) : FrameBytes(packet.data, packet.length) {}

  std::uint8_t operator[](std::uint32_t position) const {
    return position < length_ ? bytes_[position] : std::uint8_t{0};
  }
  std::uint16_t Number16(std::uint32_t position) const;
  std::uint32_t Number32(std::uint32_t position) const;
  const unsigned char* at(std::uint32_t position) const { return bytes_ + position; }
  std::uint32_t length() const { return length_; }
  bool large() const { return (*this)[2] == 0; }

 private:
  const unsigned char* bytes_;
  std::uint32_t length_;
};

/// The fields of a received frame.
struct ReceivedFrame {
  std::uint8_t lingo;
  std::uint16_t command;
  std::uint32_t data_position;
  std::uint32_t data_length;  ///< never past the frame's end
  const unsigned char* data;
};

/// Parses a frame by its own lingo.
ReceivedFrame ParseFrame(const FrameBytes& frame);

/// Parses a frame as one of `lingo`, which decides how wide the command is, whatever the frame's
/// own lingo byte says.
ReceivedFrame ParseFrameOf(std::uint8_t lingo, const FrameBytes& frame);

/// Parses a frame as the notification thread does: in the large form the data start at byte 8 and
/// are 3 bytes shorter than the length, for every lingo.
ReceivedFrame ParseNotification(const FrameBytes& frame);

/// Size of the frame that carries `data_length` bytes of data; 0 when they do not fit, since the
/// length byte counts to 255.
std::uint32_t FrameSize(std::uint8_t lingo, bool with_transaction_id, std::uint32_t data_length);

/// Writes everything in front of the transaction identifier or the data; returns where they go.
std::uint32_t WriteHeader(unsigned char* frame, std::uint32_t frame_size, std::uint8_t lingo,
                          std::uint16_t command);

/// Writes the checksum behind the frame's other bytes: the length byte through the checksum sum to
/// 0.
void WriteChecksum(unsigned char* frame, std::uint32_t frame_size);

}  // namespace ipodcomm
