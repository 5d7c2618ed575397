// SPDX-License-Identifier: MIT
// Workouts with the simulated iPod in the dock: what it has stored in the end is what was written,
// byte for byte, though writes and acknowledgements were lost on the way.
#include <string>

#include "simulator/simulated_ipod.h"
#include "support/properties.h"
#include "support/session_test.h"
#include "workout/workout_text.h"

namespace {

using test::Equipment;
using test::Interval;
using test::kMillisecond;
using test::kSecond;
using test::Name;
using test::World;
using ::testing::IsEmpty;
using ::testing::SizeIs;

// What happens to a write on the line. At least one of its three attempts is stored and
// acknowledged in time.
enum class Mishap {
  kNone,
  kWriteDamaged,
  kWriteDamagedTwice,
  kAckDamaged,
  kAckDamagedTwice,
  kWriteThenAckDamaged,
  kAckLate,
  kCount,
};

// An identified session with the simulated iPod.
class Gym {
 public:
  explicit Gym(std::uint64_t seed, const ipodsim::Settings& settings = {})
      : ipod_(settings), world_({seed}) {
    world_.line().PlugModel(ipod_);
    world_.Advance(2 * kSecond);
    Identify();
  }
  ~Gym() {
    session_.Close();
    world_.line().Unplug();
    test::DrainTraceLog();
  }

  void Identify() {
    EXPECT_EQ(session_.Open(), 0);
    session_.SetIDPSEnable(1);
    EXPECT_NE(session_.Command_IdentifyDeviceLingos(0, nullptr, nullptr, nullptr), 0);
    EXPECT_TRUE(ipod_.identified_by_tokens());
    // What the iPod asks now is answered before the first command.
    world_.Advance(kSecond);
    DrainDebugOutput();
  }
  int Start(const Equipment& equipment) {
    return session_.Sports_StartWorkout(
        equipment.manufacturer_id.given.c_str(), equipment.manufacturer_name.given.c_str(),
        equipment.model.given.c_str(), equipment.serial_number.given.c_str(),
        static_cast<tagIPOD_EQUIPMENT_TYPE>(equipment.type), equipment.weight_kg);
  }
  int Write(const Interval& interval) {
    return session_.Sports_IntervalWorkout(
        static_cast<tagIPOD_INTERVAL_TYPE>(interval.event), interval.seconds, interval.kcal,
        interval.distance, static_cast<tagIPOD_DISTANCE_TYPE>(interval.distance_type),
        interval.speed, static_cast<tagIPOD_SPEED_TYPE>(interval.speed_type), interval.incline,
        interval.bpm, interval.level);
  }
  int Finish(const Interval& last) {
    return session_.Sports_FinishWorkout(
        last.seconds, last.kcal, last.distance,
        static_cast<tagIPOD_DISTANCE_TYPE>(last.distance_type), last.speed,
        static_cast<tagIPOD_SPEED_TYPE>(last.speed_type), last.bpm);
  }

  // Lets this happen to the next write, of so many bytes of text.
  void Arrange(Mishap mishap, std::size_t text_bytes) {
    // FF 55 length 0C 07 identifier(2) offset(4) handle text checksum
    const auto write = static_cast<unsigned>(text_bytes) + 13;
    constexpr unsigned kInText = 14;
    // FF 55 06 0C 00 identifier(2) status 07 checksum
    constexpr unsigned kAck = 10;
    constexpr unsigned kInAck = 8;
    auto& to_device = world_.line().to_device();
    auto& to_host = world_.line().to_host();
    switch (mishap) {
      case Mishap::kWriteDamagedTwice:
        to_device.FlipByte(write + kInText, 0x10);
        [[fallthrough]];
      case Mishap::kWriteDamaged:
        return to_device.FlipByte(kInText, 0x04);
      case Mishap::kAckDamagedTwice:
        to_host.FlipByte(kAck + kInAck, 0x20);
        [[fallthrough]];
      case Mishap::kAckDamaged:
        return to_host.FlipByte(kInAck, 0x01);
      case Mishap::kWriteThenAckDamaged:
        to_device.FlipByte(kInText, 0x40);
        return to_host.FlipByte(kInAck, 0x80);
      case Mishap::kAckLate:
        return to_host.DelayByte(kInAck, 500 * kMillisecond);
      default:
        return;
    }
  }

