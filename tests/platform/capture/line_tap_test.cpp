// SPDX-License-Identifier: MIT
// What a recording tells of a line.
#include "platform/capture/line_tap.h"

#include <gmock/gmock.h>

#include <memory>
#include <optional>
#include <string>

#include "support/pcapng_reader.h"
#include "support/temporary_folder.h"

namespace test {
namespace {

using ipodcomm::capture::Direction;
using ipodcomm::capture::Event;
using ipodcomm::capture::LineTap;
using ipodcomm::capture::Nanoseconds;
using ::testing::ElementsAre;

constexpr Nanoseconds kMillisecond = 1'000'000;
constexpr Nanoseconds kStart = 1'000'000'000'000;

class LineTapTest : public ::testing::Test {
 protected:
  LineTapTest() {
    std::string error;
    recording_ = ipodcomm::capture::Recording::Start(folder_.path("line.pcapng"), &error);
    tap_.emplace(recording_, "/dev/ttyUSB0");
    tap_->Configure(57600, "57600 baud", kStart);
  }

  void Send(std::string_view hex, Nanoseconds at) { Record(Direction::kSent, hex, at); }
  void Receive(std::string_view hex, Nanoseconds at) { Record(Direction::kReceived, hex, at); }
  void Record(Direction direction, std::string_view hex, Nanoseconds at) {
    const Bytes bytes = Hex(hex);
    tap_->Record(direction, bytes.data(), bytes.size(), kStart + at);
  }

  ReadRecording Read() {
    recording_->Drain();
    return ReadPcapngFile(folder_.path("line.pcapng"));
  }
  ReadRecording CloseAndRead() {
    tap_.reset();
    recording_.reset();
    return ReadPcapngFile(folder_.path("line.pcapng"));
  }

