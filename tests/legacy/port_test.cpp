// SPDX-License-Identifier: MIT
// The legacy serial port: construction, closing, raw writes, purging and copies.
#include "legacy_port.h"

namespace {

using test::kSecond;
using test::LegacyPort;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST_F(LegacyPort, ConstructionSetsTheDefaultsAndOpensNothing) {
  world_.Record({"CreateFileW"});
  ipodserial serial;
  EXPECT_THAT(world_.DrainRecord(), IsEmpty());
  EXPECT_EQ(ipodserialPeer::Port(serial), INVALID_HANDLE_VALUE);
  EXPECT_EQ(ipodserialPeer::BaudRate(serial), 57600);
  EXPECT_EQ(ipodserialPeer::DataBits(serial), 8);
  EXPECT_EQ(ipodserialPeer::StopBits(serial), 1);
  EXPECT_EQ(ipodserialPeer::Parity(serial), 0);
  EXPECT_EQ(ipodserialPeer::TimeoutMs(serial), 200U);
  EXPECT_STREQ(ipodserialPeer::PortName(serial), L"COM2:");
  EXPECT_EQ(sizeof ipodserialPeer::PortName(serial), 26 * sizeof(wchar_t));
}

TEST_F(LegacyPort, ConstructionWritesTheNameWithTheSystemsFormatter) {
  world_.Record();
  const ipodserial serial;
  EXPECT_THAT(world_.DrainRecord(), ElementsAre("wsprintfW(\"COM2:\")"));
}

TEST_F(LegacyPort, NameIsThereAlsoWhereTheFormatterFails) {
  world_.FailOnce("wsprintfW", 1, 8);
  ipodserial serial;
  EXPECT_STREQ(ipodserialPeer::PortName(serial), L"COM2:");
  EXPECT_EQ(serial.openport(), 1);
  serial.closeport();
}

// ---- Closing

TEST_F(LegacyPort, ClosingCallsTheDriverInOrder) {
  Open();
  world_.Record();
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(serial_.closeport(), 1); }), 0);
  EXPECT_THAT(world_.DrainRecord(),
              ElementsAre("SetCommMask(port1, 0)", "PurgeComm(port1, 12)", "CloseHandle(port1)"));
  EXPECT_EQ(Port(), INVALID_HANDLE_VALUE);
}

TEST_F(LegacyPort, ClosingAClosedPortCallsNothing) {
  world_.Record();
  EXPECT_EQ(serial_.closeport(), 1);
  EXPECT_THAT(world_.DrainRecord(), IsEmpty());
}

TEST_F(LegacyPort, ClosingSucceedsWhateverTheDriverSays) {
  Open();
  world_.FailOnce("SetCommMask", 1, 31);
  world_.FailOnce("PurgeComm", 1, 31);
  world_.FailOnce("CloseHandle", 1, 31);
  EXPECT_EQ(serial_.closeport(), 1);
  EXPECT_EQ(Port(), INVALID_HANDLE_VALUE);
}

TEST_F(LegacyPort, DestructionLeavesThePortOpen) {
  {
    ipodserial serial;
    EXPECT_EQ(serial.openport(), 1);
    world_.Record({"CloseHandle"});
  }
  EXPECT_THAT(world_.DrainRecord(), IsEmpty());
  EXPECT_THAT(world_.leftovers(), ElementsAre("port1"));
}

// ---- Writing

TEST_F(LegacyPort, WritesAllBytesInOneCall) {
  Open();
  world_.Record();
  EXPECT_EQ(Write(serial_, "FF 55 02"), 3U);
  EXPECT_THAT(world_.DrainRecord(), ElementsAre("WriteFile(port1, FF 55 02)"));
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 02"));
}

TEST_F(LegacyPort, ClosedPortRefusesToWrite) {
  world_.Record();
  EXPECT_EQ(Write(serial_, "FF"), 0U);
  EXPECT_THAT(world_.DrainRecord(), IsEmpty());
}

TEST_F(LegacyPort, FailedWriteIsNotTriedAgain) {
  Open();
  world_.Record({"WriteFile"});
  world_.FailOnce("WriteFile", 1, 31);
  EXPECT_EQ(Write(serial_, "FF 55"), 0U);
  EXPECT_THAT(world_.DrainRecord(), ElementsAre("WriteFile(port1, FF 55)"));
}

TEST_F(LegacyPort, PartlyAcceptedWriteTellsHowMuchAndIsNotGoneOnWith) {
  Open();
  // A write time-out and a driver's queue of 1024 bytes, of which few leave in the time.
  COMMTIMEOUTS timeouts = {200, 200, 200, 0, 1};
  SetCommTimeouts(Port(), &timeouts);
  world_.Record({"WriteFile"});
  test::Bytes bytes(1100, 0x41);
  EXPECT_EQ(serial_.writeport(bytes.data(), 1100), 1029U);
  EXPECT_EQ(world_.DrainRecord().size(), 1U);
}

TEST_F(LegacyPort, WriteOfNothingIsOneEmptyWrite) {
  Open();
  world_.Record({"WriteFile"});
  unsigned char byte = 0;
  EXPECT_EQ(serial_.writeport(&byte, 0), 0U);
  EXPECT_THAT(world_.DrainRecord(), ElementsAre("WriteFile(port1, nothing)"));
}

