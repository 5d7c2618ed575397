// SPDX-License-Identifier: MIT
// A session's life on the seam: the calls of construction, opening, closing and destruction in
// their order, and what each leaves behind.
#include <optional>

#include "support/packets.h"
#include "support/session_test.h"

namespace {

using test::DockTest;
using test::kMillisecond;
using test::kSecond;
using test::Packet;
using test::SessionTest;
using ::testing::Contains;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class Construction : public DockTest {
 protected:
  std::optional<CIpodComm> session_;
};

class OpenSession : public SessionTest {};

TEST_F(Construction, CreatesEverythingInOrderAndCyclesThePort) {
  world_.Record();
  session_.emplace();
  EXPECT_THAT(
      world_.DrainCalls().Of("host").text_with_results(),
      ElementsAre("InitializeCriticalSection(section1)",  // play status
                  "InitializeCriticalSection(section2)",  // transport: state
                  "InitializeCriticalSection(section3)",  // transport: port
                  "CreateEventW(auto, not set, \"IPOD_PORT_EVENT_NAME\") = event1 "
                  "\"IPOD_PORT_EVENT_NAME\"",
                  "InitializeCriticalSection(section4)",  // responses
                  "CreateEventW(auto, not set, null) = event2",
                  "InitializeCriticalSection(section5)",  // transmission
                  "CreateEventW(auto, not set, null) = event3",
                  "CreateEventW(auto, not set, null) = event4",
                  "CreateEventW(auto, not set, null) = event5",
                  "InitializeCriticalSection(section6)",  // notifications
                  "CreateEventW(auto, not set, null) = event6", "CreateThread(routing) = routing",
                  "CreateThread(notification) = notification", "EnterCriticalSection(section2)",
                  "LeaveCriticalSection(section2)", "CreateFileW(\"COM2:\") = port1",
                  "SetCommState(port1, 57600 baud, 8 bits, parity 0, stop bits code 1) = 1",
                  "SetCommTimeouts(port1, 1, 1, 1, 0, 0) = 1", "SetCommMask(port1, 3) = 1",
                  "PurgeComm(port1, 15) = 1", "CreateThread(read) = read",
                  "EnterCriticalSection(section3)", "WriteFile(port1, FF) = 1", "Sleep(20)",
                  "LeaveCriticalSection(section3)", "EnterCriticalSection(section2)",
                  "LeaveCriticalSection(section2)", "CloseHandle(port1) = 1"));
}

TEST_F(Construction, SendsTheWakeUpByteAndNothingElse) {
  session_.emplace();
  EXPECT_THAT(DrainSent(), ElementsAre("FF"));
}

TEST_F(Construction, RestartsTheDriverOnce) {
  world_.Record({"DeactivateDevice", "ActivateDevice", "Sleep"});
  session_.emplace();
  world_.Advance(3 * kSecond);
  const auto calls = world_.DrainCalls();
  EXPECT_THAT(calls.To({"ActivateDevice"}).text(),
              ElementsAre("ActivateDevice(\"Drivers\\Builtin\\Serial2\", 18)"));
  EXPECT_THAT(calls.Of("read").text(), Contains("Sleep(1000)").Times(1));
}

TEST_F(Construction, LeavesTheSessionClosedAndUnidentified) {
  session_.emplace();
  EXPECT_EQ(session_->IsOpen(), 0);
  EXPECT_EQ(session_->SupportsSports(), 0);
  EXPECT_EQ(session_->GetIDPSEnable(), 0);
  EXPECT_EQ(session_->GetMaxPayloadSize(), 0);
  EXPECT_EQ(CIpodCommPeer::TransactionIdMode(*session_), 0);
  EXPECT_EQ(CIpodCommPeer::OwnTransactionId(*session_), 0);
  EXPECT_THAT(CIpodCommPeer::IpodTransactionIds(*session_), Each(0));
  EXPECT_EQ(CIpodCommPeer::Window(*session_), nullptr);
  EXPECT_EQ(CIpodCommPeer::StorageWriteOffset(*session_), 0U);
  EXPECT_EQ(CIpodCommPeer::Identity(*session_).idps_done, 0);
  tagIPOD_PLAY_STATUS status = {9, 9, 9, 9};
  EXPECT_EQ(session_->GetPlayStatus(&status), 1);
  EXPECT_EQ(status.state, 0U);
  EXPECT_EQ(status.position, 0U);
  EXPECT_EQ(status.track_index, 0U);
  EXPECT_EQ(status.tick, 0U);
}

TEST_F(Construction, RefusedPortIsLoggedAndTheSessionStillWorksLater) {
  world_.FailOnce("CreateFileW", 1, 5);
  session_.emplace();
  EXPECT_THAT(test::DrainTraceLog(),
              ElementsAre("CIpodSerial::Open: Error opening iPod serial port"));
  EXPECT_THAT(DrainSent(), IsEmpty());
  EXPECT_EQ(session_->Open(), 0);
  EXPECT_EQ(session_->IsOpen(), 1);
}

// Each service that construction calls, failing at each of its calls in turn, once and for ever.
TEST(FailingConstruction, IsSurvivedWhicheverCallFails) {
  for (const char* service : {"CreateEventW", "CreateThread", "CreateFileW", "SetCommState",
                              "SetCommTimeouts", "SetCommMask", "PurgeComm", "WriteFile",
                              "ReadFile", "CloseHandle", "EventModify", "WaitForSingleObject"}) {
    for (unsigned nth = 1; nth <= 6; ++nth) {
      for (const bool for_ever : {false, true}) {
        SCOPED_TRACE(std::string(service) + " number " + std::to_string(nth) +
                     (for_ever ? " for ever" : " once"));
        test::World world;
        test::ScriptedDevice ipod;
        world.line().Plug(ipod);
        for_ever ? world.FailFrom(service, nth, 31) : world.FailOnce(service, nth, 31);
        std::int64_t start_us = 0;
        {
          CIpodComm session;
          world.Advance(3 * kSecond);
          session.Open();
          world.Advance(200 * kMillisecond);
          session.Close();
          world.ClearFaults();
          start_us = world.now_us();
        }
        // Nothing can wake a worker whose event could not be made or set: it looks by itself.
        const bool wakes = std::string(service) != "EventModify";
        EXPECT_LT(world.now_us() - start_us, (wakes ? 100 : 1010) * kMillisecond);
        world.line().Unplug();
      }
    }
  }
  test::DrainTraceLog();
}

// They sleep from then on, until the process ends.
TEST_F(Construction, WorkersOfADestroyedSessionHoldNothingOfIt) {
  session_.emplace();
  const auto held = CIpodCommPeer::Lifeline(*session_);
  EXPECT_FALSE(held.expired());
  session_.reset();
  world_.Settle();
  EXPECT_TRUE(held.expired());
}

TEST_F(OpenSession, OpeningEmptiesTheQueuesThenOpensThePort) {
  session_.Close();
  world_.Advance(2 * kSecond);
  world_.Record();
  EXPECT_EQ(session_.Open(), 0);
  EXPECT_THAT(
      world_.DrainCalls().Of("host").text(),
      ElementsAre("EnterCriticalSection(section4)", "EventModify(event2, EVENT_RESET)",
                  "LeaveCriticalSection(section4)", "EnterCriticalSection(section6)",
                  "EventModify(event6, EVENT_RESET)", "LeaveCriticalSection(section6)",
                  "EventModify(event3, EVENT_RESET)", "EnterCriticalSection(section5)",
                  "LeaveCriticalSection(section5)", "EnterCriticalSection(section2)",
                  "LeaveCriticalSection(section2)", "CloseHandle(read 2)", "CreateFileW(\"COM2:\")",
                  "SetCommState(port3, 57600 baud, 8 bits, parity 0, stop bits code 1)",
                  "SetCommTimeouts(port3, 1, 1, 1, 0, 0)", "SetCommMask(port3, 3)",
                  "PurgeComm(port3, 15)", "CreateThread(read 3)"));
}

TEST_F(OpenSession, OpeningForgetsWhatWasQueued) {
  CIpodCommPeer::Responses(session_).Append(Packet("FF 55 03 00 08 41 B4"));
  EXPECT_EQ(session_.Open(), 0);
  tagSERIAL_PACKET packet = {};
  EXPECT_EQ(Elapsed([&] { EXPECT_FALSE(session_.GetNextReadPacket(&packet)); }), kSecond);
}

// Each thread runs until it waits here, so the host is in front of the notification thread.
TEST(OpeningAgain, ForgetsNotifications) {
  test::World world({1, ipodcomm::virtual_platform::CooperativeSchedule()});
  CIpodComm session;
  world.Advance(2 * kSecond);
  EXPECT_EQ(session.Open(), 0);
  CIpodCommPeer::Notifications(session).Append(Packet("FF 55 08 04 00 27 07 00 00 00 09 BD"));
  EXPECT_EQ(session.Open(), 0);
  world.Advance(2 * kSecond);
  tagIPOD_PLAY_STATUS status = {};
  session.GetPlayStatus(&status);
  EXPECT_EQ(status.position, 0U);
  // Without another Open it would have been taken.
  CIpodCommPeer::Notifications(session).Append(Packet("FF 55 08 04 00 27 07 00 00 00 09 BD"));
  world.Settle();
  session.GetPlayStatus(&status);
  EXPECT_EQ(status.position, 9U);
}

TEST_F(OpenSession, OpeningStartsIdentifiersAtZeroAndKeepsTheirMode) {
  TurnOnTransactionIds(0x1234);
  CIpodCommPeer::IpodTransactionIds(session_)[9] = 0x4321;
  EXPECT_EQ(session_.Open(), 0);
  EXPECT_EQ(CIpodCommPeer::OwnTransactionId(session_), 0);
  EXPECT_EQ(CIpodCommPeer::TransactionIdMode(session_), 1);
  EXPECT_EQ(CIpodCommPeer::IpodTransactionIds(session_)[9], 0x4321);
}

TEST_F(OpenSession, FailedOpenReturnsTheTransportsCode) {
  session_.Close();
  world_.FailOnce("CreateFileW", 1, 5);
  EXPECT_EQ(session_.Open(), 5);
  EXPECT_EQ(session_.IsOpen(), 0);
  EXPECT_THAT(test::DrainTraceLog(),
              ElementsAre("CIpodSerial::Open: Error opening iPod serial port"));
}

TEST_F(OpenSession, FailedOpenOfAnOpenSessionLeavesItsFlag) {
  world_.FailOnce("SetCommState", 1, 31);
  EXPECT_EQ(session_.Open(), 31);
  EXPECT_EQ(session_.IsOpen(), 1);
  EXPECT_THAT(test::DrainTraceLog(), ElementsAre("CIpodSerial::Open: Error setting comm state"));
}

TEST_F(OpenSession, ClosingClosesThePortAndClearsTheFlags) {
  CIpodCommPeer::Identity(session_).sports_supported = 1;
  EXPECT_EQ(session_.IsOpen(), 1);
  EXPECT_EQ(session_.SupportsSports(), 1);
  world_.Record();
  session_.Close();
  EXPECT_THAT(world_.DrainCalls().Of("host").text(),
              ElementsAre("EnterCriticalSection(section2)", "LeaveCriticalSection(section2)",
                          "CloseHandle(port2)"));
  EXPECT_EQ(session_.IsOpen(), 0);
  EXPECT_EQ(session_.SupportsSports(), 0);
}

TEST_F(OpenSession, ClosingRestartsTheDriverAboutASecondLater) {
  world_.Record({"ActivateDevice"});
  const std::int64_t closed_us = world_.now_us();
  session_.Close();
  world_.Advance(3 * kSecond);
  const auto calls = world_.DrainCalls().all();
  ASSERT_EQ(calls.size(), 1U);
  EXPECT_GE(calls[0].start_us - closed_us, 1000 * kMillisecond);
  EXPECT_LE(calls[0].start_us - closed_us, 1060 * kMillisecond);
}

TEST_F(OpenSession, WindowHandleIsStoredAndAlwaysAccepted) {
  int window = 0;
  EXPECT_EQ(session_.SetWindowsHandle(reinterpret_cast<HWND>(&window)), 1);
  EXPECT_EQ(CIpodCommPeer::Window(session_), reinterpret_cast<HWND>(&window));
  EXPECT_EQ(session_.SetWindowsHandle(nullptr), 1);
  EXPECT_EQ(CIpodCommPeer::Window(session_), nullptr);
}

TEST_F(OpenSession, LogLevelIsStored) {
  session_.SetLogLevel(-7);
  EXPECT_EQ(CIpodCommPeer::LogLevel(session_), -7);
}

TEST_F(Construction, DestructionReleasesEverythingInOrder) {
  session_.emplace();
  world_.Advance(2 * kSecond);
  world_.Record();
  session_.reset();
  EXPECT_THAT(
      world_.DrainCalls().Of("host").To({"CloseHandle", "DeleteCriticalSection"}).text(),
      ElementsAre("CloseHandle(routing)", "CloseHandle(notification)", "CloseHandle(event2)",
                  "DeleteCriticalSection(section4)", "DeleteCriticalSection(section5)",
                  "CloseHandle(event3)", "CloseHandle(event4)", "CloseHandle(event5)",
                  "CloseHandle(event6)", "DeleteCriticalSection(section6)",
                  "DeleteCriticalSection(section2)", "CloseHandle(event1 \"IPOD_PORT_EVENT_NAME\")",
                  "DeleteCriticalSection(section3)", "DeleteCriticalSection(section1)"));
}

TEST_F(Construction, DestructionClosesThePortFirst) {
  session_.emplace();
  world_.Advance(2 * kSecond);
  session_->Open();
  world_.Record();
  session_.reset();
  const auto calls = world_.DrainCalls().Of("host").To({"CloseHandle"}).text();
  ASSERT_FALSE(calls.empty());
  EXPECT_EQ(calls.front(), "CloseHandle(port2)");
}

}  // namespace
