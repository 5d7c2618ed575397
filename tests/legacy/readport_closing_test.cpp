// SPDX-License-Identifier: MIT
// The legacy serial port closed by one thread while another reads a frame from it.
#include "support/session_test.h"
#include "world/threads/next_thread.h"

namespace {

using ipodcomm::virtual_platform::CooperativeSchedule;
using test::kMillisecond;
using test::kSecond;
using test::World;

// A world with an open port and a thread that closes it after a time.
class ClosedPort {
 public:
  explicit ClosedPort(World& world, DWORD delay_ms) : world_(world), delay_ms_(delay_ms) {
    world_.line().Plug(device_);
    EXPECT_EQ(serial_.openport(), 1);
    thread_ = CreateThread(nullptr, 0, CloseLater, this, 0, nullptr);
  }
  ClosedPort(const ClosedPort&) = delete;
  ClosedPort& operator=(const ClosedPort&) = delete;
  ~ClosedPort() {
    WaitForSingleObject(thread_, INFINITE);
    CloseHandle(thread_);
    world_.line().Unplug();
  }

  void Send(const char* bytes) { device_.Send(test::Hex(bytes)); }
  void SendAt(std::int64_t time_us, const char* bytes) {
    device_.SendAt(time_us, test::Hex(bytes));
  }
  std::string Read() {
    unsigned char buffer[256] = {};
    const unsigned long count = serial_.readport(buffer, 256);
    return test::ToHex(buffer, count);
  }

 private:
  static DWORD CloseLater(void* argument) {
    auto* self = static_cast<ClosedPort*>(argument);
    Sleep(self->delay_ms_);
    self->serial_.closeport();
    return 0;
  }

  World& world_;
  const DWORD delay_ms_;
  test::ScriptedDevice device_;
  ipodserial serial_;
  HANDLE thread_ = nullptr;
};

// The read in progress fails at once, and so do those that are left.
TEST(ReadPortClosing, EndsAReadThatWaitsAndReturnsWhatItHas) {
  World world({1, CooperativeSchedule()});
  ClosedPort port(world, 100);
  port.Send("FF 55 09 00");
  const std::int64_t start_us = world.now_us();
  EXPECT_EQ(port.Read(), "FF 55 09 00");
  EXPECT_EQ(world.now_us() - start_us, 100 * kMillisecond + kSecond);
}

// The first empty read lasts to 400 ms, its pause to 600 ms; the port is closed in between.
TEST(ReadPortClosing, EndsAReadThatPauses) {
  World world({1, CooperativeSchedule()});
  ClosedPort port(world, 500);
  const std::int64_t start_us = world.now_us();
  EXPECT_EQ(port.Read(), "");
  EXPECT_EQ(world.now_us() - start_us, 600 * kMillisecond + 4 * 200 * kMillisecond);
}

// Bytes that are no part of a frame are no empty reads, and nothing else ends the read.
TEST(ReadPortClosing, EndsAReadThatFindsOnlyNoise) {
  World world({1, CooperativeSchedule()});
  ClosedPort port(world, 60'000);
  const std::int64_t start_us = world.now_us();
  for (int i = 0; i < 700; ++i) port.SendAt(start_us + i * 100 * kMillisecond, "00");
  EXPECT_EQ(port.Read(), "");
  EXPECT_EQ(world.now_us() - start_us, 60 * kSecond + kSecond);
}

// Sends a byte and takes the port's handle away while it is on the line.
class ClosingDevice : public test::ScriptedDevice {
 public:
  explicit ClosingDevice(ipodserial& serial) : serial_(serial) {}
  Bytes Transmit(std::int64_t now_us) override {
    Bytes sent = ScriptedDevice::Transmit(now_us);
    if (sent == Bytes{0x09}) ipodserialPeer::Port(serial_) = INVALID_HANDLE_VALUE;
    return sent;
  }

 private:
  ipodserial& serial_;
};

TEST(ReadPortClosing, StopsAtOnceBehindTheByteThatWasDeliveredLast) {
  World world;
  ipodserial serial;
  ClosingDevice device(serial);
  world.line().Plug(device);
  ASSERT_EQ(serial.openport(), 1);
  device.Send(test::Hex("FF 55"));
  device.SendAt(100 * kMillisecond, test::Hex("09"));
  device.SendAt(100 * kMillisecond + 1, test::Hex("00 08"));
  world.Record();
  unsigned char buffer[256] = {};
  EXPECT_EQ(serial.readport(buffer, 256), 3U);
  EXPECT_EQ(test::ToHex(buffer, 3), "FF 55 09");
  EXPECT_THAT(world.DrainCalls().text_with_results(),
              ::testing::ElementsAre("ReadFile(port1, 1) = FF", "ReadFile(port1, 1) = 55",
                                     "ReadFile(port1, 1) = 09"));
  world.line().Unplug();
}

TEST(ReadPortClosing, ReturnsABeginningOfTheFrameUnderAnySchedule) {
  const std::string whole =
      "FF 55 20 41 41 41 41 41 41 41 41 41 41 41 41 41 41 41 41 41 41 41 41 41";
  for (std::uint64_t seed = 1; seed <= 100; ++seed) {
    SCOPED_TRACE(seed);
    World world({seed});
    ClosedPort port(world, 2);
    port.Send(whole.c_str());
    world.Record({"Sleep"});
    const std::string read = port.Read();
    EXPECT_EQ(read, whole.substr(0, read.size()));
    EXPECT_LT(read.size(), whole.size());
    EXPECT_EQ(world.DrainCalls().Of("host").all().size(), 5U);
  }
}

}  // namespace
