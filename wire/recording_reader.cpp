// SPDX-License-Identifier: MIT
#include "wire/recording_reader.h"

#include <algorithm>
#include <array>

namespace ipodwire {
namespace {

constexpr std::uint32_t kSectionHeader = 0x0A0D0D0A;
constexpr std::uint32_t kInterfaceDescription = 1;
constexpr std::uint32_t kEnhancedPacket = 6;
constexpr std::uint32_t kByteOrderMagic = 0x1A2B3C4D;
constexpr std::uint32_t kSwappedMagic = 0x4D3C2B1A;
constexpr std::uint16_t kRtacSerial = 250;

constexpr std::uint16_t kEndOfOptions = 0;
constexpr std::uint16_t kComment = 1;
constexpr std::uint16_t kInterfaceName = 2;
constexpr std::uint16_t kInterfaceSpeed = 8;
constexpr std::uint16_t kTimeResolution = 9;

constexpr std::size_t kBlockHeader = 8;    // type, length
constexpr std::size_t kBlockTrailer = 4;   // length again
constexpr std::size_t kPacketHeader = 20;  // interface, time, captured and original length
constexpr std::size_t kSerialHeader = 12;
// Blocks of ours have a few hundred bytes. One that claims more than this is damaged.
constexpr std::uint32_t kLongestBlock = 4U << 20;
constexpr std::size_t kMostInterfaces = 65536;

Packet::Event EventOf(std::uint8_t number) {
  switch (number) {
    case 0x00:
      return Packet::Event::kStatus;
    case 0x01:
    case 0x03:  // the end of a transmission
      return Packet::Event::kSent;
    case 0x02:
    case 0x04:
      return Packet::Event::kReceived;
    case 0x05:
      return Packet::Event::kLost;
    case 0x06:
      return Packet::Event::kComplete;
    case 0x07:
      return Packet::Event::kFraming;
    case 0x08:
      return Packet::Event::kParity;
    case 0x09:
      return Packet::Event::kBreak;
    case 0x0A:
      return Packet::Event::kOverflow;
    default:
      return Packet::Event::kUnknown;
  }
}

// A negative power of ten, or with the upper bit set of two. 0 for one that is beyond all use.
std::uint64_t TicksPerSecond(std::uint8_t resolution) {
  const unsigned exponent = resolution & 0x7FU;
  if ((resolution & 0x80) != 0) return exponent < 63 ? std::uint64_t{1} << exponent : 0;
  std::uint64_t ticks = 1;
  if (exponent > 18) return 0;
  for (unsigned i = 0; i < exponent; ++i) ticks *= 10;
  return ticks;
}

// No later than in 2096: what tells more is damaged, and times are added and subtracted.
Nanoseconds ToNanoseconds(std::uint64_t ticks, std::uint64_t per_second) {
  constexpr std::uint64_t kLatestSeconds = 4'000'000'000;
  const std::uint64_t seconds = ticks / per_second;
  if (seconds >= kLatestSeconds) return static_cast<Nanoseconds>(kLatestSeconds * 1'000'000'000);
  const auto fraction = static_cast<double>(ticks % per_second) / static_cast<double>(per_second);
  // Exact for a power of ten, which is what programs use.
  const std::uint64_t nanoseconds = per_second <= 1'000'000'000 && 1'000'000'000 % per_second == 0
                                        ? ticks % per_second * (1'000'000'000 / per_second)
                                        : static_cast<std::uint64_t>(fraction * 1e9);
  return static_cast<Nanoseconds>(seconds * 1'000'000'000 + nanoseconds);
}

std::size_t Padded(std::size_t size) { return (size + 3) / 4 * 4; }

}  // namespace

bool RecordingReader::Next(Packet* packet) {
  if (end_ != End::kNone) return false;
  std::uint32_t type = 0;
  Bytes body;
  while (ReadBlock(&type, &body)) {
    if (type == kInterfaceDescription) {
      AddInterface(body);
    } else if (type == kEnhancedPacket) {
      ++packets_;
      if (ReadPacket(body, packet)) return true;
    }
    if (end_ != End::kNone) return false;
  }
  return false;
}

// False at the end of the file, with what there was.
bool RecordingReader::Fill(std::uint8_t* bytes, std::size_t count, std::size_t* filled) {
  *filled = 0;
  while (*filled < count) {
    const std::size_t got = source_(bytes + *filled, count - *filled);
    if (got == 0) return false;
    *filled += got;
    position_ += got;
  }
  return true;
}

// Piece by piece: a damaged file of some bytes may claim a block of megabytes.
bool RecordingReader::FillBody(std::size_t size, Bytes* body) {
  constexpr std::size_t kPiece = 4096;
  body->clear();
  while (body->size() < size) {
    const std::size_t begin = body->size();
    body->resize(std::min(size, begin + kPiece));
    std::size_t filled = 0;
    if (!Fill(&(*body)[begin], body->size() - begin, &filled)) return false;
  }
  return true;
}

bool RecordingReader::ReadBlock(std::uint32_t* type, Bytes* body) {
  block_at_ = position_;
  std::array<std::uint8_t, kBlockHeader> header{};
  std::size_t filled = 0;
  if (!Fill(header.data(), header.size(), &filled)) {
    if (!in_section_) {
      return Stop(End::kNoRecording, filled == 0 ? "is empty" : "is no recording");
    }
    if (filled > 0) return StopInBlock("ends in the middle of a block");
    if (serial_packets_ == 0 && has_other_links_) {
      return Stop(End::kOtherLinkType, "is a recording of something else than a serial line");
    }
    if (closed_) return Stop(End::kClosed, "");
    return Stop(End::kCut,
                "ends at byte " + std::to_string(position_) +
                    ", and nothing closes it: the recording was cut off, or is another program's");
  }
  *type = Get32(header.data());
  const bool begins_section = *type == kSectionHeader;
  if (begins_section && !BeginSection()) return false;
  if (!in_section_) return Stop(End::kNoRecording, "is no recording");
  // The byte order is known only now.
  *type = Get32(header.data());
  const std::uint32_t length = Get32(&header[4]);
  const std::size_t read = kBlockHeader + (begins_section ? 4 : 0);
  if (length % 4 != 0 || length < read + kBlockTrailer || length > kLongestBlock) {
    return StopInBlock("is damaged: a block of " + std::to_string(length) + " bytes");
  }
  if (!FillBody(length - read, body)) return StopInBlock("ends in the middle of a block");
  if (Get32(&(*body)[body->size() - kBlockTrailer]) != length) {
    return StopInBlock("is damaged: a block's two lengths differ");
  }
  body->resize(body->size() - kBlockTrailer);
  return true;
}

// Behind a section header's length comes what tells the byte order of the section.
bool RecordingReader::BeginSection() {
  std::array<std::uint8_t, 4> magic{};
  std::size_t filled = 0;
  big_endian_ = false;
  const bool whole = Fill(magic.data(), magic.size(), &filled);
  const std::uint32_t order = whole ? Get32(magic.data()) : 0;
  if (order != kByteOrderMagic && order != kSwappedMagic) {
    if (in_section_) return StopInBlock("is damaged: a section of no byte order");
    return Stop(End::kNoRecording, "is no recording");
  }
  big_endian_ = order == kSwappedMagic;
  in_section_ = true;
  interfaces_.clear();
  return true;
}

template <class Use>
void RecordingReader::ForEachOption(const Bytes& body, std::size_t begin, Use use) const {
  std::size_t at = begin;
  while (at + 4 <= body.size()) {
    const std::uint16_t code = Get16(&body[at]);
    const std::size_t length = Get16(&body[at + 2]);
    at += 4;
    if (code == kEndOfOptions || length > body.size() - at) return;
    use(code, body.data() + at, length);
    at += Padded(length);
  }
}

void RecordingReader::AddInterface(const Bytes& body) {
  if (body.size() < 8 || interfaces_.size() >= kMostInterfaces) {
    StopInBlock("is damaged: an interface without its description");
    return;
  }
  Interface line;
  line.is_serial = Get16(body.data()) == kRtacSerial;
  has_other_links_ = has_other_links_ || !line.is_serial;
  ForEachOption(body, 8, [&](std::uint16_t code, const std::uint8_t* value, std::size_t length) {
    if (code == kInterfaceName) line.name.assign(value, value + length);
    // Eight bytes, of which no serial line needs more than the lower four.
    if (code == kInterfaceSpeed && length == 8) line.baud = Get32(big_endian_ ? value + 4 : value);
    if (code != kTimeResolution || length != 1) return;
    const std::uint64_t ticks = TicksPerSecond(*value);
    if (ticks != 0) line.ticks_per_second = ticks;
  });
  interfaces_.push_back(std::move(line));
}

// False for a packet that is none of a serial line.
bool RecordingReader::ReadPacket(const Bytes& body, Packet* packet) {
  if (body.size() < kPacketHeader) return StopInBlock("is damaged: a packet without its header");
  const std::uint32_t number = Get32(body.data());
  if (number >= interfaces_.size()) {
    return StopInBlock("is damaged: a packet of an interface that is not described");
  }
  const Interface& line = interfaces_[number];
  if (!line.is_serial) return false;
  ++serial_packets_;
  const std::uint64_t ticks = (std::uint64_t{Get32(&body[4])} << 32) | Get32(&body[8]);
  const std::size_t captured = Get32(&body[12]);
  if (captured > body.size() - kPacketHeader || captured < kSerialHeader) {
    return StopInBlock("is damaged: a packet of " + std::to_string(captured) + " bytes");
  }
  const std::uint8_t* content = &body[kPacketHeader];
  *packet = {};
  packet->number = packets_;
  packet->time = ToNanoseconds(ticks, line.ticks_per_second);
  packet->line = line.name;
  packet->baud = line.baud;
  packet->event = EventOf(content[8]);
  packet->bytes.assign(content + kSerialHeader, content + captured);
  ForEachOption(body, kPacketHeader + Padded(captured),
                [&](std::uint16_t code, const std::uint8_t* value, std::size_t length) {
                  if (code == kComment) packet->comments.emplace_back(value, value + length);
                });
  closed_ = packet->event == Packet::Event::kComplete;
  return true;
}

bool RecordingReader::Stop(End end, const std::string& problem) {
  end_ = end;
  problem_ = problem;
  return false;
}

bool RecordingReader::StopInBlock(const std::string& what) {
  return Stop(End::kDamaged, what + ", at byte " + std::to_string(block_at_));
}

std::uint16_t RecordingReader::Get16(const std::uint8_t* at) const {
  return static_cast<std::uint16_t>(big_endian_ ? (at[0] << 8) | at[1] : (at[1] << 8) | at[0]);
}

std::uint32_t RecordingReader::Get32(const std::uint8_t* at) const {
  const std::uint32_t first = Get16(at);
  const std::uint32_t second = Get16(at + 2);
  return big_endian_ ? (first << 16) | second : (second << 16) | first;
}

}  // namespace ipodwire
