// SPDX-License-Identifier: MIT
// Destroying a port at any moment: the order of its calls, under 100 ms, and never a touch of the
// dead object by a thread that outlives it (which AddressSanitizer would report).
#include <optional>

#include "serial_test.h"

namespace {

using ipodcomm::virtual_platform::CooperativeSchedule;
using test::DockTest;
using test::kMillisecond;
using test::kSecond;
using test::ScriptedDevice;
using test::World;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class Destruction : public DockTest {
 protected:
  std::optional<CIpodSerial> serial_{std::in_place};
};

TEST_F(Destruction, DeletesTheStateLockClosesEventAndPortAndDeletesThePortLock) {
  EXPECT_EQ(serial_->Open(false), 0);
  world_.Record();
  serial_.reset();
  EXPECT_THAT(
      world_.DrainRecord(),
      ElementsAre("DeleteCriticalSection(section1)", "CloseHandle(event1 \"IPOD_PORT_EVENT_NAME\")",
                  "CloseHandle(port1)", "DeleteCriticalSection(section2)"));
}

TEST_F(Destruction, OfAClosedPortClosesOnlyTheEvent) {
  world_.Record({"CloseHandle"});
  serial_.reset();
  EXPECT_THAT(world_.DrainRecord(), ElementsAre("CloseHandle(event1 \"IPOD_PORT_EVENT_NAME\")"));
}

TEST_F(Destruction, LeavesNothingOpen) {
  EXPECT_EQ(serial_->Open(false), 0);
  serial_.reset();
  EXPECT_THAT(world_.leftovers(), IsEmpty());
}

TEST_F(Destruction, DoesNotWaitForTheThreadWhichStillRestartsTheDriver) {
  EXPECT_EQ(serial_->Open(true), 0);
  world_.Advance(3 * kMillisecond);
  EXPECT_EQ(Elapsed([&] { serial_.reset(); }), 0);
  EXPECT_THAT(world_.live_threads(), ElementsAre("read"));
  world_.Advance(2 * kSecond);
  EXPECT_THAT(world_.live_threads(), IsEmpty());
  ASSERT_EQ(world_.drivers().size(), 1U);
  EXPECT_EQ(world_.drivers()[0].driver, "Drivers\\Builtin\\Serial2");
  EXPECT_EQ(world_.drivers()[0].client_info, 18U);
}

TEST_F(Destruction, DriverOfAnEarlierRestartIsDeactivatedByTheThreadThatOutlives) {
  EXPECT_EQ(serial_->Open(true), 0);
  world_.Advance(3 * kMillisecond);
  serial_->Close();
  world_.Advance(2 * kSecond);
  EXPECT_EQ(serial_->Open(true), 0);
  world_.Advance(3 * kMillisecond);
  serial_.reset();
  world_.Advance(2 * kSecond);
  ASSERT_EQ(world_.drivers().size(), 2U);
  EXPECT_FALSE(world_.drivers()[0].active);
  EXPECT_TRUE(world_.drivers()[1].active);
}

// Opens a port that is receiving, lets `before_us` pass, closes it when told to, lets `after_us`
// pass and destroys it. Then the thread must end by itself.
void LiveAndDie(std::uint64_t seed, std::int64_t before_us, std::optional<std::int64_t> after_us) {
  ScriptedDevice ipod;
  World world({seed});
  world.line().Plug(ipod);
  for (int i = 0; i < 10; ++i) ipod.Send(test::Hex("FF 55 02 00 13 EB"));
  auto serial = std::make_unique<CIpodSerial>();
  ASSERT_EQ(serial->Open(true), 0);
  world.Advance(before_us);
  if (after_us) {
    serial->Close();
    world.Advance(*after_us);
  }
  const std::int64_t start_us = world.now_us();
  serial.reset();
  EXPECT_LT(world.now_us() - start_us, 10 * kMillisecond);
  world.Advance(2 * kSecond);
  EXPECT_THAT(world.live_threads(), IsEmpty());
  EXPECT_EQ(world.drivers().size(), 1U);
  world.line().Unplug();
}

TEST(DestructionAtAnyMoment, WhileReading) {
  for (std::int64_t before_us = 0; before_us < 40 * kMillisecond; before_us += 150) {
    SCOPED_TRACE(before_us);
    LiveAndDie(static_cast<std::uint64_t>(before_us) + 1, before_us, std::nullopt);
  }
}

TEST(DestructionAtAnyMoment, WhileTheThreadLetsGo) {
  for (std::int64_t after_us = 0; after_us < 8 * kMillisecond; after_us += 50) {
    SCOPED_TRACE(after_us);
    LiveAndDie(static_cast<std::uint64_t>(after_us) + 1, 5 * kMillisecond, after_us);
  }
}

TEST(DestructionAtAnyMoment, WhileTheDriverRestarts) {
  for (std::int64_t after_us = 0; after_us < 1100 * kMillisecond; after_us += 9700) {
    SCOPED_TRACE(after_us);
    LiveAndDie(static_cast<std::uint64_t>(after_us) + 1, 5 * kMillisecond, after_us);
  }
}

TEST(DestructionAtAnyMoment, UnderManySchedulesAtOnce) {
  for (std::uint64_t seed = 1; seed <= 200; ++seed) {
    SCOPED_TRACE(seed);
    LiveAndDie(seed, 0, std::nullopt);
    LiveAndDie(seed, 0, 0);
  }
}

// The thread has been created and has not run yet.
TEST(DestructionAtAnyMoment, BeforeTheThreadHasRun) {
  World world({1, CooperativeSchedule()});
  auto serial = std::make_unique<CIpodSerial>();
  EXPECT_EQ(serial->Open(true), 0);
  const std::int64_t start_us = world.now_us();
  serial.reset();
  EXPECT_LT(world.now_us() - start_us, 10 * kMillisecond);
  world.Advance(2 * kSecond);
  EXPECT_THAT(world.live_threads(), IsEmpty());
}

// A line whose reads fail makes the thread pause for 50 ms, and still nobody waits for it.
TEST(DestructionAtAnyMoment, WhileReadsFail) {
  for (std::int64_t before_us = 0; before_us < 120 * kMillisecond; before_us += 1700) {
    World world({static_cast<std::uint64_t>(before_us) + 1});
    auto serial = std::make_unique<CIpodSerial>();
    EXPECT_EQ(serial->Open(true), 0);
    world.line().Vanish();
    world.Advance(before_us);
    const std::int64_t start_us = world.now_us();
    serial.reset();
    EXPECT_LT(world.now_us() - start_us, 10 * kMillisecond) << before_us;
    world.Advance(2 * kSecond);
    EXPECT_THAT(world.live_threads(), IsEmpty());
  }
}

// The host itself may run the thread's entry; the port can then be destroyed all the same.
TEST_F(Destruction, AfterTheHostRanTheThreadsEntryItself) {
  EXPECT_EQ(CIpodSerial::PortReadThread(&*serial_), 1U);
  EXPECT_EQ(Elapsed([&] { serial_.reset(); }), 0);
  serial_.emplace();
  EXPECT_EQ(serial_->Open(true), 0);
  EXPECT_EQ(serial_->Open(false), 0);
  CIpodSerialPeer::Running(*serial_) = 0;
  EXPECT_EQ(CIpodSerial::PortReadThread(&*serial_), 1U);
  EXPECT_EQ(Elapsed([&] { serial_.reset(); }), 0);
}

}  // namespace
