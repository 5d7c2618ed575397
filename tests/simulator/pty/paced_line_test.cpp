// SPDX-License-Identifier: MIT
// Proves when bytes arrive on a line of a given speed. At 57600 baud a byte of 10.5 bits takes
// 182.29 microseconds.

#include "simulator/pty/paced_line.h"

#include <gtest/gtest.h>

#include "tests/simulator/ipod_under_test.h"

namespace ipodsim {
namespace {

TEST(PacedLine, ByteArrivesWithItsLastBit) {
  PacedLine line(57600);
  EXPECT_EQ(line.NextArrival(), std::nullopt);
  line.Send({0xFF}, 1000);
  EXPECT_EQ(line.NextArrival(), 1182);
  EXPECT_EQ(ToHex(line.Receive(1181)), "");
  EXPECT_EQ(ToHex(line.Receive(1182)), "FF");
  EXPECT_EQ(line.NextArrival(), std::nullopt);
}

TEST(PacedLine, BytesArriveOneAfterTheOther) {
  PacedLine line(57600);
  line.Send({0xFF, 0x55, 0x02}, 0);
  EXPECT_EQ(ToHex(line.Receive(364)), "FF 55");
  EXPECT_EQ(line.NextArrival(), 546);
  EXPECT_EQ(line.LastArrival(), 546);
  EXPECT_EQ(ToHex(line.Receive(546)), "02");
}

TEST(PacedLine, TellsWhenSomeOrAllHaveArrived) {
  PacedLine line(57600);
  EXPECT_EQ(line.ArrivalOf(8), std::nullopt);
  line.Send(Bytes(20, 0x55), 0);
  EXPECT_EQ(line.ArrivalOf(8), 1458);
  EXPECT_EQ(line.ArrivalOf(20), 3645);
  EXPECT_EQ(line.ArrivalOf(21), 3645);
}

TEST(PacedLine, BytesWaitForThoseBeforeThem) {
  PacedLine line(57600);
  line.Send({1, 2}, 0);
  line.Send({3}, 200);
  EXPECT_EQ(ToHex(line.Receive(400)), "01 02");
  line.Send({4}, 400);
  EXPECT_EQ(line.LastArrival(), 729);
  EXPECT_EQ(ToHex(line.Receive(1000)), "03 04");
}

TEST(PacedLine, QuietLineBeginsWithTheNextByte) {
  PacedLine line(57600);
  line.Send({1}, 0);
  EXPECT_EQ(ToHex(line.Receive(182)), "01");
  line.Send({2}, 5000);
  EXPECT_EQ(line.NextArrival(), 5182);
}

// 5,485.7 bytes a second, however they are sent.
TEST(PacedLine, FractionsOfAMicrosecondDoNotAddUp) {
  PacedLine line(57600);
  for (int i = 0; i < 5486; ++i) line.Send({0x55}, 0);
  EXPECT_EQ(line.LastArrival(), 1000052);
  EXPECT_EQ(line.Receive(999999).size(), 5485u);
}

TEST(PacedLine, FasterLineTakesLess) {
  PacedLine line(115200);
  line.Send(Bytes(100, 0x55), 0);
  EXPECT_EQ(line.LastArrival(), 9114);
}

TEST(PacedLine, WithoutASpeedBytesTakeNoTime) {
  PacedLine line(0);
  line.Send(Bytes(1000, 0x55), 77);
  EXPECT_EQ(line.NextArrival(), 77);
  EXPECT_EQ(line.Receive(77).size(), 1000u);
  line.Send({1}, 80);
  EXPECT_EQ(line.NextArrival(), 80);
}

TEST(PacedLine, CutLineForgetsWhatIsOnTheWay) {
  PacedLine line(57600);
  line.Send({1, 2, 3}, 0);
  line.Cut();
  EXPECT_EQ(line.NextArrival(), std::nullopt);
  EXPECT_EQ(ToHex(line.Receive(10000)), "");
}

}  // namespace
}  // namespace ipodsim
