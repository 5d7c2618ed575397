// SPDX-License-Identifier: MIT
// The byte-level operations of a port opened without read thread: their calls, times and failures.
#include "serial_test.h"

namespace {

using ipodcomm::virtual_platform::CooperativeSchedule;
using test::kMillisecond;
using test::kSecond;
using test::SerialTest;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class RawAccess : public SerialTest {
 protected:
  RawAccess() {
    OpenForRawAccess();
    world_.Record();
  }
  bool Write(const char* text) {
    test::Bytes bytes = test::Hex(text);
    return serial_.WriteRawPacket(bytes.data(), static_cast<unsigned long>(bytes.size()));
  }
  // Reads `count` bytes; returns them as text, "nothing" when the read failed.
  std::string Read(unsigned long count, unsigned long timeout_ms) {
    unsigned char buffer[64] = {};
    if (!serial_.ReadRawPacket(buffer, count, timeout_ms)) return "nothing";
    return test::ToHex(buffer, count);
  }
  void SendAfter(std::int64_t delay_us, const char* text) {
    ipod_.SendAt(world_.now_us() + delay_us, test::Hex(text));
  }
};

// ---- Writing

TEST_F(RawAccess, WritesByteByByteWithoutALock) {
  EXPECT_TRUE(Write("FF 55 02 00"));
  EXPECT_THAT(world_.DrainRecord(),
              ElementsAre("ClearCommBreak(port1)", "WriteFile(port1, FF)", "Sleep(10)",
                          "WriteFile(port1, 55)", "WriteFile(port1, 02)", "WriteFile(port1, 00)"));
  EXPECT_THAT(DrainDebugOutput(), IsEmpty());
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 02 00"));
}

TEST_F(RawAccess, WritePausesTenMilliseconds) {
  EXPECT_EQ(Elapsed([&] { Write("FF 55 02 00"); }), 10 * kMillisecond);
  EXPECT_EQ(Elapsed([&] { EXPECT_TRUE(Write("FF")); }), 10 * kMillisecond);
}

TEST_F(RawAccess, FailedFirstByteIsToldTwiceAndEndsTheWriteAfterThePause) {
  world_.FailOnce("WriteFile", 1, 31);
  EXPECT_EQ(Elapsed([&] { EXPECT_FALSE(Write("FF 55 02")); }), 10 * kMillisecond);
  EXPECT_THAT(world_.DrainCalls().text_with_results(),
              ElementsAre("ClearCommBreak(port1) = 1", "WriteFile(port1, FF) = failed 31",
                          "NKDbgPrintfW(\"Error 31 writing serial port\n\")", "Sleep(10)",
                          "NKDbgPrintfW(\"Error 31 writing serial port\n\")"));
  EXPECT_THAT(DrainDebugOutput(),
              ElementsAre("Error 31 writing serial port\n", "Error 31 writing serial port\n"));
}

TEST_F(RawAccess, FailedLaterByteIsToldOnceAndStopsTheWrite) {
  for (unsigned nth = 2; nth <= 4; ++nth) {
    world_.FailOnce("WriteFile", nth, 995);
    EXPECT_FALSE(Write("FF 55 02 00"));
    EXPECT_THAT(DrainDebugOutput(), ElementsAre("Error 995 writing serial port\n"));
    EXPECT_EQ(world_.DrainCalls().To({"WriteFile"}).all().size(), nth);
  }
}

TEST_F(RawAccess, WriteToAClosedPortIsToldWithInvalidHandle) {
  serial_.Close();
  EXPECT_FALSE(Write("FF 55"));
  EXPECT_THAT(DrainDebugOutput(),
              ElementsAre("Error 6 writing serial port\n", "Error 6 writing serial port\n"));
}

TEST_F(RawAccess, WriteSurvivesAFailureToClearTheBreak) {
  world_.FailOnce("ClearCommBreak", 1, 31);
  EXPECT_TRUE(Write("FF 55"));
}

// ---- Reading

TEST_F(RawAccess, ReadNotesTheTimeThenLooksEveryTenMilliseconds) {
  SendAfter(15 * kMillisecond, "41 42");
  EXPECT_EQ(Read(2, 100), "41 42");
  EXPECT_THAT(world_.DrainCalls().To({"Sleep", "ClearCommError", "ReadFile"}).text_with_times(),
              ElementsAre("0 Sleep(10)", "10000 ClearCommError(port1)", "10000 Sleep(10)",
                          "20000 ClearCommError(port1)", "20000 ReadFile(port1, 2)"));
}

TEST_F(RawAccess, ReadWithoutTimeSleepsOnceAndFailsOnAnEmptyLine) {
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(Read(1, 0), "nothing"); }), 10 * kMillisecond);
  const auto calls = world_.DrainCalls();
  EXPECT_THAT(calls.To({"Sleep"}).text(), ElementsAre("Sleep(10)"));
  EXPECT_THAT(calls.To({"ReadFile"}).text(), IsEmpty());
}

TEST_F(RawAccess, ReadWithoutTimeTakesWhatIsWaiting) {
  SendAfter(0, "41 42 43");
  world_.Advance(kMillisecond);
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(Read(2, 0), "41 42"); }), 10 * kMillisecond);
  EXPECT_EQ(Read(1, 0), "43");
}

TEST_F(RawAccess, ReadFailsAtTheFirstLookAfterTheTimeout) {
  EXPECT_EQ(Elapsed([&] { Read(1, 10); }), 10 * kMillisecond);
  EXPECT_EQ(Elapsed([&] { Read(1, 11); }), 20 * kMillisecond);
  EXPECT_EQ(Elapsed([&] { Read(1, 45); }), 50 * kMillisecond);
  EXPECT_EQ(Elapsed([&] { Read(1, 1000); }), kSecond);
}

