// SPDX-License-Identifier: MIT
// Which rate received bytes prove, with a line whose waveform is sampled tick by tick.
#include "wire/findings/baud_rate.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <iterator>
#include <optional>
#include <string>
#include <vector>

#include "support/bytes.h"

namespace test {
namespace {

using ipodwire::SendingRate;
using ::testing::AnyOf;
using ::testing::Eq;

constexpr std::uint32_t kRates[] = {9600, 19200, 38400, 57600, 115200};
constexpr std::size_t kTicksPerSecond = std::size_t{115200} * 16;

// The level of the line at each tick: 1 start bit, 8 data bits, one and a half stop bits.
std::vector<bool> Send(const Bytes& bytes, std::uint32_t rate) {
  const std::size_t bit = kTicksPerSecond / rate;
  std::vector<bool> levels(bit, true);
  for (const std::uint8_t byte : bytes) {
    levels.insert(levels.end(), bit, false);
    for (unsigned i = 0; i < 8; ++i) levels.insert(levels.end(), bit, (byte & 1U << i) != 0);
    levels.insert(levels.end(), bit + bit / 2, true);
  }
  levels.insert(levels.end(), 12 * kTicksPerSecond / 9600, true);
  return levels;
}

// What a receiver makes of them that waits for a start bit and looks at the middle of each bit.
Bytes Receive(const std::vector<bool>& levels, std::uint32_t rate) {
  const std::size_t bit = kTicksPerSecond / rate;
  Bytes received;
  for (std::size_t at = 1; at + 10 * bit < levels.size(); ++at) {
    if (!levels[at - 1] || levels[at] || levels[at + bit / 2]) continue;
    unsigned value = 0;
    for (unsigned i = 0; i < 8; ++i) {
      if (levels[at + (i + 1) * bit + bit / 2]) value |= 1U << i;
    }
    received.push_back(static_cast<std::uint8_t>(value));
    at += 9 * bit + bit / 2;
  }
  return received;
}

std::vector<Bytes> Frames() {
  return {Hex("FF 55 04 00 02 00 38 C2"), Hex("FF 55 05 00 10 0A 01 02 DE"),
          Hex("FF 55 0A 00 08 6E 61 6E 6F 20 31 00 F9"), Hex("FF 55 06 04 00 01 00 00 02 F3")};
}

std::optional<std::uint32_t> Told(std::uint32_t sending, std::uint32_t listening) {
  std::vector<Bytes> runs;
  for (const Bytes& frame : Frames()) runs.push_back(Receive(Send(frame, sending), listening));
  return SendingRate(runs, listening);
}

TEST(SendingRate, IsToldFromTheImageOfAFramesFirstBytes) {
  EXPECT_EQ(SendingRate({Hex("FE 66 66 F8")}, 57600), std::nullopt);  // 28800: no iPod's rate
  EXPECT_EQ(SendingRate({Hex("FE 66 66 F8")}, 38400), 19200U);
  EXPECT_EQ(SendingRate({Hex("FC 1C 1C 1C 00")}, 57600), 19200U);
}

TEST(SendingRate, IsNotToldByNoiseOrByTooLittle) {
  EXPECT_EQ(SendingRate({}, 57600), std::nullopt);
  EXPECT_EQ(SendingRate({Hex("00 00 00 00 FF FF FF")}, 57600), std::nullopt);
  EXPECT_EQ(SendingRate({Hex("FC 1C 1C")}, 57600), std::nullopt);
}

TEST(SendingRate, IsNotLookedForWhereNoPortListens) {
  const std::vector<Bytes> runs = {Hex("FE 66 66 F8"), Hex("00 00 00 00 80 FF")};
  for (const std::uint32_t listening : {0U, 1'000'001U, 4'294'967'295U}) {
    EXPECT_EQ(SendingRate(runs, listening), std::nullopt) << listening;
  }
}

TEST(SendingRate, IsNotToldByFramesThatArriveAsTheyWereSent) {
  for (const std::uint32_t rate : kRates) EXPECT_EQ(Told(rate, rate), std::nullopt) << rate;
}

TEST(SendingRate, IsNeverAWrongOne) {
  for (const std::uint32_t sending : kRates) {
    for (const std::uint32_t listening : kRates) {
      EXPECT_THAT(Told(sending, listening), AnyOf(Eq(std::nullopt), Eq(sending)))
          << sending << " heard at " << listening;
    }
  }
}

TEST(SendingRate, OfADeviceAtAHalfAThirdOrASixthOfTheRateIsTold) {
  for (const std::uint32_t sending : kRates) {
    for (const std::uint32_t factor : {2U, 3U, 6U}) {
      const std::uint32_t listening = sending * factor;
      if (std::find(std::begin(kRates), std::end(kRates), listening) == std::end(kRates)) continue;
      EXPECT_EQ(Told(sending, listening), sending) << " heard at " << listening;
    }
  }
}

}  // namespace
}  // namespace test
