// SPDX-License-Identifier: MIT
// A workout of an hour with an interval every second, in virtual time: nothing is lost or doubled,
// and nothing piles up.
#include <atomic>
#include <cstdlib>
#include <new>
#include <string>

#include "simulator/simulated_ipod.h"
#include "support/session_test.h"
#include "workout/workout_text.h"

namespace {

std::atomic<long> live_blocks{0};

}  // namespace

void* operator new(std::size_t size) {
  void* memory = std::malloc(size);
  if (memory == nullptr) throw std::bad_alloc();
  ++live_blocks;
  return memory;
}

void operator delete(void* memory) noexcept {
  if (memory != nullptr) --live_blocks;
  std::free(memory);
}

void operator delete(void* memory, std::size_t /*size*/) noexcept { operator delete(memory); }

namespace {

using test::kSecond;
using ::testing::ContainerEq;

constexpr int kSeconds = 3600;

const test::Equipment kEquipment = {
    {L"ACME", "ACME"}, {L"Acme", "Acme"}, {L"T9", "T9"}, {L"1", "1"}, 3, 81.25};

test::Interval At(int second) {
  const int event = second == 0 ? 0 : second == kSeconds - 1 ? 4 : 1;
  return {event, second,           second * 0.125,   second * 0.003, 0, 300.0 + second % 60,
          0,     second % 8 * 0.5, 90 + second % 90, second % 20};
}

class WorkoutHour : public ::testing::Test {
 protected:
  WorkoutHour() {
    world_.line().PlugModel(ipod_);
    world_.Advance(2 * kSecond);
    session_.SetIDPSEnable(1);
    EXPECT_EQ(session_.Open(), 0);
    EXPECT_NE(session_.Command_IdentifyDeviceLingos(0, nullptr, nullptr, nullptr), 0);
  }
  ~WorkoutHour() override {
    session_.Close();
    world_.line().Unplug();
    test::DrainTraceLog();
  }

  int Start() {
    return session_.Sports_StartWorkout(L"ACME", L"Acme", L"T9", L"1", IPOD_EQUIPMENT_TYPE_BIKE,
                                        81.25);
  }
  int Write(const test::Interval& i) {
    return session_.Sports_IntervalWorkout(static_cast<tagIPOD_INTERVAL_TYPE>(i.event), i.seconds,
                                           i.kcal, i.distance, IPOD_DISTANCE_TYPE_KM, i.speed,
                                           IPOD_SPEED_TYPE_PACE, i.incline, i.bpm, i.level);
  }
  int Finish(const test::Interval& i) {
    return session_.Sports_FinishWorkout(i.seconds, i.kcal, i.distance, IPOD_DISTANCE_TYPE_KM,
                                         i.speed, IPOD_SPEED_TYPE_PACE, i.bpm);
  }
  // The program's memory, the platform's heap and handles included. What the world and the iPod
  // keep of the past are a few blocks that grow.
  struct Held {
    long blocks;
    std::vector<std::string> platform;
  };
  Held Holds() {
    const auto platform = world_.leftovers();
    return {live_blocks, platform};
  }

  ipodsim::SimulatedIpod ipod_{ipodsim::Settings()};
  ipodcomm::virtual_platform::World world_;
  test::ChosenSession session_;
};

TEST_F(WorkoutHour, OfAnIntervalASecondLosesDoublesAndPilesUpNothing) {
  const std::int64_t begin_us = world_.now_us();
  std::string text = test::HeaderText(kEquipment);
  ASSERT_EQ(Start(), 1);
  Held after_a_minute = {};
  for (int second = 0; second < kSeconds; ++second) {
    const test::Interval interval = At(second);
    ASSERT_EQ(Write(interval), 1) << second;
    text += test::IntervalText(interval);
    const std::int64_t next_us = begin_us + (second + 2) * kSecond;
    if (next_us > world_.now_us()) world_.Advance(next_us - world_.now_us());
    if (second == 60) after_a_minute = Holds();
  }
  const Held after_an_hour = Holds();
  EXPECT_LE(after_an_hour.blocks, after_a_minute.blocks + 4);
  EXPECT_THAT(after_an_hour.platform, ContainerEq(after_a_minute.platform));

  ASSERT_EQ(Finish(At(kSeconds - 1)), 1);
  text += test::SummaryText(At(kSeconds - 1));
  EXPECT_GE(world_.now_us() - begin_us, kSeconds * kSecond);
  const std::string stored = ipod_.feature_files().Read(ipod_.feature_files().Names().at(0));
  // Compared by hand: a failure must not print a megabyte twice.
  EXPECT_TRUE(stored.compare(0, text.size(), text) == 0);
  EXPECT_EQ(stored.find("<interval>", text.size()), std::string::npos);
  EXPECT_TRUE(ipod_.mistakes().empty());
}

}  // namespace
