// SPDX-License-Identifier: MIT
// Opening the legacy serial port: the calls in their order, the line's settings to the last field,
// and every way in which it fails.
#include <algorithm>

#include "legacy_port.h"

namespace {

using test::LegacyPort;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST_F(LegacyPort, OpeningCallsTheDriverInOrder) {
  world_.Record();
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(serial_.openport(), 1); }), 0);
  EXPECT_THAT(world_.DrainRecord(),
              ElementsAre("CreateFileW(\"COM2:\")", "GetCommState(port1)", "SetCommMask(port1, 1)",
                          "SetCommState(port1, 57600 baud, 8 bits, parity 0, stop bits code 1)",
                          "GetCommTimeouts(port1)", "SetCommTimeouts(port1, 200, 200, 200, 0, 0)",
                          "PurgeComm(port1, 12)"));
}

TEST_F(LegacyPort, OpeningTakesNameAndBaudRate) {
  world_.Record({"CreateFileW", "SetCommState"});
  EXPECT_EQ(serial_.openport(L"COM3:", 9600), 1);
  EXPECT_THAT(world_.DrainRecord(),
              ElementsAre("CreateFileW(\"COM3:\")",
                          "SetCommState(port1, 9600 baud, 8 bits, parity 0, stop bits code 1)"));
}

TEST_F(LegacyPort, OpeningByNameStoresTheBaudRateAndNotTheName) {
  EXPECT_EQ(serial_.openport(L"COM3", 9600), 1);
  EXPECT_EQ(serial_.closeport(), 1);
  EXPECT_STREQ(ipodserialPeer::PortName(serial_), L"COM2:");
  world_.Record({"CreateFileW", "SetCommState"});
  EXPECT_EQ(serial_.openport(), 1);
  EXPECT_THAT(world_.DrainRecord(),
              ElementsAre("CreateFileW(\"COM2:\")",
                          "SetCommState(port2, 9600 baud, 8 bits, parity 0, stop bits code 1)"));
}

TEST_F(LegacyPort, OpeningThatFailsStoresTheBaudRateAllTheSame) {
  EXPECT_EQ(serial_.openport(L"COM9:", 4800), 0);
  EXPECT_EQ(ipodserialPeer::BaudRate(serial_), 4800);
}

// The line's settings are what the port reported, but for these.
TEST_F(LegacyPort, OpeningClearsAllFlagsAndCharactersAndLeavesTheRest) {
  DCB& state = ipodserialPeer::PortState(serial_);
  auto* bytes = reinterpret_cast<unsigned char*>(&state);
  std::fill(bytes, bytes + sizeof state, static_cast<unsigned char>(0xFF));
  state.DCBlength = sizeof state;
  // The port does not report, so that the record stays.
  world_.FailOnce("GetCommState", 1, 31);
  Open();
  // Length; baud rate; flags: binary, and those above the fourteen; reserved and limits; 8 bits,
  // no parity, code 1; five characters; reserved.
  EXPECT_EQ(test::ToHex(bytes, sizeof state),
            "1C 00 00 00 00 E1 00 00 01 80 FF FF FF FF FF FF FF FF 08 00 01 00 00 00 00 00 FF FF");
}

struct ParityRow {
  const char* name;
  int parity;
  unsigned flag;
};

class ParityOfAPort : public LegacyPort, public ::testing::WithParamInterface<ParityRow> {};

INSTANTIATE_TEST_SUITE_P(Is, ParityOfAPort,
                         ::testing::Values(ParityRow{"None", 0, 0}, ParityRow{"Odd", 1, 1},
                                           ParityRow{"Even", 2, 0}, ParityRow{"Mark", 3, 1}),
                         test::RowName());

TEST_P(ParityOfAPort, IsCheckedAsItsLowestBitSays) {
  ipodserialPeer::Parity(serial_) = GetParam().parity;
  Open();
  const DCB& state = ipodserialPeer::PortState(serial_);
  EXPECT_EQ(state.Parity, GetParam().parity);
  EXPECT_EQ(state.fParity, GetParam().flag);
}

TEST_F(LegacyPort, OpeningTakesDataBitsStopBitsAndTimeoutFromTheFields) {
  ipodserialPeer::DataBits(serial_) = 7;
  ipodserialPeer::StopBits(serial_) = 2;
  ipodserialPeer::TimeoutMs(serial_) = 350;
  world_.Record({"SetCommState", "SetCommTimeouts"});
  Open();
  EXPECT_THAT(world_.DrainRecord(),
              ElementsAre("SetCommState(port1, 57600 baud, 7 bits, parity 0, stop bits code 2)",
                          "SetCommTimeouts(port1, 350, 350, 350, 0, 0)"));
}

