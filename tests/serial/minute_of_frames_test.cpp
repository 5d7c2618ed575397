// SPDX-License-Identifier: MIT
// A minute of frames back to back, under each conduct, at the speed at which it reads: the fast one
// at that of the line, the others a byte every 2 ms, however fast the line is. None is lost.
#include "serial_test.h"

namespace {

using test::Bytes;
using test::kSecond;
using test::SerialTest;

struct Reading {
  const char* name;
  tagIPOD_CONDUCT conduct;
  int bytes_per_second;
};

class MinuteOfFrames : public SerialTest, public ::testing::WithParamInterface<Reading> {};

// FF 55 05 04 00 19 number(2) checksum
Bytes Numbered(int number) {
  const int high = number >> 8;
  const int low = number & 0xFF;
  const int sum = 0x05 + 0x04 + 0x19 + high + low;
  Bytes frame = {0xFF, 0x55, 0x05, 0x04, 0x00, 0x19};
  for (const int byte : {high, low, -sum}) frame.push_back(static_cast<std::uint8_t>(byte & 0xFF));
  return frame;
}

TEST_P(MinuteOfFrames, LosesNothing) {
  CIpodSerialPeer::ChoosePace(serial_, GetParam().conduct);
  OpenForPackets();
  const std::int64_t frame_us = 9 * kSecond / GetParam().bytes_per_second;
  const auto frames = static_cast<int>(60 * kSecond / frame_us);
  const std::int64_t start_us = world_.now_us();
  for (int i = 0; i < frames; ++i) ipod_.SendAt(start_us + i * frame_us, Numbered(i));
  int next = 0;
  for (int second = 0; second < 62; ++second) {
    world_.Advance(kSecond);
    tagSERIAL_PACKET packet = {};
    while (serial_.GetNextPacket(&packet, 0)) {
      ASSERT_EQ(packet.data[6] * 256 + packet.data[7], next);
      ++next;
    }
  }
  EXPECT_EQ(next, frames);
}

// 57600 baud, 10 bits a byte.
INSTANTIATE_TEST_SUITE_P(Under, MinuteOfFrames,
                         ::testing::Values(Reading{"Field", IPOD_CONDUCT_FIELD, 500},
                                           Reading{"Robust", IPOD_CONDUCT_ROBUST, 500},
                                           Reading{"Fast", IPOD_CONDUCT_FAST, 5760}),
                         [](const auto& tested) { return std::string(tested.param.name); });

}  // namespace
