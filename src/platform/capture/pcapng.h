// SPDX-License-Identifier: MIT
// The blocks of a pcapng file that holds what went over a serial line.
//
// The link type is 250 (LINKTYPE_RTAC_SERIAL): each packet begins with twelve bytes that tell when
// and what happened, and the bytes of the line follow. Blocks are little-endian, those twelve bytes
// big-endian.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace ipodcomm::capture {

using Bytes = std::vector<std::uint8_t>;

/// Nanoseconds since the beginning of 1970, UTC.
using Nanoseconds = std::int64_t;

/// As the accessory sees it, whichever end of the line was recorded.
enum class Direction : std::uint8_t {
  kNone,
  kReceived,  ///< from the iPod
  kSent,      ///< to the iPod
};

/// What happened on the line, by its number in a packet.
enum class Event : std::uint8_t {
  kStatus = 0x00,    ///< of the control lines
  kSent = 0x01,      ///< bytes to the iPod
  kReceived = 0x02,  ///< bytes from the iPod
  kLost = 0x05,      ///< bytes that went over the line and are not in the recording
  kComplete = 0x06,  ///< the end of the recording; without it the recording was cut
  kFraming = 0x07,   ///< a byte without its stop bit
  kParity = 0x08,
  kBreak = 0x09,
  kOverflow = 0x0A,  ///< bytes came faster than the driver fetched them
};

/// The bits of a packet's control lines.
enum ControlLine : std::uint8_t {
  kCts = 0x01,
  kDcd = 0x02,
  kDsr = 0x04,
  kRts = 0x08,
  kDtr = 0x10,
  kRing = 0x20,
};

/// A line and its settings. A line whose settings change is an interface of its own from then on.
struct Interface {
  std::string name;         ///< for example "/dev/ttyUSB0"
  std::string description;  ///< for example "57600 baud, 8 data bits, no parity, 1.5 stop bits"
  std::uint32_t baud = 0;
};

struct Packet {
  std::uint32_t interface_number = 0;  ///< counted from 0, in the order of their blocks
  Nanoseconds time = 0;                ///< of the first byte
  Direction direction = Direction::kNone;
  Event event = Event::kStatus;
  std::uint8_t control_lines = 0;
  bool bad_checksum = false;
  Bytes bytes;  ///< of the line
  std::vector<std::string> comments;
};

struct Statistics {
  std::uint32_t interface_number = 0;
  Nanoseconds started = 0;
  Nanoseconds ended = 0;
  std::uint64_t recorded = 0;  ///< packets
  std::uint64_t lost = 0;      ///< packets
};

/// @param application the program that records, with its version
Bytes SectionHeaderBlock(const std::string& application);
Bytes InterfaceDescriptionBlock(const Interface& line);
Bytes EnhancedPacketBlock(const Packet& packet);
Bytes InterfaceStatisticsBlock(const Statistics& statistics);

}  // namespace ipodcomm::capture