TEST_F(LegacyPort, OpeningTurnsWriteTimeoutsOff) {
  ipodserialPeer::PortTimeouts(serial_) = {1, 2, 3, 4, 5};
  world_.FailOnce("GetCommTimeouts", 1, 31);
  world_.Record({"SetCommTimeouts"});
  Open();
  EXPECT_THAT(world_.DrainRecord(), ElementsAre("SetCommTimeouts(port1, 200, 200, 200, 0, 0)"));
}

TEST_F(LegacyPort, PortThatDoesNotOpenLeavesNothingToClose) {
  world_.FailOnce("CreateFileW", 1, 5);
  world_.Record();
  EXPECT_EQ(serial_.openport(), 0);
  EXPECT_THAT(world_.DrainRecord(), ElementsAre("CreateFileW(\"COM2:\")"));
  EXPECT_EQ(Port(), INVALID_HANDLE_VALUE);
}

TEST_F(LegacyPort, PortThatIsGoneDoesNotOpen) {
  world_.line().Vanish();
  EXPECT_EQ(serial_.openport(), 0);
}

TEST_F(LegacyPort, PortWithoutANameDoesNotOpen) {
  EXPECT_EQ(serial_.openport(nullptr, 57600), 0);
  EXPECT_EQ(Port(), INVALID_HANDLE_VALUE);
}

TEST_F(LegacyPort, SettingsThatAreRefusedCloseThePortAgain) {
  world_.FailOnce("SetCommState", 1, 87);
  world_.Record();
  EXPECT_EQ(serial_.openport(), 0);
  EXPECT_THAT(world_.DrainRecord(),
              ElementsAre("CreateFileW(\"COM2:\")", "GetCommState(port1)", "SetCommMask(port1, 1)",
                          "SetCommState(port1, 57600 baud, 8 bits, parity 0, stop bits code 1)",
                          "SetCommMask(port1, 0)", "PurgeComm(port1, 12)", "CloseHandle(port1)"));
  EXPECT_EQ(Port(), INVALID_HANDLE_VALUE);
}

TEST_F(LegacyPort, TimeoutsThatAreRefusedCloseThePortAgain) {
  world_.FailOnce("SetCommTimeouts", 1, 87);
  world_.Record({"SetCommTimeouts", "SetCommMask", "PurgeComm", "CloseHandle"});
  EXPECT_EQ(serial_.openport(), 0);
  EXPECT_THAT(world_.DrainRecord(),
              ElementsAre("SetCommMask(port1, 1)", "SetCommTimeouts(port1, 200, 200, 200, 0, 0)",
                          "SetCommMask(port1, 0)", "PurgeComm(port1, 12)", "CloseHandle(port1)"));
  EXPECT_EQ(Port(), INVALID_HANDLE_VALUE);
}

TEST_F(LegacyPort, FailureOfAnythingElseDoesNotFailTheOpening) {
  world_.FailOnce("SetCommMask", 1, 31);
  world_.FailOnce("GetCommTimeouts", 1, 31);
  world_.FailOnce("PurgeComm", 1, 31);
  Open();
}

TEST_F(LegacyPort, FailedOpeningPrintsNothing) {
  world_.FailOnce("SetCommState", 1, 87);
  EXPECT_EQ(serial_.openport(), 0);
  EXPECT_THAT(DrainDebugOutput(), IsEmpty());
  EXPECT_THAT(test::DrainTraceLog(), IsEmpty());
}

TEST_F(LegacyPort, SecondOpeningForgetsTheFirstPortWithoutClosingIt) {
  Open();
  world_.Record({"CreateFileW", "CloseHandle"});
  EXPECT_EQ(serial_.openport(L"COM3:", 57600), 1);
  EXPECT_THAT(world_.DrainRecord(), ElementsAre("CreateFileW(\"COM3:\")"));
  EXPECT_EQ(serial_.closeport(), 1);
  EXPECT_THAT(world_.leftovers(), ElementsAre("port1"));
}

TEST_F(LegacyPort, SecondOpeningOfTheSamePortIsRefusedAndLosesTheHandle) {
  Open();
  EXPECT_EQ(serial_.openport(), 0);
  EXPECT_EQ(Port(), INVALID_HANDLE_VALUE);
  EXPECT_THAT(world_.leftovers(), ElementsAre("port1"));
}

}  // namespace
