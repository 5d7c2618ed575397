// SPDX-License-Identifier: MIT
// Proves that every frame, either way, is told in one readable line.

#include "simulator/wire/trace.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/simulator/ipod_under_test.h"

namespace ipodsim {
namespace {

using testing::ElementsAre;

class TraceTest : public testing::Test {
 protected:
  TraceTest() {
    dock.ipod.set_trace([this](const TraceLine& line) { lines.push_back(Format(line)); });
  }
  std::vector<std::string> lines;
  IpodUnderTest dock;
};

TEST_F(TraceTest, BothDirectionsAreTold) {
  dock.IdentifyOnly();
  dock.Exchange("FF 55 02 00 07 F7");
  EXPECT_THAT(lines,
              ElementsAre("   1.000000 > General IdentifyDeviceLingoes: 00 00 00 1D 00 00 00 00 00 "
                          "00 00 00",
                          "   1.010000 < General ACK ok for IdentifyDeviceLingoes",
                          "   1.010000 > General RequestiPodName",
                          "   1.020000 < General ReturniPodName \"Pod\""));
}

TEST_F(TraceTest, MistakesAreTold) {
  dock.Exchange("FF 55 02 00 07 F7");
  EXPECT_THAT(lines, ElementsAre("   1.000000 > General RequestiPodName",
                                 "   1.000000 * mistake: command before identification: General "
                                 "RequestiPodName",
                                 "   1.010000 < General ReturniPodName \"Pod\""));
}

TEST_F(TraceTest, IdentifiersAndRefusalsAreTold) {
  dock.Identify();
  dock.IdentifyByTokens();
  lines.clear();
  dock.Exchange("FF 55 0A 04 00 17 00 03 02 00 00 00 01 D5");
  dock.Exchange("FF 55 0A 04 00 17 00 04 02 00 00 00 63 72");
  ASSERT_EQ(lines.size(), 5u);
  EXPECT_EQ(lines[0].substr(12), "> Extended Interface SelectDBRecord id 0003: 02 00 00 00 01");
  EXPECT_EQ(lines[1].substr(12), "< Extended Interface ACK id 0003 ok for SelectDBRecord");
  EXPECT_EQ(lines[4].substr(12),
            "< Extended Interface ACK id 0004 bad parameter for SelectDBRecord");
}

TEST(Describe, PendingAcknowledgementNamesItsTime) {
  EXPECT_EQ(Describe({0x00, 0x02, {0x06, 0x05, 0x00, 0x00, 0x01, 0x2C}}, false),
            "General ACK pending for EnterRemoteUIMode within 300 ms");
}

TEST(Describe, NumberOfBothSidesIsNamedByItsSender) {
  EXPECT_EQ(Describe({0x04, 0x001F, {}}, false), "Extended Interface GetTrackArtworkTimes");
  EXPECT_EQ(Describe({0x04, 0x001F, {}}, false, Sender::kIpod),
            "Extended Interface ReturnCurrentPlayingTrackIndex");
  EXPECT_EQ(Describe({0x04, 0x0001, {0x04, 0x00, 0x1F}}, false, Sender::kIpod),
            "Extended Interface ACK unknown for GetTrackArtworkTimes");
}

TEST(Describe, UnknownCommandsAreNumbers) {
  EXPECT_EQ(Describe({0x00, 0x77, {}}, false), "General command 0x77");
  EXPECT_EQ(Describe({0x04, 0x0177, {}}, false), "Extended Interface command 0x0177");
  EXPECT_EQ(Describe({0x33, 0x01, {0xAB}}, false), "unknown lingo command 0x01: AB");
}

TEST(Describe, LongTextsAreCutAtACharacter) {
  Bytes data = {0, 0, 0, 7};
  for (int i = 0; i < 50; ++i) data.insert(data.end(), {0xC3, 0xA9});
  data.push_back(0);
  std::string expected = "Extended Interface ReturnCategorizedDatabaseRecord 00 00 00 07 \"";
  for (int i = 0; i < 30; ++i) expected += "é";
  EXPECT_EQ(Describe({0x04, 0x001B, data}, false), expected + "...\"");
}

TEST(Describe, ControlCharactersAreKeptFromTheTerminal) {
  EXPECT_EQ(Describe({0x00, 0x08, {0x1B, '[', 'm', 0x00}}, false),
            "General ReturniPodName \"?[m\"");
}

TEST(Describe, ManyBytesAreCounted) {
  EXPECT_EQ(
      Describe({0x00, 0x39, Bytes(30, 0x11)}, false),
      "General SetFIDTokenValues: 11 11 11 11 11 11 11 11 11 11 11 11 11 11 11 11 11 11 11 11 "
      "11 11 11 11 ... (30 bytes)");
}

}  // namespace
}  // namespace ipodsim