  // What has been written to the debug output since the last call, or since identification.
  std::vector<std::string> DrainDebugOutput() {
    const std::vector<std::string> all = world_.debug_output();
    const auto taken = static_cast<std::ptrdiff_t>(debug_lines_taken_);
    debug_lines_taken_ = all.size();
    return {all.begin() + taken, all.end()};
  }
  std::string Stored(std::size_t file) {
    const auto names = ipod_.feature_files().Names();
    return file < names.size() ? ipod_.feature_files().Read(names[file]) : "no such file";
  }
  std::vector<std::string> Mistakes() {
    world_.Advance(kSecond);
    std::vector<std::string> names;
    for (const auto& mistake : ipod_.mistakes()) names.push_back(mistake.name);
    return names;
  }

  ipodsim::SimulatedIpod ipod_;
  World world_;
  test::ChosenSession session_;

 private:
  std::size_t debug_lines_taken_ = 0;
};

// What the iPod adds to a finished document.
void ExpectEnd(const std::string& end) {
  EXPECT_EQ(end.substr(0, 12), "\t<iPodInfo>\n");
  EXPECT_EQ(end.find("<interval>"), std::string::npos);
  const std::string last = "</signature>\n</gymData>";
  EXPECT_EQ(end.substr(end.size() - last.size()), last);
}

const Equipment kEquipment = {
    {L"ACME", "ACME"},
    {L"Zo\u00EB & <\u6771\U0001F3B5>", "Zo\xC3\xAB & <\xE6\x9D\xB1\xF0\x9F\x8E\xB5>"},
    {L"T9", "T9"},
    {L"SN-0042", "SN-0042"},
    0,
    70.5};
const Interval kBegin = {0, 0, 0, 0, 0, 0, 0, 0, 0, -1};
const Interval kMiddle = {1, 1800, 210.5, 4.25, 0, 412.7, 0, 1.5, 141, 7};

TEST(WorkoutStory, FinishedDocumentIsStoredWholeAndEndedByTheIpod) {
  Gym gym(1);
  EXPECT_EQ(gym.Start(kEquipment), 1);
  EXPECT_EQ(gym.Write(kBegin), 1);
  EXPECT_EQ(gym.Write(kMiddle), 1);
  EXPECT_EQ(gym.Finish(kMiddle), 1);
  const std::string text = test::HeaderText(kEquipment) + test::IntervalText(kBegin) +
                           test::IntervalText(kMiddle) + test::SummaryText(kMiddle);
  const std::string stored = gym.Stored(0);
  EXPECT_EQ(stored.substr(0, text.size()), text);
  ExpectEnd(stored.substr(text.size()));
  EXPECT_THAT(gym.Mistakes(), IsEmpty());
  EXPECT_THAT(gym.ipod_.open_feature_files(), IsEmpty());
  EXPECT_THAT(gym.DrainDebugOutput(), IsEmpty());
}

TEST(WorkoutStory, UnpluggingLeavesWhatWasWrittenAndTheNextWorkoutIsANewFile) {
  Gym gym(1);
  EXPECT_EQ(gym.Start(kEquipment), 1);
  EXPECT_EQ(gym.Write(kBegin), 1);
  gym.ipod_.Unplug(gym.world_.now_us());
  EXPECT_EQ(gym.Write(kMiddle), 0);
  EXPECT_EQ(gym.Finish(kMiddle), 0);
  EXPECT_THAT(gym.DrainDebugOutput(), SizeIs(2));  // interval and summary
  gym.ipod_.Replug(gym.world_.now_us());
  gym.session_.Close();
  gym.world_.Advance(2 * kSecond);
  gym.Identify();
  EXPECT_EQ(gym.Start(kEquipment), 1);
  EXPECT_EQ(gym.Finish(kBegin), 1);
  EXPECT_EQ(gym.Stored(0), test::HeaderText(kEquipment) + test::IntervalText(kBegin));
  const std::string text = test::HeaderText(kEquipment) + test::SummaryText(kBegin);
  EXPECT_EQ(gym.Stored(1).substr(0, text.size()), text);
  EXPECT_THAT(gym.ipod_.feature_files().Names(), SizeIs(2));
}

// Files on an iPod that has room for so many bytes.
class SmallDisk : public ipodsim::MemoryFeatureFiles {
 public:
  explicit SmallDisk(std::size_t room) : room_(room) {}
  bool Append(const std::string& name, const ipodsim::Bytes& data) override {
    if (data.size() > room_) return false;
    room_ -= data.size();
    return MemoryFeatureFiles::Append(name, data);
  }