  TemporaryFolder folder_;
  std::shared_ptr<ipodcomm::capture::Recording> recording_;
  std::optional<LineTap> tap_;
};

TEST_F(LineTapTest, TheLineIsAnInterfaceOfSerialData) {
  const ReadRecording recording = CloseAndRead();
  ASSERT_EQ(recording.interfaces.size(), 1U);
  EXPECT_EQ(recording.interfaces[0].link_type, 250U);
  EXPECT_EQ(recording.interfaces[0].name, "/dev/ttyUSB0");
  EXPECT_EQ(recording.interfaces[0].description, "57600 baud");
  EXPECT_EQ(recording.interfaces[0].speed, 57600U);
  EXPECT_EQ(recording.interfaces[0].time_resolution, 9U);
}

TEST_F(LineTapTest, AFrameIsAPacketAtTheTimeOfItsFirstByte) {
  Send("FF", 0);
  Send("55 02 00 13 EB", 20 * kMillisecond);
  const ReadRecording recording = CloseAndRead();
  EXPECT_THAT(recording.Lines(), ElementsAre("> FF 55 02 00 13 EB", "event 6"));
  EXPECT_EQ(recording.packets[0].time_ns, 1'000'000'000'000U);
  EXPECT_EQ(recording.packets[0].header_time_us, 1'000'000'000U);
  EXPECT_EQ(recording.packets[0].flags, 2U);
}

// The pause behind the sync byte, on a system that is busy.
TEST_F(LineTapTest, AFrameIsOneHoweverLongItsSyncByteGoesAhead) {
  Send("FF", 0);
  Send("55 02 00 13 EB", 900 * kMillisecond);
  Receive("FF 55 02 00 13 EB", 901 * kMillisecond);
  const ReadRecording recording = CloseAndRead();
  EXPECT_THAT(recording.Lines(),
              ElementsAre("> FF 55 02 00 13 EB", "< FF 55 02 00 13 EB", "event 6"));
  EXPECT_EQ(recording.packets[0].time_ns, 1'000'000'000'000U);
}

// Sent to wake the iPod up, for example.
TEST_F(LineTapTest, ASyncByteThatNoStartByteFollowsIsNoFrame) {
  Send("FF", 0);
  Send("FF", 900 * kMillisecond);
  Send("55 02 00 13 EB", 920 * kMillisecond);
  EXPECT_THAT(CloseAndRead().Lines(), ElementsAre("> FF", "> FF 55 02 00 13 EB", "event 6"));
}

TEST_F(LineTapTest, WhatComesWhileAFrameIsSentStaysApart) {
  Send("FF 55 02", 0);
  Receive("FF 55 02 00", kMillisecond);
  Send("00 13 EB", 2 * kMillisecond);
  Receive("27 D7", 3 * kMillisecond);
  const ReadRecording recording = CloseAndRead();
  EXPECT_THAT(recording.Lines(),
              ElementsAre("> FF 55 02 00 13 EB", "< FF 55 02 00 27 D7", "event 6"));
  EXPECT_EQ(recording.packets[1].flags, 1U);
}

TEST_F(LineTapTest, ABadChecksumIsFlagged) {
  Receive("FF 55 02 00 13 EC", 0);
  const ReadRecording recording = CloseAndRead();
  EXPECT_EQ(recording.packets[0].flags, 0x01000001U);
}

TEST_F(LineTapTest, BytesThatAreNoFrameAreCalledSo) {
  Receive("00 01 FF 55 02 00 13 EB", 0);
  const ReadRecording recording = CloseAndRead();
  EXPECT_THAT(recording.Lines(), ElementsAre("< 00 01", "< FF 55 02 00 13 EB", "event 6"));
  EXPECT_THAT(recording.packets[0].comments, ElementsAre("no frame"));
  EXPECT_THAT(recording.packets[1].comments, ElementsAre());
}

TEST_F(LineTapTest, AFrameThatDoesNotGoOnForAQuarterOfASecondWasCut) {
  Receive("FF 55 09 00", 0);
  Send("FF", 250 * kMillisecond);
  EXPECT_THAT(Read().Lines(), ElementsAre());
  Send("55", 250 * kMillisecond + 1);
  EXPECT_THAT(Read().Lines(), ElementsAre("< FF 55 09 00"));
  EXPECT_THAT(CloseAndRead().Lines(), ElementsAre("< FF 55 09 00", "> FF 55", "event 6"));
}

TEST_F(LineTapTest, TheEndIsARecordOfItsOwnAtTheTimeOfTheLastPacket) {
  Receive("FF 55 02 00 13 EB", 5 * kMillisecond);
  EXPECT_THAT(Read().Lines(), ElementsAre("< FF 55 02 00 13 EB"));
  const ReadRecording recording = CloseAndRead();
  EXPECT_THAT(recording.Lines(), ElementsAre("< FF 55 02 00 13 EB", "event 6"));
  EXPECT_EQ(recording.packets[1].time_ns, 1'000'005'000'000U);
  EXPECT_EQ(recording.packets[1].flags, 0U);
}

TEST_F(LineTapTest, OtherSettingsAreAnInterfaceOfTheirOwn) {
  Receive("FF 55 02", 0);
  tap_->Configure(57600, "57600 baud", kStart + 1);
  tap_->Configure(19200, "19200 baud", kStart + 2);
  Receive("AA", 3);
  const ReadRecording recording = CloseAndRead();
  ASSERT_EQ(recording.interfaces.size(), 2U);
  EXPECT_EQ(recording.interfaces[1].speed, 19200U);
  EXPECT_THAT(recording.Lines(), ElementsAre("< FF 55 02", "< AA", "event 6"));
  EXPECT_EQ(recording.packets[0].interface_number, 0U);
  EXPECT_EQ(recording.packets[1].interface_number, 1U);
  ASSERT_EQ(recording.statistics.size(), 2U);
  EXPECT_EQ(recording.statistics[0].received, 1U);
  EXPECT_EQ(recording.statistics[1].interface_number, 1U);
}

TEST_F(LineTapTest, WhatIsNoByteIsAPacketWithoutBytes) {
  tap_->set_control_lines(0x19);
  tap_->Record(Event::kFraming, kStart);
  tap_->Record(Event::kOverflow, kStart);
  const ReadRecording recording = CloseAndRead();
  EXPECT_THAT(recording.Lines(), ElementsAre("event 7", "event 10", "event 6"));
  EXPECT_EQ(recording.packets[0].control_lines, 0x19U);
}

TEST_F(LineTapTest, NothingIsRecordedOfALineWithoutSettings) {
  {
    LineTap unconfigured(recording_, "other");
    unconfigured.Record(Direction::kReceived, "x", 1, kStart);
    unconfigured.Record(Event::kBreak, kStart);
  }
  EXPECT_THAT(CloseAndRead().Lines(), ElementsAre("event 6"));
}

TEST_F(LineTapTest, AllBytesOfBothDirectionsAreThere) {
  Send("01 FF 55 01 02 FD FF 55 00 00 01 02 FD 09", 0);
  Receive("FF FF 55 55", 1);
  const ReadRecording recording = CloseAndRead();
  EXPECT_EQ(ToHex(recording.BytesOf(1)), "01 FF 55 01 02 FD FF 55 00 00 01 02 FD 09");
  EXPECT_EQ(ToHex(recording.BytesOf(2)), "FF FF 55 55");
}

}  // namespace
}  // namespace test
