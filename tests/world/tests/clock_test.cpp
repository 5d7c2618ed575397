// SPDX-License-Identifier: MIT
// Virtual time: it stands still while anybody runs and moves exactly to what comes next.
#include <gmock/gmock.h>

#include <cstdlib>

#include "support.h"

namespace ipodcomm::virtual_platform {
namespace {

using testing::ElementsAre;

TEST(VirtualClock, BeginsAtZeroAndStandsStill) {
  World world;
  EXPECT_EQ(world.now_us(), 0);
  EXPECT_EQ(world.now_us(), 0);
}

TEST(VirtualClock, SleepTakesExactlyItsTime) {
  World world;
  Sleep(20);
  EXPECT_EQ(world.now_us(), 20'000);
  Sleep(1);
  EXPECT_EQ(world.now_us(), 21'000);
}

TEST(VirtualClock, SleepOfNoLengthLetsOneMicrosecondPass) {
  World world;
  Sleep(0);
  EXPECT_EQ(world.now_us(), 1);
}

TEST(VirtualClock, AdvanceLetsTimePass) {
  World world;
  world.Advance(13 * kSecond + 7);
  EXPECT_EQ(world.now_us(), 13'000'007);
}

TEST(VirtualClock, TickCountIsMillisecondsFromItsStart) {
  World world({std::nullopt, nullptr, 1000});
  EXPECT_EQ(GetTickCount(), 1000U);
  world.Advance(1999);
  EXPECT_EQ(GetTickCount(), 1001U);
}

TEST(VirtualClock, TickCountWrapsAfter32Bits) {
  World world({std::nullopt, nullptr, 0xFFFFFFFF});
  EXPECT_EQ(GetTickCount(), 0xFFFFFFFFU);
  Sleep(1);
  EXPECT_EQ(GetTickCount(), 0U);
}

TEST(VirtualClock, TickCountCanBeSetAtAnyTime) {
  World world;
  Sleep(5);
  world.SetTickCount(70);
  EXPECT_EQ(GetTickCount(), 70U);
  Sleep(5);
  EXPECT_EQ(GetTickCount(), 75U);
}

std::uint32_t DrawnTickCount(std::uint64_t seed) {
  World world({seed, nullptr, std::nullopt});
  return static_cast<std::uint32_t>(GetTickCount());
}

TEST(VirtualClock, TickCountIsDrawnFromTheSeed) {
  EXPECT_EQ(DrawnTickCount(7), DrawnTickCount(7));
  EXPECT_NE(DrawnTickCount(7), DrawnTickCount(8));
}

TEST(VirtualClock, TickCountOftenBeginsShortlyBeforeItsWrap) {
  int shortly_before = 0;
  for (std::uint64_t seed = 0; seed < 40; ++seed) {
    if (DrawnTickCount(seed) >= 0xFFFFFFFF - 60'000) ++shortly_before;
  }
  EXPECT_GE(shortly_before, 20);
  EXPECT_LT(shortly_before, 40);
}

TEST(VirtualClock, EarlierDeadlineComesFirstWhateverTheOrder) {
  World world;
  Notes<int> order;
  struct Sleeper {
    Notes<int>* order;
    DWORD duration_ms;
    static DWORD Run(void* argument) {
      auto* self = static_cast<Sleeper*>(argument);
      Sleep(self->duration_ms);
      self->order->Add(static_cast<int>(self->duration_ms));
      return 0;
    }
  };
  Sleeper sleepers[] = {{&order, 30}, {&order, 10}, {&order, 20}};
  for (Sleeper& sleeper : sleepers) CreateThread(nullptr, 0, Sleeper::Run, &sleeper, 0, nullptr);
  world.Advance(kSecond);
  EXPECT_THAT(order.all(), ElementsAre(10, 20, 30));
}

TEST(VirtualClock, SeedComesFromTheEnvironment) {
  const char* before = std::getenv("IPODCOMM_SEED");
  const std::string kept = before != nullptr ? before : "";
  setenv("IPODCOMM_SEED", "4711", 1);
  {
    World world;
    EXPECT_EQ(world.seed(), 4711U);
  }
  unsetenv("IPODCOMM_SEED");
  {
    World world;
    EXPECT_EQ(world.seed(), 1U);
  }
  if (before != nullptr) setenv("IPODCOMM_SEED", kept.c_str(), 1);
}

}  // namespace
}  // namespace ipodcomm::virtual_platform