TEST_F(LegacyPort, WriteWithoutBytesOrOfANegativeNumberIsRefused) {
  Open();
  world_.Record({"WriteFile"});
  unsigned char byte = 0;
  EXPECT_EQ(serial_.writeport(nullptr, 3), 0U);
  EXPECT_EQ(serial_.writeport(&byte, -1), 0U);
  EXPECT_THAT(world_.DrainRecord(), IsEmpty());
}

// ---- Purging

TEST_F(LegacyPort, PurgesOneDirectionEach) {
  Open();
  world_.Record();
  serial_.purgerx();
  serial_.purgetx();
  EXPECT_THAT(world_.DrainRecord(), ElementsAre("PurgeComm(port1, 8)", "PurgeComm(port1, 4)"));
}

TEST_F(LegacyPort, PurgingAClosedPortIsTriedAndFails) {
  world_.Record();
  serial_.purgerx();
  serial_.purgetx();
  const auto calls = world_.DrainCalls().all();
  ASSERT_EQ(calls.size(), 2U);
  for (const auto& call : calls) {
    EXPECT_EQ(call.service, "PurgeComm");
    EXPECT_EQ(call.result, "failed 6");
  }
}

// ---- The error report

TEST_F(LegacyPort, ErrorPrintsTheLastCodeAndItsText) {
  SetLastError(5);
  serial_.Error();
  EXPECT_THAT(DrainDebugOutput(),
              ElementsAre("Error in Serial Read Number 5, Access is denied.\r\n\n"));
  SetLastError(31);
  serial_.Error();
  EXPECT_THAT(DrainDebugOutput(),
              ElementsAre("Error in Serial Read Number 31, A device attached to the system is not "
                          "functioning.\r\n\n"));
}

TEST_F(LegacyPort, ErrorWithoutATextPrintsTheCodeAlone) {
  SetLastError(54321);
  serial_.Error();
  SetLastError(5);
  world_.FailOnce("FormatMessageW", 1, 8);
  serial_.Error();
  EXPECT_THAT(DrainDebugOutput(), ElementsAre("Error in Serial Read Number 54321, \n",
                                              "Error in Serial Read Number 5, \n"));
}

// ---- Copies

ipodserial Assigned(const ipodserial& source) {
  ipodserial copy;
  copy = source;
  return copy;
}

TEST_F(LegacyPort, CopyTakesEveryField) {
  EXPECT_EQ(serial_.openport(L"COM3:", 9600), 1);
  ipodserialPeer::DataBits(serial_) = 7;
  ipodserialPeer::StopBits(serial_) = 2;
  ipodserialPeer::Parity(serial_) = 1;
  ipodserialPeer::TimeoutMs(serial_) = 350;
  wsprintfW(ipodserialPeer::PortName(serial_), L"COM7:");
  world_.Record();
  for (ipodserial copy : {ipodserial(serial_), Assigned(serial_)}) {
    EXPECT_EQ(ipodserialPeer::Port(copy), Port());
    EXPECT_EQ(ipodserialPeer::BaudRate(copy), 9600);
    EXPECT_EQ(ipodserialPeer::DataBits(copy), 7);
    EXPECT_EQ(ipodserialPeer::StopBits(copy), 2);
    EXPECT_EQ(ipodserialPeer::Parity(copy), 1);
    EXPECT_EQ(ipodserialPeer::TimeoutMs(copy), 350U);
    EXPECT_STREQ(ipodserialPeer::PortName(copy), L"COM7:");
    EXPECT_EQ(ipodserialPeer::PortState(copy).BaudRate, 9600U);
    EXPECT_EQ(ipodserialPeer::PortTimeouts(copy).ReadIntervalTimeout, 200U);
  }
  EXPECT_THAT(world_.DrainCalls().To({"CreateFileW", "CloseHandle"}).text(), IsEmpty());
}

TEST_F(LegacyPort, CopyWritesThroughTheSharedPort) {
  Open();
  ipodserial copy = serial_;
  EXPECT_EQ(Write(copy, "41"), 1U);
  EXPECT_EQ(Write(serial_, "42"), 1U);
  EXPECT_THAT(DrainSent(), ElementsAre("41", "42"));
}

TEST_F(LegacyPort, CopyOfAClosedSourceFailsWithoutHarm) {
  Open();
  ipodserial copy = serial_;
  serial_.closeport();
  unsigned char buffer[8] = {};
  EXPECT_EQ(Write(copy, "41"), 0U);
  // Every read fails at once and is followed by its pause.
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(copy.readport(buffer, 8), 0U); }), kSecond);
  copy.purgerx();
  copy.purgetx();
  EXPECT_EQ(copy.closeport(), 1);
  EXPECT_EQ(ipodserialPeer::Port(copy), INVALID_HANDLE_VALUE);
}

TEST_F(LegacyPort, SourceOfAClosedCopyFailsWithoutHarm) {
  Open();
  Assigned(serial_).closeport();
  EXPECT_EQ(Write(serial_, "41"), 0U);
  EXPECT_EQ(serial_.closeport(), 1);
  Open();
  EXPECT_EQ(Write(serial_, "41"), 1U);
}

}  // namespace
