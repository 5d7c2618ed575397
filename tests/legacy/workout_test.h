// SPDX-License-Identifier: MIT
// Legacy workouts on an iPod that takes them.
#pragma once

#include <string>
#include <vector>

#include "support/answering_ipod.h"
#include "support/legacy_test.h"

namespace test {

/// The file handle that the iPod gives out.
constexpr std::uint8_t kHandle = 0x2B;

constexpr const char* kSportsRequest = "FF 55 02 09 83 72";
constexpr const char* kStorageRequest = "FF 55 02 0C 01 F1";
constexpr const char* kCloseOfNone = "FF 55 03 0C 08 00 E9";
constexpr const char* kOpen = "FF 55 11 0C 12 02 00 00 00 0B 3C 2F 67 79 6D 44 61 74 61 3E 54";

class WorkoutTest : public LegacyTest {
 protected:
  WorkoutTest() {
    answering_.Answer("09 83", "FF 55 05 09 84 00 03 2A 41");  // workouts and user data
    answering_.Answer("0C 01",
                      "FF 55 18 0C 02 00 00 00 01 00 00 00 00 00 10 00 00 02 00 00 00 00 00 00 00 "
                      "01 02 C4");
    answering_.Answer("0C 12", "FF 55 03 0C 04 2B C2");
    answering_.Answer("0C 07", "FF 55 04 0C 00 00 07 E9");
    answering_.Answer("0C 08", "FF 55 04 0C 00 00 08 E8");
    world_.line().Plug(answering_);
  }
  ~WorkoutTest() override { world_.line().Unplug(); }

  struct Names {
    std::wstring manufacturer_id = L"0042";
    std::wstring ignored = L"not written";
    std::wstring model = L"B7";
    std::wstring serial_number = L"123-4";
    std::wstring gym_name = L"Nord";
    std::wstring gym_location = L"Hall 2";
  };

  int Start(unsigned char equipment = ipod::IPOD_SPORTS_WORKOUTTYPE_BIKE, float weight = 72.5F) {
    return legacy_.startworkout(equipment, names_.manufacturer_id.data(), names_.ignored.data(),
                                names_.model.data(), names_.serial_number.data(),
                                names_.gym_name.data(), names_.gym_location.data(), weight);
  }
  int Interval(unsigned char event = ipod::IPOD_SPORTS_INTERVAL_TYPE_START) {
    return legacy_.intervalworkout(event, 61, 12, 0.25F, 9.5F, 245, 71, 72, 131, 1.5F, 7);
  }
  int Finish() { return legacy_.finishworkout(1800, 320, 6.125F, 9.5F, 294, 71, 72, 128); }
  int Write(std::wstring text, int previous_ok = 1) {
    return legacy_.ipodstoragewritestring(previous_ok, text.data());
  }

  /// Starts a workout and forgets what was sent for it. The header holds 326 bytes.
  void Begin() {
    EXPECT_EQ(Start(), 1);
    EXPECT_EQ(ipodPeer::StorageWriteOffset(legacy_), kHeaderBytes);
    answering_.DrainFrames();
  }
  static constexpr std::uint32_t kHeaderBytes = 326;

  std::string Status() {
    const std::wstring text = legacy_.getlasttry();
    return {text.begin(), text.end()};
  }

  AnsweringIpod answering_;
  Names names_;
};

}  // namespace test