TEST_F(RawAccess, ReadTakesBytesThatComeJustBeforeTheLastLook) {
  SendAfter(49 * kMillisecond, "41");
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(Read(1, 50), "41"); }), 50 * kMillisecond);
}

TEST_F(RawAccess, ReadLeavesTooFewBytesWaiting) {
  SendAfter(0, "41 42");
  EXPECT_EQ(Read(3, 20), "nothing");
  EXPECT_EQ(Read(2, 0), "41 42");
}

TEST_F(RawAccess, ReadSurvivesTheWrapOfTheTickCount) {
  world_.SetTickCount(0xFFFFFFF0);
  SendAfter(35 * kMillisecond, "41");
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(Read(1, 100), "41"); }), 40 * kMillisecond);
  world_.SetTickCount(0xFFFFFFF0);
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(Read(1, 100), "nothing"); }), 100 * kMillisecond);
}

TEST_F(RawAccess, FailedReadOfNothingIsAFailureToo) {
  EXPECT_EQ(Read(0, 0), "");
  world_.FailOnce("ReadFile", 1, 31);
  EXPECT_EQ(Read(0, 0), "nothing");
}

TEST_F(RawAccess, FailedReadIsAFailure) {
  SendAfter(0, "41");
  world_.FailOnce("ReadFile", 1, 31);
  EXPECT_EQ(Read(1, 20), "nothing");
}

TEST_F(RawAccess, QueueThatCannotBeAskedCountsAsEmpty) {
  SendAfter(0, "41");
  world_.FailOnce("ClearCommError", 1, 31);
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(Read(1, 20), "41"); }), 20 * kMillisecond);
}

TEST_F(RawAccess, ReadOfAClosedPortFailsAfterItsTime) {
  serial_.Close();
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(Read(1, 30), "nothing"); }), 30 * kMillisecond);
}

// ---- Waiting

TEST_F(RawAccess, WaitTellsWhatIsWaitingAlready) {
  SendAfter(0, "41 42 43");
  world_.Advance(kMillisecond);
  world_.DrainRecord();
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(serial_.WaitForData(0, 0), 3); }), 0);
  EXPECT_THAT(world_.DrainRecord(), ElementsAre("ClearCommError(port1)"));
}

TEST_F(RawAccess, WaitBlocksUntilAByteComes) {
  SendAfter(7 * kSecond, "41");
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(serial_.WaitForData(0, 0), 1); }), 7 * kSecond + 174);
  EXPECT_THAT(world_.DrainCalls().text_with_results(),
              ElementsAre("ClearCommError(port1) = 0 waiting", "WaitCommEvent(port1) = 1",
                          "ClearCommError(port1) = 1 waiting"));
}

TEST_F(RawAccess, WaitIgnoresItsArguments) {
  SendAfter(3 * kSecond, "41");
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(serial_.WaitForData(1, -5), 1); }), 3 * kSecond + 174);
}

TEST_F(RawAccess, WaitThatFailsTellsNothing) {
  world_.FailOnce("WaitCommEvent", 1, 31);
  EXPECT_EQ(serial_.WaitForData(0, 0), 0);
  EXPECT_THAT(world_.DrainRecord(), ElementsAre("ClearCommError(port1)", "WaitCommEvent(port1)"));
  serial_.Close();
  EXPECT_EQ(serial_.WaitForData(0, 0), 0);
}

// The read thread sets the mask when it begins, which ends a wait without any event.
TEST(RawAccessBesideAThread, WaitThatEndsWithoutAnEventTellsNothing) {
  test::World world({1, CooperativeSchedule()});
  CIpodSerial serial;
  EXPECT_EQ(serial.Open(true), 0);
  world.Record({"ClearCommError"});
  EXPECT_EQ(serial.WaitForData(0, 0), 0);
  EXPECT_EQ(world.DrainRecord().size(), 1U);
  EXPECT_EQ(world.now_us(), 0);
}

// ---- Queues

TEST_F(RawAccess, FlushesPurgeOneDirectionEach) {
  serial_.FlushRx();
  serial_.FlushTx();
  EXPECT_THAT(world_.DrainRecord(), ElementsAre("PurgeComm(port1, 10)", "PurgeComm(port1, 5)"));
}

TEST_F(RawAccess, FlushingWhatWasReceivedLeavesNothingToRead) {
  SendAfter(0, "41 42");
  world_.Advance(kMillisecond);
  EXPECT_EQ(serial_.CheckReceiveData(), 1);
  serial_.FlushTx();
  EXPECT_EQ(serial_.CheckReceiveData(), 1);
  serial_.FlushRx();
  EXPECT_EQ(serial_.CheckReceiveData(), 0);
}

TEST_F(RawAccess, CheckOnlyLooks) {
  EXPECT_EQ(serial_.CheckReceiveData(), 0);
  EXPECT_THAT(world_.DrainRecord(), ElementsAre("ClearCommError(port1)"));
  SendAfter(0, "41");
  world_.Advance(kMillisecond);
  EXPECT_EQ(serial_.CheckReceiveData(), 1);
  EXPECT_EQ(serial_.CheckReceiveData(), 1);
  EXPECT_EQ(Read(1, 0), "41");
  EXPECT_EQ(serial_.CheckReceiveData(), 0);
  serial_.Close();
  EXPECT_EQ(serial_.CheckReceiveData(), 0);
}

TEST_F(RawAccess, WindowIsStoredAndNothingElse) {
  const auto window = reinterpret_cast<HWND>(0x1234);
  serial_.SetWindowHand(window);
  EXPECT_EQ(CIpodSerialPeer::Window(serial_), window);
  EXPECT_THAT(world_.DrainRecord(), IsEmpty());
}

}  // namespace
