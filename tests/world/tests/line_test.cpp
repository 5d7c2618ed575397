// SPDX-License-Identifier: MIT
// The serial line in virtual time: when each byte arrives at either end, how long reads wait, and
// what the line's faults do. At 57600 baud and 10 bits a byte takes 173.6 us.
#include <gmock/gmock.h>

#include <algorithm>
#include <utility>

#include "support.h"
#include "world/line/scripted_device.h"

namespace ipodcomm::virtual_platform {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class VirtualLine : public testing::Test {
 protected:
  VirtualLine() : port_(OpenPort()) {
    world_.line().Plug(device_);
    SetReadTimeouts(port_, 1, 1, 1);
  }

  std::vector<std::int64_t> ArrivalTimes() const {
    std::vector<std::int64_t> times;
    for (const Arrival& arrival : device_.arrivals()) times.push_back(arrival.time_us);
    return times;
  }

  ScriptedDevice device_;
  World world_;
  const HANDLE port_;
};

TEST_F(VirtualLine, WrittenBytesArriveOneByOneAtTheLinesSpeed) {
  EXPECT_TRUE(Write(port_, {0x01, 0x02, 0x03}));
  EXPECT_EQ(world_.now_us(), 0) << "writing takes no time while the queue has room";
  world_.Advance(kSecond);
  EXPECT_THAT(device_.received(), ElementsAre(0x01, 0x02, 0x03));
  EXPECT_THAT(ArrivalTimes(), ElementsAre(174, 348, 521));
}

TEST_F(VirtualLine, GapBetweenWritesIsKept) {
  Write(port_, {0xFF});
  Sleep(20);
  Write(port_, {0x55});
  world_.Advance(kSecond);
  EXPECT_THAT(ArrivalTimes(), ElementsAre(174, 20'174));
}

TEST_F(VirtualLine, SpeedIsSettable) {
  world_.line().SetSpeed(9600, 11);
  Write(port_, {0x01, 0x02});
  world_.Advance(kSecond);
  EXPECT_THAT(ArrivalTimes(), ElementsAre(1146, 2292));
}

TEST_F(VirtualLine, SentBytesCanBeReadOneByOneAsTheyArrive) {
  device_.SendAt(1000, {0xAA, 0xBB});
  EXPECT_THAT(Read(port_, 1), ElementsAre(0xAA));
  EXPECT_EQ(world_.now_us(), 1174);
  EXPECT_THAT(Read(port_, 1), ElementsAre(0xBB));
  EXPECT_EQ(world_.now_us(), 1348);
}

TEST_F(VirtualLine, EmptyReadSucceedsAfterItsTotalTimeout) {
  unsigned char byte = 0;
  DWORD read = 77;
  EXPECT_NE(ReadFile(port_, &byte, 1, &read, nullptr), FALSE);
  EXPECT_EQ(read, 0U);
  EXPECT_EQ(world_.now_us(), 2000) << "1 ms for one byte and 1 ms more";
  SetReadTimeouts(port_, 0, 3, 10);
  EXPECT_NE(ReadFile(port_, &byte, 1, &read, nullptr), FALSE);
  EXPECT_EQ(world_.now_us(), 15'000);
}

TEST_F(VirtualLine, ByteThatArrivesWithTheDeadlineIsRead) {
  device_.SendAt(2000 - 174, {0x42});
  EXPECT_THAT(Read(port_, 1), ElementsAre(0x42));
  EXPECT_EQ(world_.now_us(), 2000);
}

TEST_F(VirtualLine, ByteThatArrivesAfterTheDeadlineIsLeftForTheNextRead) {
  device_.SendAt(2000 - 173, {0x42});
  EXPECT_THAT(Read(port_, 1), IsEmpty());
  EXPECT_EQ(world_.now_us(), 2000);
  EXPECT_THAT(Read(port_, 1), ElementsAre(0x42));
  EXPECT_EQ(world_.now_us(), 2001);
}

TEST_F(VirtualLine, GapLongerThanTheIntervalEndsARead) {
  SetReadTimeouts(port_, 5, 0, 1000);
  device_.SendAt(1000, {0x01, 0x02});
  device_.SendAt(20'000, {0x03});
  EXPECT_THAT(Read(port_, 10), ElementsAre(0x01, 0x02));
  EXPECT_EQ(world_.now_us(), 1348 + 5000);
}

TEST_F(VirtualLine, IntervalAloneWaitsForTheFirstByteWithoutALimit) {
  SetReadTimeouts(port_, 5, 0, 0);
  device_.SendAt(60 * kSecond, {0x01});
  EXPECT_THAT(Read(port_, 10), ElementsAre(0x01));
  EXPECT_EQ(world_.now_us(), 60'000'174 + 5000);
}

TEST_F(VirtualLine, WithoutAnyTimeoutAReadWaitsForAllItsBytes) {
  SetReadTimeouts(port_, 0, 0, 0);
  device_.SendAt(1000, {0x01});
  device_.SendAt(kSecond, {0x02});
  EXPECT_THAT(Read(port_, 2), ElementsAre(0x01, 0x02));
  EXPECT_EQ(world_.now_us(), 1'000'174);
}

TEST_F(VirtualLine, UnlimitedIntervalAloneTakesWhatIsThere) {
  SetReadTimeouts(port_, 0xFFFFFFFF, 0, 0);
  device_.Send({0x01, 0x02});
  Sleep(1);
  EXPECT_THAT(Read(port_, 10), ElementsAre(0x01, 0x02));
  EXPECT_THAT(Read(port_, 10), IsEmpty());
  EXPECT_EQ(world_.now_us(), 1000);
}

TEST_F(VirtualLine, UnlimitedIntervalAndMultiplierWaitForTheFirstByte) {
  SetReadTimeouts(port_, 0xFFFFFFFF, 0xFFFFFFFF, 50);
  device_.SendAt(10'000, {0x01, 0x02});
  EXPECT_THAT(Read(port_, 10), ElementsAre(0x01));
  EXPECT_EQ(world_.now_us(), 10'174);
  EXPECT_THAT(Read(port_, 10), ElementsAre(0x02));
  EXPECT_THAT(Read(port_, 10), IsEmpty());
  EXPECT_EQ(world_.now_us(), 10'348 + 50'000);
}

TEST_F(VirtualLine, WriteBlocksWhileTheTransmitQueueIsFull) {
  EXPECT_TRUE(Write(port_, std::vector<std::uint8_t>(1024, 0x11)));
  EXPECT_EQ(world_.now_us(), 0);
  COMSTAT queues = {};
  ClearCommError(port_, nullptr, &queues);
  EXPECT_EQ(queues.cbOutQue, 1024U);
  EXPECT_TRUE(Write(port_, {0x22, 0x33}));
  EXPECT_EQ(world_.now_us(), 348) << "until two bytes have left";
}

TEST_F(VirtualLine, WriteGivesUpAfterItsTimeout) {
  COMMTIMEOUTS timeouts = {1, 1, 1, 1, 10};
  SetCommTimeouts(port_, &timeouts);
  const std::vector<std::uint8_t> bytes(1200, 0x11);
  DWORD written = 0;
  world_.line().SetSpeed(300);
  EXPECT_NE(WriteFile(port_, bytes.data(), bytes.size(), &written, nullptr), FALSE);
  EXPECT_EQ(written, 1024U + 36U) << "a byte leaves every 33.3 ms";
  EXPECT_EQ(world_.now_us(), 1'210'000);
}

TEST_F(VirtualLine, AnswerFollowsItsRequest) {
  device_.Answer({0x01, 0x02}, {0x0A}, 8 * kMillisecond);
  Write(port_, {0x01});
  EXPECT_THAT(Read(port_, 1), IsEmpty());
  Write(port_, {0x02});
  SetReadTimeouts(port_, 0, 0, 100);
  EXPECT_THAT(Read(port_, 1), ElementsAre(0x0A));
  EXPECT_EQ(world_.now_us(), 2000 + 174 + 8000 + 174);
}

TEST_F(VirtualLine, BytesAreLostWhileThePortIsClosed) {
  device_.SendAt(0, {0x01});
  device_.SendAt(10'000, {0x02});
  CloseHandle(port_);
  Sleep(5);
  const HANDLE port = OpenPort();
  SetReadTimeouts(port, 0, 0, 20);
  EXPECT_THAT(Read(port, 10), ElementsAre(0x02));
}

TEST_F(VirtualLine, WrittenBytesGoOutAlsoWhenThePortIsClosed) {
  Write(port_, {0x01, 0x02});
  CloseHandle(port_);
  Sleep(1);
  EXPECT_THAT(device_.received(), ElementsAre(0x01, 0x02));
}

TEST_F(VirtualLine, OverflowLosesTheNewestBytesAndIsReported) {
  std::vector<std::uint8_t> many(4097, 0x11);
  many.back() = 0x22;
  device_.Send(many);
  Sleep(1000);
  DWORD errors = 0;
  COMSTAT queues = {};
  ClearCommError(port_, &errors, &queues);
  EXPECT_EQ(errors, 1U);
  EXPECT_EQ(queues.cbInQue, 4096U);
  ClearCommError(port_, &errors, &queues);
  EXPECT_EQ(errors, 0U);
  const auto bytes = Read(port_, 4097);
  EXPECT_THAT(bytes, SizeIs(4096));
  EXPECT_EQ(bytes.back(), 0x11);
}

TEST_F(VirtualLine, PurgeForgetsWhatWaits) {
  device_.Send({0x01, 0x02});
  Sleep(1);
  Write(port_, {0x0A, 0x0B, 0x0C});
  world_.Advance(100);
  PurgeComm(port_, PURGE_RXCLEAR | PURGE_TXCLEAR);
  Sleep(5);
  EXPECT_THAT(Read(port_, 1), IsEmpty());
  EXPECT_THAT(device_.received(), ElementsAre(0x0A)) << "the byte on the wire goes through";
}

TEST_F(VirtualLine, PurgeAbortsAReadInProgress) {
  SetReadTimeouts(port_, 0, 0, 0);
  const std::function<void()> body = [&] {
    Sleep(5);
    PurgeComm(port_, PURGE_RXABORT);
  };
  StartThread(body);
  unsigned char byte = 0;
  DWORD read = 0;
  EXPECT_EQ(ReadFile(port_, &byte, 1, &read, nullptr), FALSE);
  EXPECT_EQ(GetLastError(), 995U);
  EXPECT_EQ(world_.now_us(), 5000);
}

TEST_F(VirtualLine, UnpluggedDeviceIsSilenceInBothDirections) {
  device_.SendAt(0, {0x01, 0x02, 0x03});
  world_.Advance(200);
  world_.line().Unplug();
  Write(port_, {0x0A});
  SetReadTimeouts(port_, 0, 0, 50);
  EXPECT_THAT(Read(port_, 3), ElementsAre(0x01));
  EXPECT_THAT(device_.received(), IsEmpty());
  world_.line().Plug(device_);
  Write(port_, {0x0B});
  Sleep(1);
  EXPECT_THAT(device_.received(), ElementsAre(0x0B));
}

TEST_F(VirtualLine, VanishedLineFailsAtOnceUntilItIsRestored) {
  SetReadTimeouts(port_, 0, 0, 0);
  const std::function<void()> body = [&] {
    Sleep(5);
    world_.line().Vanish();
  };
  StartThread(body);
  unsigned char byte = 0;
  DWORD count = 0;
  EXPECT_EQ(ReadFile(port_, &byte, 1, &count, nullptr), FALSE);
  EXPECT_EQ(GetLastError(), 31U);
  EXPECT_EQ(world_.now_us(), 5000);
  EXPECT_EQ(WriteFile(port_, &byte, 1, &count, nullptr), FALSE);
  EXPECT_EQ(GetLastError(), 31U);
  CloseHandle(port_);
  EXPECT_EQ(OpenPort(), INVALID_HANDLE_VALUE);
  EXPECT_EQ(GetLastError(), 2U);
  world_.line().Restore();
  EXPECT_NE(OpenPort(), INVALID_HANDLE_VALUE);
}

TEST_F(VirtualLine, DroppedByteTakesItsTimeAndIsMissing) {
  world_.line().to_host().DropByte(2);
  device_.SendAt(0, {0x01, 0x02, 0x03});
  SetReadTimeouts(port_, 0, 0, 0);
  EXPECT_THAT(Read(port_, 2), ElementsAre(0x01, 0x03));
  EXPECT_EQ(world_.now_us(), 521);
}

TEST_F(VirtualLine, FlippedByteArrivesWithItsBitsInverted) {
  world_.line().to_device().FlipByte(1, 0x81);
  Write(port_, {0x01, 0x02});
  Sleep(1);
  EXPECT_THAT(device_.received(), ElementsAre(0x80, 0x02));
}

TEST_F(VirtualLine, DoubledByteArrivesTwice) {
  world_.line().to_device().DoubleByte(2);
  Write(port_, {0x01, 0x02, 0x03});
  Sleep(1);
  EXPECT_THAT(device_.received(), ElementsAre(0x01, 0x02, 0x02, 0x03));
  EXPECT_THAT(ArrivalTimes(), ElementsAre(174, 348, 521, 695));
}

TEST_F(VirtualLine, LateByteDelaysThoseBehindIt) {
  world_.line().to_device().DelayByte(2, 10'000);
  Write(port_, {0x01, 0x02, 0x03});
  Sleep(20);
  EXPECT_THAT(ArrivalTimes(), ElementsAre(174, 10'348, 10'522));
}

TEST_F(VirtualLine, FaultsAreCountedFromWhenTheyAreSet) {
  Write(port_, {0x01, 0x02});
  world_.line().to_device().DropByte(1);
  Write(port_, {0x03, 0x04});
  Sleep(1);
  EXPECT_THAT(device_.received(), ElementsAre(0x01, 0x02, 0x04));
}

std::vector<std::uint8_t> ThroughNoise(std::uint64_t seed) {
  ScriptedDevice device;
  World world({seed});
  world.line().Plug(device);
  world.line().to_device().SetNoise(100'000);
  Write(OpenPort(), std::vector<std::uint8_t>(1000, 0x00));
  Sleep(1000);
  return device.received();
}

TEST_F(VirtualLine, ClearedFaultsAreGone) {
  world_.line().to_device().DropByte(1);
  world_.line().to_device().SetNoise(1'000'000);
  world_.line().to_device().Clear();
  Write(port_, {0x01, 0x02});
  Sleep(1);
  EXPECT_THAT(device_.received(), ElementsAre(0x01, 0x02));
}

TEST(VirtualNoise, DropsAndFlipsAboutAsManyBytesAsItSays) {
  const auto received = ThroughNoise(1);
  const auto flipped =
      std::count_if(received.begin(), received.end(), [](std::uint8_t byte) { return byte != 0; });
  EXPECT_NEAR(static_cast<double>(1000 - received.size()), 100, 40);
  EXPECT_NEAR(static_cast<double>(flipped), 100, 40);
}

TEST(VirtualNoise, FollowsFromTheSeed) {
  EXPECT_EQ(ThroughNoise(5), ThroughNoise(5));
  EXPECT_NE(ThroughNoise(5), ThroughNoise(6));
}

TEST_F(VirtualLine, WaitEndsWithAReceivedByte) {
  SetCommMask(port_, EV_RXCHAR);
  device_.SendAt(3000, {0x01});
  DWORD events = 0;
  EXPECT_NE(WaitCommEvent(port_, &events, nullptr), FALSE);
  EXPECT_EQ(events, EV_RXCHAR);
  EXPECT_EQ(world_.now_us(), 3174);
}

TEST_F(VirtualLine, ByteThatCameBeforeTheWaitEndsItAtOnce) {
  SetCommMask(port_, EV_RXCHAR | EV_RXFLAG);
  device_.SendAt(0, {0x01});
  Sleep(1);
  DWORD events = 0;
  EXPECT_NE(WaitCommEvent(port_, &events, nullptr), FALSE);
  EXPECT_EQ(events, EV_RXCHAR);
  EXPECT_EQ(world_.now_us(), 1000);
}

TEST_F(VirtualLine, EventCharacterIsAnEventOfItsOwn) {
  DCB state = {};
  GetCommState(port_, &state);
  state.EvtChar = 0x55;
  SetCommState(port_, &state);
  SetCommMask(port_, EV_RXFLAG);
  device_.SendAt(0, {0x01, 0x55});
  DWORD events = 0;
  EXPECT_NE(WaitCommEvent(port_, &events, nullptr), FALSE);
  EXPECT_EQ(events, EV_RXFLAG);
  EXPECT_EQ(world_.now_us(), 348);
}

TEST(VirtualLines, PortsAreFoundInAnyCaseWithAndWithoutColon) {
  World world;
  EXPECT_EQ(OpenPort(L"COM3:"), INVALID_HANDLE_VALUE);
  EXPECT_EQ(GetLastError(), 2U);
  world.line("COM3:");
  EXPECT_NE(OpenPort(L"com3"), INVALID_HANDLE_VALUE);
  EXPECT_EQ(OpenPort(L"COM3:"), INVALID_HANDLE_VALUE);
  EXPECT_EQ(GetLastError(), 5U) << "a port is not shared";
  EXPECT_NE(OpenPort(L"COM2:"), INVALID_HANDLE_VALUE);
}

struct EchoModel {
  void Receive(const std::uint8_t* data, std::size_t size, std::int64_t now_us) {
    pending.insert(pending.end(), data, data + size);
    due_us = now_us + 500;
  }
  std::optional<std::int64_t> NextEvent() const {
    if (pending.empty()) return std::nullopt;
    return due_us;
  }
  std::vector<std::uint8_t> Transmit(std::int64_t /*now_us*/) { return std::exchange(pending, {}); }
  std::vector<std::uint8_t> pending;
  std::int64_t due_us = 0;
};

TEST(VirtualLines, AnyModelWithTheSameMembersIsADevice) {
  EchoModel model;
  World world;
  world.line().PlugModel(model);
  const HANDLE port = OpenPort();
  SetReadTimeouts(port, 0, 0, 100);
  Write(port, {0x37});
  EXPECT_THAT(Read(port, 1), ElementsAre(0x37));
  EXPECT_EQ(world.now_us(), 174 + 500 + 174);
}

}  // namespace
}  // namespace ipodcomm::virtual_platform
