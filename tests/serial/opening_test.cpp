// SPDX-License-Identifier: MIT
// Opening the port: the calls in their order, the line's settings to the last field, and every way
// in which opening fails, with its code, its log line and what it leaves behind.
#include "serial/line_settings.h"
#include "serial_test.h"

namespace {

using test::DockTest;
using test::SerialTest;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class Opening : public SerialTest {};

TEST_F(DockTest, MakingAPortCreatesBothLocksAndTheEventAndOpensNothing) {
  world_.Record();
  CIpodSerial serial;
  EXPECT_THAT(
      world_.DrainRecord(),
      ElementsAre("InitializeCriticalSection(section1)", "InitializeCriticalSection(section2)",
                  "CreateEventW(auto, not set, \"IPOD_PORT_EVENT_NAME\")"));
  EXPECT_EQ(CIpodSerialPeer::Port(serial), INVALID_HANDLE_VALUE);
  EXPECT_EQ(CIpodSerialPeer::ReadThread(serial), INVALID_HANDLE_VALUE);
  EXPECT_EQ(CIpodSerialPeer::Driver(serial), INVALID_HANDLE_VALUE);
  EXPECT_EQ(CIpodSerialPeer::Running(serial), 0);
  EXPECT_EQ(CIpodSerialPeer::ThreadRunning(serial), 0);
  EXPECT_EQ(CIpodSerialPeer::Status(serial), 0U);
  EXPECT_EQ(CIpodSerialPeer::Window(serial), nullptr);
}

TEST_F(Opening, CallsTheDriverInOrder) {
  world_.Record();
  EXPECT_EQ(serial_.Open(true), 0);
  EXPECT_THAT(world_.DrainCalls().Of("host").text(),
              ElementsAre("EnterCriticalSection(section1)", "LeaveCriticalSection(section1)",
                          "CreateFileW(\"COM2:\")",
                          "SetCommState(port1, 57600 baud, 8 bits, parity 0, stop bits code 1)",
                          "SetCommTimeouts(port1, 1, 1, 1, 0, 0)", "SetCommMask(port1, 3)",
                          "PurgeComm(port1, 15)", "CreateThread(read)"));
  EXPECT_TRUE(Running());
  EXPECT_NE(CIpodSerialPeer::ReadThread(serial_), INVALID_HANDLE_VALUE);
}

TEST_F(Opening, WithoutReadThreadStartsNone) {
  world_.Record({"CreateThread", "PurgeComm"});
  EXPECT_EQ(serial_.Open(false), 0);
  EXPECT_THAT(world_.DrainRecord(), ElementsAre("PurgeComm(port1, 15)"));
  EXPECT_TRUE(Running());
  EXPECT_EQ(CIpodSerialPeer::ReadThread(serial_), INVALID_HANDLE_VALUE);
  EXPECT_THAT(world_.live_threads(), IsEmpty());
}

TEST_F(Opening, TakesNoTime) {
  EXPECT_EQ(Elapsed([&] { serial_.Open(true); }), 0);
}

TEST_F(Opening, LogsNothing) {
  serial_.Open(true);
  EXPECT_THAT(test::DrainTraceLog(), IsEmpty());
}

TEST_F(Opening, ClearsTheStatusWordAlsoWhenItFails) {
  CIpodSerialPeer::Status(serial_) = 7;
  world_.FailOnce("CreateFileW", 1, 2);
  serial_.Open(false);
  EXPECT_EQ(CIpodSerialPeer::Status(serial_), 0U);
}

TEST_F(Opening, DiscardsWhatTheDriverHeld) {
  OpenForRawAccess();
  ipod_.Send(test::Hex("11 22 33"));
  world_.Advance(test::kMillisecond);
  EXPECT_NE(serial_.CheckReceiveData(), 0);
  OpenForRawAccess();
  EXPECT_EQ(serial_.CheckReceiveData(), 0);
}

// ---- Settings

// The whole block, so that a field set by mistake shows. Zero are: the other flags, among them all
// flow control, and all special characters.
TEST(LineSettings, AreTheDocksAndZeroOtherwise) {
  DCB expected = {};
  expected.DCBlength = 28;
  expected.BaudRate = 57600;
  expected.fBinary = 1;
  expected.ByteSize = 8;
  expected.Parity = 0;
  expected.StopBits = 1;  // the code for one and a half stop bits, on purpose
  const DCB settings = ipodcomm::LineSettings();
  EXPECT_EQ(sizeof settings, 28U);
  const auto* bytes = reinterpret_cast<const std::uint8_t*>(&settings);
  const auto* expected_bytes = reinterpret_cast<const std::uint8_t*>(&expected);
  EXPECT_EQ(test::ToHex(bytes, 28), test::ToHex(expected_bytes, 28));
  EXPECT_EQ(test::ToHex(bytes, 12), "1C 00 00 00 00 E1 00 00 01 00 00 00");
  EXPECT_EQ(settings.ByteSize, 8);
  EXPECT_EQ(settings.StopBits, 1);
}

TEST(LineSettings, TimeoutsAreOneMillisecondForReadsAndNoneForWrites) {
  const COMMTIMEOUTS timeouts = ipodcomm::LineTimeouts();
  EXPECT_EQ(timeouts.ReadIntervalTimeout, 1U);
  EXPECT_EQ(timeouts.ReadTotalTimeoutMultiplier, 1U);
  EXPECT_EQ(timeouts.ReadTotalTimeoutConstant, 1U);
  EXPECT_EQ(timeouts.WriteTotalTimeoutMultiplier, 0U);
  EXPECT_EQ(timeouts.WriteTotalTimeoutConstant, 0U);
}

TEST_F(Opening, GivesThePortThoseSettings) {
  OpenForRawAccess();
  DCB settings = {};
  COMMTIMEOUTS timeouts = {};
  ASSERT_NE(GetCommState(Port(), &settings), FALSE);
  ASSERT_NE(GetCommTimeouts(Port(), &timeouts), FALSE);
  EXPECT_EQ(settings.BaudRate, 57600U);
  EXPECT_EQ(settings.fBinary, 1U);
  EXPECT_EQ(settings.StopBits, 1);
  EXPECT_EQ(timeouts.ReadTotalTimeoutConstant, 1U);
}

// ---- Failures

struct FailureRow {
  const char* name;
  const char* service;
  const char* log;
  bool port_stays_open;
};

class FailedOpening : public SerialTest, public ::testing::WithParamInterface<FailureRow> {
 protected:
  void Fail(DWORD code) { world_.FailOnce(GetParam().service, 1, code); }
};

TEST_P(FailedOpening, ReturnsTheSystemsCode) {
  for (const DWORD code : {5UL, 31UL, 0x1234UL}) {
    Fail(code);
    EXPECT_EQ(serial_.Open(true), static_cast<long>(code));
  }
}

TEST_P(FailedOpening, LogsItsLineOnce) {
  Fail(31);
  serial_.Open(true);
  EXPECT_THAT(test::DrainTraceLog(), ElementsAre(GetParam().log));
}

TEST_P(FailedOpening, StartsNoThreadAndDoesNotCountAsOpen) {
  Fail(31);
  serial_.Open(true);
  EXPECT_THAT(world_.live_threads(), IsEmpty());
  EXPECT_FALSE(Running());
  EXPECT_EQ(CIpodSerialPeer::ReadThread(serial_), INVALID_HANDLE_VALUE);
  EXPECT_EQ(Port() != INVALID_HANDLE_VALUE, GetParam().port_stays_open);
}

TEST_P(FailedOpening, IsFollowedByASuccessfulOne) {
  Fail(31);
  serial_.Open(true);
  EXPECT_EQ(serial_.Open(true), 0);
  EXPECT_TRUE(Running());
  Arrive("FF 55 02 00 13 EB");
  EXPECT_THAT(DrainPackets(), ElementsAre("FF 55 02 00 13 EB"));
}

TEST_P(FailedOpening, IsTheLastCallForTheDriver) {
  Fail(31);
  world_.Record();
  serial_.Open(true);
  const auto calls = world_.DrainCalls().Of("host").all();
  ASSERT_FALSE(calls.empty());
  EXPECT_EQ(calls.back().service, GetParam().service);
  EXPECT_EQ(calls.back().result, "failed 31");
}

INSTANTIATE_TEST_SUITE_P(
    At, FailedOpening,
    ::testing::Values(FailureRow{"ThePort", "CreateFileW",
                                 "CIpodSerial::Open: Error opening iPod serial port", false},
                      FailureRow{"TheSettings", "SetCommState",
                                 "CIpodSerial::Open: Error setting comm state", true},
                      FailureRow{"TheTimeouts", "SetCommTimeouts",
                                 "CIpodSerial::Open: Error setting comm timeouts", true},
                      FailureRow{"TheThread", "CreateThread",
                                 "CIpodSerial::Open: Error creating port read thread", true}),
    test::RowName());

TEST_F(Opening, FailureOfTheMaskOrThePurgeIsIgnored) {
  world_.FailOnce("SetCommMask", 1, 31);
  world_.FailOnce("PurgeComm", 1, 31);
  EXPECT_EQ(serial_.Open(true), 0);
  EXPECT_THAT(test::DrainTraceLog(), IsEmpty());
}

TEST_F(Opening, PortOfAnotherObjectIsRefusedWithAccessDenied) {
  CIpodSerial other;
  EXPECT_EQ(other.Open(false), 0);
  EXPECT_EQ(serial_.Open(false), 5);
  other.Close();
  EXPECT_EQ(serial_.Open(false), 0);
}

TEST_F(Opening, PortThatIsGoneIsRefusedWithFileNotFound) {
  world_.line().Vanish();
  EXPECT_EQ(serial_.Open(true), 2);
}

}  // namespace
