// SPDX-License-Identifier: MIT
// The blocks of a pcapng file that holds what went over a serial line.
#include "platform/capture/pcapng.h"

namespace ipodcomm::capture {
namespace {

constexpr std::uint32_t kSectionHeader = 0x0A0D0D0A;
constexpr std::uint32_t kInterfaceDescription = 1;
constexpr std::uint32_t kInterfaceStatistics = 5;
constexpr std::uint32_t kEnhancedPacket = 6;

constexpr std::uint32_t kByteOrderMagic = 0x1A2B3C4D;
constexpr std::uint16_t kRtacSerial = 250;
constexpr std::uint32_t kNoSnapLimit = 0;

constexpr std::uint16_t kEndOfOptions = 0;
constexpr std::uint16_t kComment = 1;
constexpr std::uint16_t kApplication = 4;
constexpr std::uint16_t kInterfaceName = 2;
constexpr std::uint16_t kInterfaceDescriptionText = 3;
constexpr std::uint16_t kInterfaceSpeed = 8;
constexpr std::uint16_t kTimeResolution = 9;
constexpr std::uint16_t kPacketFlags = 2;
constexpr std::uint16_t kStartTime = 2;
constexpr std::uint16_t kEndTime = 3;
constexpr std::uint16_t kPacketsReceived = 4;
constexpr std::uint16_t kPacketsDropped = 5;

constexpr std::uint8_t kNanosecondResolution = 9;  // a negative power of ten
constexpr std::uint32_t kBadChecksumFlag = 1U << 24;
constexpr std::size_t kLongestText = 0xFFFF;

// A block under construction. Each part of a block is filled up to a multiple of four bytes.
class Block {
 public:
  explicit Block(std::uint32_t type) {
    Add32(type);
    Add32(0);  // the length, once it is known
  }

  void Add16(std::uint16_t value) { AddLittleEndian(value, 2); }
  void Add32(std::uint32_t value) { AddLittleEndian(value, 4); }
  void Add64(std::uint64_t value) { AddLittleEndian(value, 8); }
  // The upper half of a time comes first, whatever the byte order.
  void AddTime(Nanoseconds time) {
    const auto value = static_cast<std::uint64_t>(time);
    Add32(static_cast<std::uint32_t>(value >> 32));
    Add32(static_cast<std::uint32_t>(value));
  }
  void AddPadded(const std::uint8_t* bytes, std::size_t count) {
    bytes_.insert(bytes_.end(), bytes, bytes + count);
    bytes_.resize((bytes_.size() + 3) / 4 * 4);
  }

  void BeginOption(std::uint16_t code, std::uint16_t length) {
    Add16(code);
    Add16(length);
  }
  void AddText(std::uint16_t code, const std::string& text) {
    const std::size_t length = text.size() < kLongestText ? text.size() : kLongestText;
    BeginOption(code, static_cast<std::uint16_t>(length));
    AddPadded(reinterpret_cast<const std::uint8_t*>(text.data()), length);
  }
  void AddOption32(std::uint16_t code, std::uint32_t value) {
    BeginOption(code, 4);
    Add32(value);
  }
  void AddOption64(std::uint16_t code, std::uint64_t value) {
    BeginOption(code, 8);
    Add64(value);
  }
  void AddTimeOption(std::uint16_t code, Nanoseconds time) {
    BeginOption(code, 8);
    AddTime(time);
  }

  Bytes Finish() {
    BeginOption(kEndOfOptions, 0);
    const auto length = static_cast<std::uint32_t>(bytes_.size() + 4);
    Add32(length);
    for (std::size_t i = 0; i < 4; ++i) bytes_[4 + i] = bytes_[bytes_.size() - 4 + i];
    return std::move(bytes_);
  }

 private:
  void AddLittleEndian(std::uint64_t value, int bytes) {
    for (int i = 0; i < bytes; ++i) bytes_.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
  }

  Bytes bytes_;
};

void AddBigEndian32(Bytes* bytes, std::uint64_t value) {
  for (int shift = 24; shift >= 0; shift -= 8) {
    bytes->push_back(static_cast<std::uint8_t>(value >> shift));
  }
}

// The twelve bytes in front of a packet's own.
Bytes SerialHeader(const Packet& packet) {
  const auto microseconds = static_cast<std::uint64_t>(packet.time) / 1000;
  Bytes header;
  AddBigEndian32(&header, microseconds / 1000000);
  AddBigEndian32(&header, microseconds % 1000000);
  header.push_back(static_cast<std::uint8_t>(packet.event));
  header.push_back(packet.control_lines);
  header.resize(12);
  return header;
}

std::uint32_t Flags(const Packet& packet) {
  return static_cast<std::uint32_t>(packet.direction) |
         (packet.bad_checksum ? kBadChecksumFlag : 0);
}

}  // namespace

Bytes SectionHeaderBlock(const std::string& application) {
  Block block(kSectionHeader);
  block.Add32(kByteOrderMagic);
  block.Add16(1);  // the format's version, 1.0
  block.Add16(0);
  block.Add64(~std::uint64_t{0});  // of unknown length: it is still being written
  block.AddText(kApplication, application);
  return block.Finish();
}

Bytes InterfaceDescriptionBlock(const Interface& line) {
  Block block(kInterfaceDescription);
  block.Add16(kRtacSerial);
  block.Add16(0);
  block.Add32(kNoSnapLimit);
  block.AddText(kInterfaceName, line.name);
  block.AddText(kInterfaceDescriptionText, line.description);
  block.AddOption64(kInterfaceSpeed, line.baud);
  block.BeginOption(kTimeResolution, 1);
  block.AddPadded(&kNanosecondResolution, 1);
  return block.Finish();
}

Bytes EnhancedPacketBlock(const Packet& packet) {
  Bytes bytes = SerialHeader(packet);
  bytes.insert(bytes.end(), packet.bytes.begin(), packet.bytes.end());
  const auto length = static_cast<std::uint32_t>(bytes.size());
  Block block(kEnhancedPacket);
  block.Add32(packet.interface_number);
  block.AddTime(packet.time);
  block.Add32(length);  // captured
  block.Add32(length);  // on the line
  block.AddPadded(bytes.data(), bytes.size());
  for (const std::string& comment : packet.comments) block.AddText(kComment, comment);
  block.AddOption32(kPacketFlags, Flags(packet));
  return block.Finish();
}

Bytes InterfaceStatisticsBlock(const Statistics& statistics) {
  Block block(kInterfaceStatistics);
  block.Add32(statistics.interface_number);
  block.AddTime(statistics.ended);
  block.AddTimeOption(kStartTime, statistics.started);
  block.AddTimeOption(kEndTime, statistics.ended);
  block.AddOption64(kPacketsReceived, statistics.recorded);
  block.AddOption64(kPacketsDropped, statistics.lost);
  return block.Finish();
}

}  // namespace ipodcomm::capture
