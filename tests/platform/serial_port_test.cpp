// SPDX-License-Identifier: MIT
// The serial port: opening it alone, its settings and time-outs, and what ends a blocked call.
#include "support.h"

namespace ipodcomm::test {
namespace {

HANDLE Open(const wchar_t* name) {
  return CreateFileW(name, GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
}

void SetReadTimeouts(HANDLE port, DWORD interval_ms, DWORD multiplier_ms, DWORD constant_ms) {
  COMMTIMEOUTS timeouts = {};
  timeouts.ReadIntervalTimeout = interval_ms;
  timeouts.ReadTotalTimeoutMultiplier = multiplier_ms;
  timeouts.ReadTotalTimeoutConstant = constant_ms;
  ASSERT_TRUE(SetCommTimeouts(port, &timeouts));
}

// Reads up to `count` bytes; the read must succeed.
Bytes Read(HANDLE port, std::size_t count) {
  Bytes bytes(count);
  DWORD read = 0;
  EXPECT_TRUE(ReadFile(port, bytes.data(), static_cast<DWORD>(count), &read, nullptr));
  bytes.resize(read);
  return bytes;
}

void Write(HANDLE port, const Bytes& bytes) {
  DWORD written = 0;
  ASSERT_TRUE(WriteFile(port, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr));
  ASSERT_EQ(written, bytes.size());
}

DWORD Waiting(HANDLE port) {
  COMSTAT status = {};
  EXPECT_TRUE(ClearCommError(port, nullptr, &status));
  return status.cbInQue;
}

// Lets time pass until `count` bytes have arrived; false when they never do.
bool AwaitArrival(HANDLE port, DWORD count) {
  for (int turn = 0; turn < 5000; ++turn) {
    if (Waiting(port) >= count) return true;
    Sleep(2);
  }
  return false;
}

TEST_F(PlatformTest, OpeningAPortThatDoesNotExistFailsWith2) {
  SetLastError(0);
  EXPECT_EQ(Open(L"COM231:"), INVALID_HANDLE_VALUE);
  EXPECT_EQ(GetLastError(), 2U);
}

TEST_F(PlatformTest, OpeningWhatIsNoPortFailsWith2) {
  for (const wchar_t* name : {L"COM:", L"COMX:", L"no such port", L"COM0:"}) {
    SetLastError(0);
    EXPECT_EQ(Open(name), INVALID_HANDLE_VALUE);
    EXPECT_EQ(GetLastError(), 2U);
  }
}

class SerialPort : public PlatformTest {
 protected:
  void SetUp() override {
    REQUIRE_TRAIT(has_port, "no serial device is at hand on this platform");
    port = Open(World::kPort);
    ASSERT_NE(port, INVALID_HANDLE_VALUE);
  }
  void TearDown() override {
    if (port != INVALID_HANDLE_VALUE) CloseHandle(port);
  }

  // Closes the port under a thread that is blocked in it.
  void CloseUnder(TestThread& blocked) {
    Sleep(20);
    EXPECT_TRUE(CloseHandle(port));
    port = INVALID_HANDLE_VALUE;
    EndRead();
    EXPECT_TRUE(blocked.Join());
  }

  // For a read on a line that goes away: without end where it fails.
  DWORD LongestRead() const { return world.traits().fails_reads_of_vanished_lines ? 0 : 50; }

  // Ends a blocked read where closing its port does not.
  void EndRead() {
    if (!world.traits().closing_ends_reads) world.Send({7});
  }

  HANDLE port = INVALID_HANDLE_VALUE;
};

TEST_F(SerialPort, ASecondOpenIsDenied) {
  for (int attempt = 0; attempt < 2; ++attempt) {
    SetLastError(0);
    const HANDLE second = Open(World::kPort);
    if (world.traits().opens_a_port_once) {
      EXPECT_EQ(second, INVALID_HANDLE_VALUE);
      EXPECT_EQ(GetLastError(), 5U);
    } else {
      EXPECT_TRUE(CloseHandle(second));
    }
  }
}

TEST_F(SerialPort, OpensAgainOnceItIsClosed) {
  for (int turn = 0; turn < 20; ++turn) {
    ASSERT_TRUE(CloseHandle(port));
    port = Open(World::kPort);
    ASSERT_NE(port, INVALID_HANDLE_VALUE);
  }
}

TEST_F(SerialPort, AnswersToItsNameInAnyFormAndCase) {
  for (const wchar_t* name : {L"COM2:", L"COM2", L"com2:", L"Com2"}) {
    ASSERT_TRUE(CloseHandle(port));
    port = Open(name);
    ASSERT_NE(port, INVALID_HANDLE_VALUE);
  }
}

TEST_F(SerialPort, OpensForReadingAndWritingWithoutSharingOnly) {
  ASSERT_TRUE(CloseHandle(port));
  const auto open = [](DWORD access, DWORD share) {
    return CreateFileW(World::kPort, access, share, nullptr, OPEN_EXISTING, 0, nullptr);
  };
  if (!world.traits().checks_open_arguments) {
    port = open(GENERIC_READ, 0);
    EXPECT_NE(port, INVALID_HANDLE_VALUE);
    return;
  }
  port = open(GENERIC_READ, 0);
  EXPECT_EQ(port, INVALID_HANDLE_VALUE);
  EXPECT_EQ(GetLastError(), 87U);
  port = open(GENERIC_READ | GENERIC_WRITE, 1);
  EXPECT_EQ(port, INVALID_HANDLE_VALUE);
  EXPECT_EQ(GetLastError(), 87U);
}

TEST_F(SerialPort, TakesTheLineSettingsOfTheDock) {
  DCB state = {};
  state.DCBlength = 28;
  state.BaudRate = 57600;
  state.fBinary = 1;
  state.ByteSize = 8;
  state.Parity = NOPARITY;
  state.StopBits = ONE5STOPBITS;
  ASSERT_TRUE(SetCommState(port, &state));
  DCB now = {};
  ASSERT_TRUE(GetCommState(port, &now));
  EXPECT_EQ(now.DCBlength, 28U);
  EXPECT_EQ(now.BaudRate, 57600U);
  EXPECT_EQ(now.ByteSize, 8);
  EXPECT_EQ(now.Parity, 0);
  EXPECT_EQ(now.StopBits, world.traits().keeps_stop_bits ? ONE5STOPBITS : TWOSTOPBITS);
  EXPECT_EQ(now.fOutxCtsFlow, 0U);
  EXPECT_EQ(now.fOutX, 0U);
}

TEST_F(SerialPort, RefusesImpossibleSettings) {
  DCB good = {};
  ASSERT_TRUE(GetCommState(port, &good));
  DCB wrong_length = good;
  wrong_length.DCBlength = 27;
  DCB no_speed = good;
  no_speed.BaudRate = 0;
  DCB nine_bits = good;
  nine_bits.ByteSize = 9;
  DCB stop_bits = good;
  stop_bits.StopBits = 3;
  for (DCB* state : {&wrong_length, &no_speed}) {
    if (!world.traits().checks_line_settings) break;
    SetLastError(0);
    EXPECT_FALSE(SetCommState(port, state));
    EXPECT_EQ(GetLastError(), 87U);
  }
  for (DCB* state : {&nine_bits, &stop_bits}) {
    SetLastError(0);
    EXPECT_FALSE(SetCommState(port, state));
    EXPECT_EQ(GetLastError(), world.traits().checks_line_settings ? 87U : 50U);
  }
  DCB now = {};
  ASSERT_TRUE(GetCommState(port, &now));
  EXPECT_EQ(now.BaudRate, good.BaudRate);
  EXPECT_EQ(now.ByteSize, good.ByteSize);
}

TEST_F(SerialPort, KeepsItsTimeouts) {
  COMMTIMEOUTS timeouts = {1, 2, 3, 4, 5};
  ASSERT_TRUE(SetCommTimeouts(port, &timeouts));
  COMMTIMEOUTS now = {};
  ASSERT_TRUE(GetCommTimeouts(port, &now));
  EXPECT_EQ(now.ReadIntervalTimeout, 1U);
  EXPECT_EQ(now.ReadTotalTimeoutMultiplier, 2U);
  EXPECT_EQ(now.ReadTotalTimeoutConstant, 3U);
  EXPECT_EQ(now.WriteTotalTimeoutMultiplier, 4U);
  EXPECT_EQ(now.WriteTotalTimeoutConstant, 5U);
}

TEST_F(SerialPort, AnEmptyReadSucceedsWithNothing) {
  SetReadTimeouts(port, 1, 1, 1);
  for (int turn = 0; turn < 10; ++turn) {
    char byte = 'x';
    DWORD read = 7;
    EXPECT_TRUE(ReadFile(port, &byte, 1, &read, nullptr));
    EXPECT_EQ(read, 0U);
    EXPECT_EQ(byte, 'x');
  }
}

TEST_F(SerialPort, AnEmptyReadTakesItsWholeTimeout) {
  SetReadTimeouts(port, 1, 10, 20);
  const DWORD start = GetTickCount();
  EXPECT_EQ(Read(port, 3), Bytes{});
  EXPECT_GE(GetTickCount() - start + world.traits().tick_step_ms, 50U);  // 10 x 3 + 20
}

TEST_F(SerialPort, ReadsWhatTheFarEndSends) {
  SetReadTimeouts(port, 0, 0, 10000);
  world.Send({0xFF, 0x55, 0x02, 0x00, 0x13, 0xEB});
  EXPECT_EQ(Read(port, 6), (Bytes{0xFF, 0x55, 0x02, 0x00, 0x13, 0xEB}));
}

TEST_F(SerialPort, PassesEveryByteUnchanged) {
  SetReadTimeouts(port, 0, 0, 10000);
  Bytes all;
  for (int byte = 0; byte < 256; ++byte) all.push_back(static_cast<std::uint8_t>(byte));
  world.Send(all);
  EXPECT_EQ(Read(port, 256), all);
  Write(port, all);
  EXPECT_EQ(world.Receive(256), all);
}

TEST_F(SerialPort, ReadsByteByByte) {
  SetReadTimeouts(port, 1, 1, 1000);
  world.Send({1, 2, 3});
  EXPECT_EQ(Read(port, 1), Bytes{1});
  EXPECT_EQ(Read(port, 1), Bytes{2});
  EXPECT_EQ(Read(port, 1), Bytes{3});
}

TEST_F(SerialPort, AReadEndsWithWhatCameInTime) {
  SetReadTimeouts(port, 0, 0, 200);
  world.Send({1, 2, 3});
  ASSERT_TRUE(AwaitArrival(port, 3));
  EXPECT_EQ(Read(port, 10), (Bytes{1, 2, 3}));
}

TEST_F(SerialPort, AGapBetweenBytesEndsARead) {
  SetReadTimeouts(port, 20, 0, 600000);  // without the gap it would take ten minutes
  world.Send({1, 2, 3});
  ASSERT_TRUE(AwaitArrival(port, 3));
  EXPECT_EQ(Read(port, 10), (Bytes{1, 2, 3}));
}

TEST_F(SerialPort, TheGapOnlyCountsAfterTheFirstByte) {
  SetReadTimeouts(port, 1, 0, 10000);
  TestThread sender([this] {
    Sleep(30);
    world.Send({7});
  });
  EXPECT_EQ(Read(port, 1), Bytes{7});
}

TEST_F(SerialPort, TheLongestIntervalTakesWhatIsThere) {
  SetReadTimeouts(port, 0xFFFFFFFF, 0, 0);
  EXPECT_EQ(Read(port, 10), Bytes{});
  world.Send({1, 2});
  ASSERT_TRUE(AwaitArrival(port, 2));
  EXPECT_EQ(Read(port, 10), (Bytes{1, 2}));
}

TEST_F(SerialPort, WithoutTimeoutsAReadWaitsForAllBytes) {
  SetReadTimeouts(port, 0, 0, 0);
  TestThread sender([this] {
    world.Send({1});
    Sleep(30);
    world.Send({2});
  });
  EXPECT_EQ(Read(port, 2), (Bytes{1, 2}));
}

TEST_F(SerialPort, TheFarEndReceivesWhatIsWritten) {
  Write(port, {0xFF});
  Write(port, {0x55, 0x02, 0x00, 0x13, 0xEB});
  EXPECT_EQ(world.Receive(6), (Bytes{0xFF, 0x55, 0x02, 0x00, 0x13, 0xEB}));
}

TEST_F(SerialPort, WritingNothingSucceeds) {
  DWORD written = 7;
  EXPECT_TRUE(WriteFile(port, "", 0, &written, nullptr));
  EXPECT_EQ(written, 0U);
}

TEST_F(SerialPort, WritesMoreThanTheDriverHolds) {
  const Bytes much(20000, 0xA5);
  TestThread writer([&] { Write(port, much); });
  EXPECT_EQ(world.Receive(much.size()), much);
}

TEST_F(SerialPort, ReadsAndWritesAtTheSameTime) {
  SetReadTimeouts(port, 0, 0, 10000);
  Bytes received;
  TestThread reader([&] { received = Read(port, 3); });
  Sleep(20);  // the reader is blocked
  Write(port, {9});
  EXPECT_EQ(world.Receive(1), Bytes{9});
  world.Send({1, 2, 3});
  reader.Join();
  EXPECT_EQ(received, (Bytes{1, 2, 3}));
}

TEST_F(SerialPort, CountsWhatIsWaiting) {
  EXPECT_EQ(Waiting(port), 0U);
  world.Send({1, 2, 3, 4});
  ASSERT_TRUE(AwaitArrival(port, 4));
  EXPECT_EQ(Waiting(port), 4U);
  SetReadTimeouts(port, 0, 0, 10000);
  Read(port, 3);
  EXPECT_EQ(Waiting(port), 1U);
}

TEST_F(SerialPort, QueuesMayBeAskedForWithoutAnswers) {
  DWORD errors = 7;
  EXPECT_TRUE(ClearCommError(port, &errors, nullptr));
  EXPECT_EQ(errors, 0U);
  EXPECT_TRUE(ClearCommError(port, nullptr, nullptr));
}

TEST_F(SerialPort, PurgingDropsWhatIsWaiting) {
  world.Send({1, 2, 3});
  ASSERT_TRUE(AwaitArrival(port, 3));
  EXPECT_TRUE(PurgeComm(port, PURGE_RXABORT | PURGE_RXCLEAR));
  EXPECT_EQ(Waiting(port), 0U);
  SetReadTimeouts(port, 0, 0, 10000);
  world.Send({4});
  EXPECT_EQ(Read(port, 1), Bytes{4});
}

TEST_F(SerialPort, PurgingTheWriteSideLeavesWhatIsWaiting) {
  world.Send({1, 2, 3});
  ASSERT_TRUE(AwaitArrival(port, 3));
  EXPECT_TRUE(PurgeComm(port, PURGE_TXABORT | PURGE_TXCLEAR));
  EXPECT_EQ(Waiting(port), 3U);
}

TEST_F(SerialPort, ABreakCanBeEndedAtAnyTime) { EXPECT_TRUE(ClearCommBreak(port)); }

TEST_F(SerialPort, AByteEndsTheWaitForOne) {
  ASSERT_TRUE(SetCommMask(port, EV_RXCHAR | EV_RXFLAG));
  DWORD events = 7;
  TestThread waiter([&] { EXPECT_TRUE(WaitCommEvent(port, &events, nullptr)); });
  Sleep(20);
  if (world.traits().waits_for_events) world.Send({1});
  waiter.Join();
  EXPECT_EQ(events, world.traits().waits_for_events ? EV_RXCHAR : 0U);
}

TEST_F(SerialPort, ANewEventMaskEndsAWaitWithoutEvents) {
  ASSERT_TRUE(SetCommMask(port, EV_RXCHAR));
  DWORD events = 7;
  TestThread waiter([&] { EXPECT_TRUE(WaitCommEvent(port, &events, nullptr)); });
  Sleep(20);
  ASSERT_TRUE(SetCommMask(port, EV_RXCHAR));
  waiter.Join();
  EXPECT_EQ(events, 0U);
}

TEST_F(SerialPort, WaitingForNoEventsFailsWith87) {
  ASSERT_TRUE(SetCommMask(port, 0));
  DWORD events = 7;
  if (world.traits().waits_for_events) {
    EXPECT_FALSE(WaitCommEvent(port, &events, nullptr));
    EXPECT_EQ(GetLastError(), 87U);
  } else {
    EXPECT_TRUE(WaitCommEvent(port, &events, nullptr));
    EXPECT_EQ(events, 0U);
  }
}

TEST_F(SerialPort, ClosingEndsABlockedRead) {
  SetReadTimeouts(port, 0, 0, 0);
  TestThread reader([handle = port] {
    char byte = 0;
    DWORD read = 7;
    EXPECT_FALSE(ReadFile(handle, &byte, 1, &read, nullptr));
    EXPECT_EQ(read, 0U);
  });
  CloseUnder(reader);
}

TEST_F(SerialPort, ClosingEndsAWaitForEvents) {
  ASSERT_TRUE(SetCommMask(port, EV_RXCHAR));
  const BOOL expected = world.traits().waits_for_events ? FALSE : TRUE;
  TestThread waiter([expected, handle = port] {
    DWORD events = 7;
    EXPECT_EQ(WaitCommEvent(handle, &events, nullptr), expected);
  });
  CloseUnder(waiter);
}

TEST_F(SerialPort, ClosingUnderAReaderLeavesThePortFree) {
  SetReadTimeouts(port, 0, 0, 0);
  TestThread reader([handle = port] {
    char byte = 0;
    DWORD read = 0;
    ReadFile(handle, &byte, 1, &read, nullptr);
  });
  Sleep(20);
  ASSERT_TRUE(CloseHandle(port));
  const HANDLE again = Open(World::kPort);
  EXPECT_NE(again, INVALID_HANDLE_VALUE);
  EndRead();
  reader.Join();
  port = again;
}

TEST_F(SerialPort, AClosedPortRefusesEverythingWith6) {
  ASSERT_TRUE(CloseHandle(port));
  const HANDLE closed = std::exchange(port, INVALID_HANDLE_VALUE);
  char byte = 0;
  DWORD count = 0;
  EXPECT_FALSE(ReadFile(closed, &byte, 1, &count, nullptr));
  EXPECT_EQ(GetLastError(), 6U);
  EXPECT_FALSE(WriteFile(closed, &byte, 1, &count, nullptr));
  EXPECT_EQ(GetLastError(), 6U);
}

TEST_F(SerialPort, AVanishedLineFailsReadsAtOnceAndAlways) {
  SetReadTimeouts(port, 0, 0, LongestRead());
  world.Unplug();
  for (int turn = 0; turn < 10; ++turn) {
    char byte = 0;
    DWORD read = 7;
    SetLastError(0);
    const BOOL succeeded = ReadFile(port, &byte, 1, &read, nullptr);
    EXPECT_EQ(read, 0U);
    if (world.traits().fails_reads_of_vanished_lines) {
      EXPECT_FALSE(succeeded);
      EXPECT_NE(GetLastError(), 0U);
      EXPECT_NE(GetLastError(), 6U);
    } else {
      EXPECT_TRUE(succeeded);
    }
  }
}

TEST_F(SerialPort, ALineThatVanishesEndsABlockedRead) {
  SetReadTimeouts(port, 0, 0, LongestRead());
  const BOOL expected = world.traits().fails_reads_of_vanished_lines ? FALSE : TRUE;
  TestThread reader([expected, handle = port] {
    char byte = 0;
    DWORD read = 7;
    EXPECT_EQ(ReadFile(handle, &byte, 1, &read, nullptr), expected);
    EXPECT_EQ(read, 0U);
  });
  Sleep(20);
  world.Unplug();
  EXPECT_TRUE(reader.Join());
}

TEST_F(SerialPort, AVanishedLineFailsWrites) {
  world.Unplug();
  DWORD written = 7;
  EXPECT_FALSE(WriteFile(port, "x", 1, &written, nullptr));
  EXPECT_EQ(written, 0U);
}

TEST_F(SerialPort, AVanishedLineEndsAWaitForEvents) {
  ASSERT_TRUE(SetCommMask(port, EV_RXCHAR));
  const BOOL expected = world.traits().waits_for_events ? FALSE : TRUE;
  TestThread waiter([expected, handle = port] {
    DWORD events = 7;
    EXPECT_EQ(WaitCommEvent(handle, &events, nullptr), expected);
  });
  Sleep(20);
  world.Unplug();
  EXPECT_TRUE(waiter.Join());
}

TEST_F(SerialPort, AVanishedLineStillCloses) {
  world.Unplug();
  EXPECT_TRUE(CloseHandle(port));
  port = INVALID_HANDLE_VALUE;
}

}  // namespace
}  // namespace ipodcomm::test
