// SPDX-License-Identifier: MIT
// The blocks of a recording, byte by byte.
#include "platform/capture/pcapng.h"

#include <gtest/gtest.h>

#include "support/bytes.h"

namespace test {
namespace {

using namespace ipodcomm::capture;

TEST(PcapngBlocks, ASectionNamesTheProgramThatRecords) {
  EXPECT_EQ(ToHex(SectionHeaderBlock("dock 1")),
            ToHex(Hex("0A 0D 0D 0A  2C 00 00 00  4D 3C 2B 1A  01 00 00 00"
                      "FF FF FF FF FF FF FF FF"
                      "04 00 06 00  64 6F 63 6B 20 31 00 00"
                      "00 00 00 00  2C 00 00 00")));
}

TEST(PcapngBlocks, AnInterfaceTellsTheLineItsSpeedAndTheUnitOfTime) {
  EXPECT_EQ(ToHex(InterfaceDescriptionBlock({"tty", "8N1", 57600})),
            ToHex(Hex("01 00 00 00  3C 00 00 00  FA 00 00 00  00 00 00 00"
                      "02 00 03 00  74 74 79 00"
                      "03 00 03 00  38 4E 31 00"
                      "08 00 08 00  00 E1 00 00 00 00 00 00"
                      "09 00 01 00  09 00 00 00"
                      "00 00 00 00  3C 00 00 00")));
}

TEST(PcapngBlocks, APacketBeginsWithTwelveBytesOfTheSerialLine) {
  Packet packet;
  packet.interface_number = 2;
  packet.time = 0x0000000100000002;  // 4.294967298 s
  packet.direction = Direction::kSent;
  packet.event = Event::kSent;
  packet.control_lines = kRts | kDtr;
  packet.bytes = {0xFF, 0x55, 0x01};
  EXPECT_EQ(ToHex(EnhancedPacketBlock(packet)),
            ToHex(Hex("06 00 00 00  3C 00 00 00  02 00 00 00  01 00 00 00 02 00 00 00"
                      "0F 00 00 00  0F 00 00 00"
                      "00 00 00 04  00 04 80 37  01 18 00 00  FF 55 01 00"
                      "02 00 04 00  02 00 00 00"
                      "00 00 00 00  3C 00 00 00")));
}

TEST(PcapngBlocks, ABadChecksumIsAFlagAndCommentsStandInFront) {
  Packet packet;
  packet.direction = Direction::kReceived;
  packet.event = Event::kReceived;
  packet.bad_checksum = true;
  packet.bytes = {0x55};
  packet.comments = {"one", "two!"};
  EXPECT_EQ(ToHex(EnhancedPacketBlock(packet)),
            ToHex(Hex("06 00 00 00  4C 00 00 00  00 00 00 00  00 00 00 00 00 00 00 00"
                      "0D 00 00 00  0D 00 00 00"
                      "00 00 00 00  00 00 00 00  02 00 00 00  55 00 00 00"
                      "01 00 03 00  6F 6E 65 00"
                      "01 00 04 00  74 77 6F 21"
                      "02 00 04 00  01 00 00 01"
                      "00 00 00 00  4C 00 00 00")));
}

TEST(PcapngBlocks, StatisticsTellWhatWasRecordedAndWhatWasLost) {
  Statistics statistics;
  statistics.interface_number = 1;
  statistics.started = 5;
  statistics.ended = 9;
  statistics.recorded = 300;
  statistics.lost = 2;
  EXPECT_EQ(ToHex(InterfaceStatisticsBlock(statistics)),
            ToHex(Hex("05 00 00 00  4C 00 00 00  01 00 00 00  00 00 00 00 09 00 00 00"
                      "02 00 08 00  00 00 00 00 05 00 00 00"
                      "03 00 08 00  00 00 00 00 09 00 00 00"
                      "04 00 08 00  2C 01 00 00 00 00 00 00"
                      "05 00 08 00  02 00 00 00 00 00 00 00"
                      "00 00 00 00  4C 00 00 00")));
}

TEST(PcapngBlocks, EventsHaveTheNumbersOfTheLinkType) {
  const std::vector<std::pair<Event, int>> events = {
      {Event::kStatus, 0}, {Event::kSent, 1},     {Event::kReceived, 2},
      {Event::kLost, 5},   {Event::kComplete, 6}, {Event::kFraming, 7},
      {Event::kParity, 8}, {Event::kBreak, 9},    {Event::kOverflow, 10}};
  for (const auto& [event, number] : events) {
    Packet packet;
    packet.event = event;
    EXPECT_EQ(EnhancedPacketBlock(packet).at(28 + 8), number);
  }
}

}  // namespace
}  // namespace test
