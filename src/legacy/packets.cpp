// SPDX-License-Identifier: MIT
// ipod: construction, the port, and the three senders.
#include <algorithm>

#include "ipodcomm/ipod.h"
#include "legacy/payload.h"
#include "protocol/frame.h"
#include "protocol/numbers.h"

namespace {

constexpr unsigned kFrameCapacity = 256;
constexpr unsigned kChecksumSize = 1;

// A frame being built in front of its payload.
struct Frame {
  unsigned char bytes[kFrameCapacity] = {ipod::IPOD_PACKET_SYNC_VAL, ipod::IPOD_PACKET_START_VAL};

  static bool Holds(unsigned payload_position, unsigned payload_length) {
    return payload_position + payload_length + kChecksumSize <= kFrameCapacity;
  }
  // Appends payload and checksum; returns the frame's length.
  unsigned Finish(unsigned payload_position, const std::uint8_t* payload, unsigned payload_length) {
    std::copy_n(payload, payload_length, bytes + payload_position);
    const unsigned length = payload_position + payload_length + kChecksumSize;
    ipodcomm::WriteChecksum(bytes, length);
    return length;
  }
};

}  // namespace

ipod::ipod() = default;

ipod::ipod(const ipod& other) = default;

ipod& ipod::operator=(const ipod& other) = default;

int ipod::openport(wchar_t* name, int baud_rate) { return serial_.openport(name, baud_rate); }

int ipod::openport() { return serial_.openport(); }

int ipod::closeport() { return serial_.closeport(); }

int ipod::SetConduct(const tagIPOD_LEGACY_CONDUCT* conduct) { return serial_.SetConduct(conduct); }

int ipod::GetConduct(tagIPOD_LEGACY_CONDUCT* conduct) const { return serial_.GetConduct(conduct); }

int ipod::SetKeepGoing(bool (*keep_going)(void* context), void* context) {
  return serial_.SetKeepGoing(keep_going, context);
}

int ipod::sendpacket() {
  if (!Frame::Holds(IPOD_PACKET_DATA_LOC, payload_length_)) return 0;
  Frame frame;
  frame.bytes[IPOD_PACKET_PAYLOADLEN_LOC] = static_cast<unsigned char>(payload_length_ + 2);
  frame.bytes[IPOD_PACKET_LINGO_LOC] = lingo_;
  frame.bytes[IPOD_PACKET_COMMAND_LOC] = command_;
  const unsigned length = frame.Finish(IPOD_PACKET_DATA_LOC, payload_, payload_length_);
  return serial_.WriteFrame(frame.bytes, length) == length ? 1 : 0;
}

int ipod::sendpacketextended() {
  if (!Frame::Holds(IPOD_PACKET_EXT_DATA_LOC, payload_length_)) return 0;
  Frame frame;
  frame.bytes[IPOD_PACKET_EXT_PAYLOADLEN_LOC] = static_cast<unsigned char>(payload_length_ + 3);
  frame.bytes[IPOD_PACKET_EXT_LINGO_LOC] = lingo_;
  ipodcomm::WriteNumber16(frame.bytes + IPOD_PACKET_EXT_COMMAND_LOC_HIGH, extended_command_);
  const unsigned length = frame.Finish(IPOD_PACKET_EXT_DATA_LOC, payload_, payload_length_);
  return serial_.WriteFrame(frame.bytes, length) == length ? 1 : 0;
}

// The frame's last two bytes, its last payload byte and its checksum, are never transmitted, and
// the argument is ignored. Hosts in the field take the result for whether the port took the rest;
// an iPod waits for an end that does not come.
int ipod::sendpacketextendedlarge(unsigned char* /*ignored*/) {
  constexpr unsigned kNotTransmitted = 2;
  if (!Frame::Holds(IPOD_PACKET_EXT_LARGE_DATA_LOC, payload_length_)) return 0;
  Frame frame;
  frame.bytes[IPOD_PACKET_EXT_LARGE_MARKER_LOC] = 0;
  ipodcomm::WriteNumber16(frame.bytes + IPOD_PACKET_EXT_LARGE_PAYLOADLEN_LOC_HIGH,
                          static_cast<std::uint16_t>(payload_length_ + 3));
  frame.bytes[IPOD_PACKET_EXT_LARGE_LINGO_LOC] = lingo_;
  ipodcomm::WriteNumber16(frame.bytes + IPOD_PACKET_EXT_LARGE_COMMAND_LOC_HIGH, extended_command_);
  const unsigned length =
      frame.Finish(IPOD_PACKET_EXT_LARGE_DATA_LOC, payload_, payload_length_) - kNotTransmitted;
  return serial_.WriteFrame(frame.bytes, length) == length ? 1 : 0;
}

int ipod::SendSmall(std::uint8_t lingo, std::uint8_t command,
                    std::initializer_list<ipodcomm::PayloadField> payload) {
  lingo_ = lingo;
  command_ = command;
  FillPayload(payload);
  return sendpacket();
}

int ipod::SendExtended(std::uint16_t command,
                       std::initializer_list<ipodcomm::PayloadField> payload) {
  lingo_ = IPOD_LINGO_EXTENDED;
  extended_command_ = command;
  FillPayload(payload);
  return sendpacketextended();
}

void ipod::FillPayload(std::initializer_list<ipodcomm::PayloadField> payload) {
  std::uint8_t* next = payload_;
  for (const ipodcomm::PayloadField& field : payload) {
    for (int shift = 8 * (field.size - 1); shift >= 0; shift -= 8) {
      *next++ = static_cast<std::uint8_t>(field.value >> shift);
    }
  }
  payload_length_ = static_cast<std::uint16_t>(next - payload_);
}
