// SPDX-License-Identifier: MIT
#include "support/pcapng_reader.h"

#include <gtest/gtest.h>

#include <fstream>
#include <functional>
#include <iterator>

namespace test {
namespace {

std::uint64_t Little(const Bytes& bytes, std::size_t at, std::size_t count) {
  std::uint64_t value = 0;
  for (std::size_t i = count; i-- > 0;) value = value << 8 | bytes.at(at + i);
  return value;
}

unsigned Little16(const Bytes& bytes, std::size_t at) {
  return static_cast<unsigned>(Little(bytes, at, 2));
}

std::uint32_t Little32(const Bytes& bytes, std::size_t at) {
  return static_cast<std::uint32_t>(Little(bytes, at, 4));
}

std::uint64_t Big32(const Bytes& bytes, std::size_t at) {
  std::uint64_t value = 0;
  for (std::size_t i = 0; i < 4; ++i) value = value << 8 | bytes.at(at + i);
  return value;
}

// Halves, the upper one first.
std::uint64_t Time(const Bytes& bytes, std::size_t at) {
  return std::uint64_t{Little32(bytes, at)} << 32 | Little32(bytes, at + 4);
}

using Option = std::function<void(unsigned code, const Bytes& value)>;

void ReadOptions(const Bytes& block, std::size_t at, const Option& option) {
  for (;;) {
    const unsigned code = Little16(block, at);
    const unsigned length = Little16(block, at + 2);
    if (code == 0) {
      EXPECT_EQ(length, 0U);
      EXPECT_EQ(at + 8, block.size()) << "options end where the block's second length begins";
      return;
    }
    const auto first = block.begin() + static_cast<std::ptrdiff_t>(at) + 4;
    option(code, Bytes(first, first + static_cast<std::ptrdiff_t>(length)));
    at += 4 + (length + 3) / 4 * 4;
  }
}

std::string Text(const Bytes& value) { return {value.begin(), value.end()}; }

void ReadSection(const Bytes& block, ReadRecording* recording) {
  EXPECT_EQ(Little32(block, 8), 0x1A2B3C4DU);
  EXPECT_EQ(Little16(block, 12), 1U);
  ReadOptions(block, 24, [&](unsigned code, const Bytes& value) {
    if (code == 4) recording->application = Text(value);
  });
}

void ReadInterface(const Bytes& block, ReadRecording* recording) {
  RecordedInterface line;
  line.link_type = Little16(block, 8);
  ReadOptions(block, 16, [&](unsigned code, const Bytes& value) {
    if (code == 2) line.name = Text(value);
    if (code == 3) line.description = Text(value);
    if (code == 8) line.speed = Little(value, 0, 8);
    if (code == 9) line.time_resolution = value.at(0);
  });
  recording->interfaces.push_back(line);
}

void ReadPacket(const Bytes& block, ReadRecording* recording) {
  RecordedPacket packet;
  packet.interface_number = Little32(block, 8);
  packet.time_ns = Time(block, 12);
  const std::uint32_t length = Little32(block, 20);
  EXPECT_EQ(Little32(block, 24), length);
  const auto data = block.begin() + 28;
  const Bytes bytes(data, data + static_cast<std::ptrdiff_t>(length));
  packet.header_time_us = Big32(bytes, 0) * 1000000 + Big32(bytes, 4);
  packet.event = bytes.at(8);
  packet.control_lines = bytes.at(9);
  EXPECT_EQ(Little16(bytes, 10), 0U);
  packet.bytes.assign(bytes.begin() + 12, bytes.end());
  ReadOptions(block, 28 + (length + 3) / 4 * 4, [&](unsigned code, const Bytes& value) {
    if (code == 1) packet.comments.push_back(Text(value));
    if (code == 2) packet.flags = Little32(value, 0);
  });
  recording->packets.push_back(packet);
}

void ReadStatistics(const Bytes& block, ReadRecording* recording) {
  RecordedStatistics statistics;
  statistics.interface_number = Little32(block, 8);
  ReadOptions(block, 20, [&](unsigned code, const Bytes& value) {
    if (code == 4) statistics.received = Little(value, 0, 8);
    if (code == 5) statistics.dropped = Little(value, 0, 8);
  });
  recording->statistics.push_back(statistics);
}

}  // namespace

std::vector<std::string> ReadRecording::Lines() const {
  std::vector<std::string> lines;
  for (const RecordedPacket& packet : packets) {
    switch (packet.event) {
      case 1:
        lines.push_back("> " + ToHex(packet.bytes));
        break;
      case 2:
        lines.push_back("< " + ToHex(packet.bytes));
        break;
      default:
        lines.push_back("event " + std::to_string(packet.event));
    }
  }
  return lines;
}

Bytes ReadRecording::BytesOf(unsigned event) const {
  Bytes all;
  for (const RecordedPacket& packet : packets) {
    if (packet.event == event) all.insert(all.end(), packet.bytes.begin(), packet.bytes.end());
  }
  return all;
}

ReadRecording ReadPcapng(const Bytes& file) {
  ReadRecording recording;
  std::size_t at = 0;
  while (at < file.size()) {
    const std::uint32_t length = Little32(file, at + 4);
    if (length < 12 || length % 4 != 0 || at + length > file.size()) {
      ADD_FAILURE() << "a block of " << length << " bytes at " << at;
      break;
    }
    EXPECT_EQ(Little32(file, at + length - 4), length);
    const auto first = file.begin() + static_cast<std::ptrdiff_t>(at);
    const Bytes block(first, first + static_cast<std::ptrdiff_t>(length));
    switch (Little32(block, 0)) {
      case 0x0A0D0D0A:
        ReadSection(block, &recording);
        break;
      case 1:
        ReadInterface(block, &recording);
        break;
      case 5:
        ReadStatistics(block, &recording);
        break;
      case 6:
        ReadPacket(block, &recording);
        break;
      default:
        ADD_FAILURE() << "a block of type " << Little32(block, 0);
    }
    at += length;
  }
  return recording;
}

Bytes ReadWholeFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  EXPECT_TRUE(file.good()) << path;
  return Bytes(std::istreambuf_iterator<char>(file), {});
}

ReadRecording ReadPcapngFile(const std::string& path) { return ReadPcapng(ReadWholeFile(path)); }

}  // namespace test