 private:
  std::size_t room_;
};

TEST(WorkoutStory, FullDiskRefusesWhatNoLongerFitsAndKeepsTheRest) {
  ipodsim::Settings settings;
  settings.storage.files = std::make_shared<SmallDisk>(500);
  Gym gym(1, settings);
  EXPECT_EQ(gym.Start(kEquipment), 1);
  EXPECT_EQ(gym.Write(kBegin), 1);
  EXPECT_EQ(gym.Write(kMiddle), 0);
  EXPECT_EQ(gym.Stored(0), test::HeaderText(kEquipment) + test::IntervalText(kBegin));
  EXPECT_THAT(gym.DrainDebugOutput(),
              ::testing::ElementsAre("Failed to write xml file data! [" +
                                     test::IntervalText(kMiddle) + "]\r\n"));
}

TEST(WorkoutStory, RefusedWriteInTheMiddleLeavesAGapOfItsLength) {
  ipodsim::Settings settings;
  settings.storage.failing_writes[14] = ipodsim::AckStatus::kOutOfResources;  // behind the header
  Gym gym(1, settings);
  EXPECT_EQ(gym.Start(kEquipment), 1);
  EXPECT_EQ(gym.Write(kBegin), 0);
  EXPECT_EQ(gym.Write(kMiddle), 1);
  const std::string gap(test::IntervalText(kBegin).size(), '\0');
  EXPECT_EQ(gym.Stored(0), test::HeaderText(kEquipment) + gap + test::IntervalText(kMiddle));
}

TEST(WorkoutStory, UserDataAreReadAndTheWeightIsSet) {
  Gym gym(1);
  int flag = 7;
  unsigned short weight = 0;
  unsigned char value = 7;
  EXPECT_EQ(gym.session_.Command_GetUserData(&flag, &weight, &value), 1);
  EXPECT_EQ(flag, 0);
  EXPECT_EQ(weight, 75);
  EXPECT_EQ(value, 0);
  EXPECT_EQ(gym.session_.Command_SetUserWeight(812), 1);
  EXPECT_EQ(gym.session_.Command_GetUserData(nullptr, &weight, nullptr), 1);
  EXPECT_EQ(weight, 812);
  EXPECT_THAT(gym.Mistakes(), IsEmpty());
}

// ---- Mishaps on the line

struct Overcome {
  Mishap mishap;
  std::int64_t at_least_us;
  std::int64_t below_us;
};

class Mishaps : public ::testing::TestWithParam<Overcome> {};

TEST_P(Mishaps, AreOvercomeByFurtherAttempts) {
  Gym gym(1);
  EXPECT_EQ(gym.Start(kEquipment), 1);
  gym.Arrange(GetParam().mishap, test::IntervalText(kMiddle).size());
  const std::int64_t start_us = gym.world_.now_us();
  EXPECT_EQ(gym.Write(kMiddle), 1);
  EXPECT_GE(gym.world_.now_us() - start_us, GetParam().at_least_us);
  EXPECT_LT(gym.world_.now_us() - start_us, GetParam().below_us);
  EXPECT_EQ(gym.Write(kBegin), 1);
  EXPECT_EQ(gym.Stored(0), test::HeaderText(kEquipment) + test::IntervalText(kMiddle) +
                               test::IntervalText(kBegin));
}

INSTANTIATE_TEST_SUITE_P(
    All, Mishaps,
    ::testing::Values(Overcome{Mishap::kNone, 0, 500 * kMillisecond},
                      Overcome{Mishap::kWriteDamaged, kSecond, 2 * kSecond},
                      Overcome{Mishap::kWriteDamagedTwice, 2 * kSecond, 3 * kSecond},
                      Overcome{Mishap::kAckDamaged, kSecond, 2 * kSecond},
                      Overcome{Mishap::kAckDamagedTwice, 2 * kSecond, 3 * kSecond},
                      Overcome{Mishap::kWriteThenAckDamaged, 2 * kSecond, 3 * kSecond},
                      Overcome{Mishap::kAckLate, 500 * kMillisecond, kSecond}));

#if IPODCOMM_HAS_RAPIDCHECK

// ---- Random workouts

Name DrawName() {
  static const Name kCharacters[] = {{L"a", "a"},
                                     {L" ", " "},
                                     {L"%s", "%s"},
                                     {L"<", "<"},
                                     {L"&amp;", "&amp;"},
                                     {L"\u00E9", "\xC3\xA9"},
                                     {L"\u20AC", "\xE2\x82\xAC"},
                                     {L"\U0001F3B5", "\xF0\x9F\x8E\xB5"}};
  Name name;
  for (const int drawn :
       *rc::gen::resize(30, rc::gen::container<std::vector<int>>(rc::gen::inRange(0, 8)))) {
    name.given += kCharacters[drawn].given;
    name.stored += kCharacters[drawn].stored;
  }
  return name;
}

double DrawNumber(int limit) { return *rc::gen::inRange(-100 * limit, 100 * limit) / 97.0; }

Equipment DrawEquipment() {
  return {DrawName(),     DrawName(), DrawName(), DrawName(), *rc::gen::inRange(-1, 6),
          DrawNumber(200)};
}

Interval DrawInterval() {
  return {*rc::gen::inRange(-1, 6),  *rc::gen::inRange(-10, 100000),
          DrawNumber(20000),         DrawNumber(5000),
          *rc::gen::inRange(-1, 3),  DrawNumber(5000),
          *rc::gen::inRange(-1, 4),  DrawNumber(30),
          *rc::gen::inRange(0, 250), *rc::gen::inRange(-1, 30)};
}

void WriteRandomWorkout(bool with_mishaps) {
  ipodsim::Settings settings;
  settings.seed = *rc::gen::inRange<std::uint64_t>(1, 1000000);
  settings.asks_during_session = *rc::gen::arbitrary<bool>();
  // The numbers are any, also such as no workout has.
  settings.storage.checks_workouts = false;
  Gym gym(settings.seed, settings);
  const Equipment equipment = DrawEquipment();
  RC_ASSERT(gym.Start(equipment) == 1);
  std::string text = test::HeaderText(equipment);
  Interval last = kBegin;
  const int intervals = *rc::gen::inRange(0, 12);
  const auto mishap = [&] {
    return with_mishaps
               ? static_cast<Mishap>(*rc::gen::inRange(0, static_cast<int>(Mishap::kCount)))
               : Mishap::kNone;
  };
  for (int i = 0; i < intervals; ++i) {
    last = DrawInterval();
    const std::string block = test::IntervalText(last);
    gym.Arrange(mishap(), block.size());
    RC_ASSERT(gym.Write(last) == 1);
    text += block;
  }
  const std::string summary = test::SummaryText(last);
  gym.Arrange(mishap(), summary.size());
  RC_ASSERT(gym.Finish(last) == 1);
  text += summary;
  const std::string stored = gym.Stored(0);
  RC_ASSERT(stored.substr(0, text.size()) == text);
  ExpectEnd(stored.substr(text.size()));
  RC_ASSERT(gym.DrainDebugOutput().empty());
  if (!with_mishaps) RC_ASSERT(gym.Mistakes().empty());
}

RC_GTEST_PROP(WorkoutStory, RandomWorkoutIsStoredByteForByte, ()) { WriteRandomWorkout(false); }

RC_GTEST_PROP(WorkoutStory, RandomWorkoutIsStoredByteForByteThoughFramesAreLost, ()) {
  WriteRandomWorkout(true);
}

#else

TEST(WorkoutStory, RandomWorkoutIsStoredByteForByte) { GTEST_SKIP() << test::kNoRapidcheck; }
TEST(WorkoutStory, RandomWorkoutIsStoredByteForByteThoughFramesAreLost) {
  GTEST_SKIP() << test::kNoRapidcheck;
}

#endif

}  // namespace
