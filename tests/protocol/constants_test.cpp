// SPDX-License-Identifier: MIT
// The exported vocabulary: every constant has its written type and value, none is missing, and
// those that share a value on purpose keep it. Hosts compile against names and widths alike.
#include <gtest/gtest.h>

#include <cstddef>
#include <iterator>
#include <set>
#include <string>
#include <type_traits>

#include "protocol/constants_table.h"

namespace {

// Calls `visit` with every family of the table.
template <class Visitor>
void ForEachFamily(Visitor visit) {
  const auto visit_all = [&visit](const auto&... families) { (visit(families), ...); };
  using namespace test;
  visit_all(kFramePositions, kLingoes, kSupportedLingo, kLingoMasks, kPower, kGeneralCommands,
            kSimpleRemoteCommands, kDisplayRemoteCommands, kSportsCommands, kStorageCommands,
            kExtendedCommands, kAckStatuses, kAccessoryInfoTypes, kAccessoryInfoMasks, kButtons,
            kCategories, kSortOrders, kHierarchies, kPlayControls, kPlayerStates, kPlayingTrackInfo,
            kRemoteTrackInfo, kTrackCapabilities, kImageFormats, kPreferenceClasses,
            kPreferenceSettings, kFeatureFiles, kFeatureFileOptions, kSportsCapabilities,
            kIntervalTypes, kWorkoutTypes, kTextCapacities);
}

TEST(Constants, EveryOneHasItsValue) {
  ForEachFamily([](const auto& family) {
    for (const auto& row : family) {
      // Read through its address: the library itself holds it.
      EXPECT_EQ(static_cast<long long>(*row.constant), static_cast<long long>(row.value))
          << row.name;
    }
  });
}

TEST(Constants, ThereAreThreeHundredAndFortySix) {
  std::size_t rows = 0;
  std::set<std::string> names;
  std::set<const void*> addresses;
  ForEachFamily([&](const auto& family) {
    for (const auto& row : family) {
      ++rows;
      names.insert(row.name);
      addresses.insert(row.constant);
    }
  });
  EXPECT_EQ(rows, 346U);
  EXPECT_EQ(names.size(), 346U);
  EXPECT_EQ(addresses.size(), 346U);
}

// Widths are part of the interface: one of each is spelt out, the table's types hold the others.
static_assert(std::is_same_v<decltype(ipod::IPOD_LINGO_GENERAL), const unsigned char>);
static_assert(std::is_same_v<decltype(ipod::IPOD_COMMAND_SPORTS_IPODACK), const short>);
static_assert(std::is_same_v<decltype(ipod::IPOD_SPORTS_WORKOUTTYPE_BIKE), const unsigned short>);
static_assert(std::is_same_v<decltype(ipod::IPOD_PLAYCONTROL_PLAY), const unsigned long>);

// They are usable where the compiler needs a number.
static_assert(ipod::IPOD_PACKET_SYNC_VAL == 0xFF);
static_assert(ipod::IPOD_BUTTON_CONTEXT_MASK_BACKLIGHTOFF == 0x4000000);

TEST(Constants, PairsThatShareAValueKeepIt) {
  EXPECT_EQ(ipod::IPOD_IMAGEFORMAT_RGB565BIGENDIAN16BPP + 0, 2U);
  EXPECT_EQ(ipod::IPOD_IMAGEFORMAT_RGB565LITTLEENDIAN16BPP + 0, 2U);
  EXPECT_EQ(ipod::IPOD_COMMAND_GETREPEAT + 0, 0x2F);
  EXPECT_EQ(ipod::IPOD_COMMAND_SETREPEAT + 0, 0x2F);
  EXPECT_EQ(ipod::IPOD_COMMAND_STORAGE_GETIPODCAPS + 0, 1);
  EXPECT_EQ(ipod::IPOD_COMMAND_SPORTS_GETDEVICEVERSION + 0, 1);
}

TEST(Constants, StatusLocationIsAPositionAmongTheStatuses) {
  EXPECT_EQ(ipod::IPOD_ACKE_STATUS_LOC + 0, 6);
}

TEST(Constants, DefaultSortOrderReadsAs255) {
  const short order = ipod::IPOD_SELECTSORT_DEFAULT;
  EXPECT_EQ(order, 255);
}

TEST(Constants, LingoMaskBytesMakeUpTheMaskOnTheWire) {
  const unsigned low = ipod::IPOD_LINGO_MASK_GENERAL | ipod::IPOD_LINGO_MASK_SIMPLEREMOTE |
                       ipod::IPOD_LINGO_MASK_DISPLAYREMOTE | ipod::IPOD_LINGO_MASK_EXTENDED;
  EXPECT_EQ(low, 0x0000001DU);
  EXPECT_EQ(ipod::IPOD_LINGO_MASK_SPORTS << 8, 0x00000200);
  EXPECT_EQ(ipod::IPOD_LINGO_MASK_STORAGE << 8, 0x00001000);
}

TEST(Constants, AccessoryInfoMaskIsTheBitOfItsType) {
  const auto& types = test::kAccessoryInfoTypes;
  const auto& masks = test::kAccessoryInfoMasks;
  ASSERT_EQ(std::size(types), 10U);
  ASSERT_EQ(std::size(masks), 10U);
  for (std::size_t i = 0; i < 10; ++i) {
    EXPECT_EQ(*masks[i].constant, 1 << *types[i].constant) << masks[i].name;
  }
}

TEST(Constants, AnsweredAccessoryInfoTypesMakeUpF3) {
  const int answered = ipod::IPOD_ACCESSORYINFOTYPE_MASK_CAPABILITIES |
                       ipod::IPOD_ACCESSORYINFOTYPE_MASK_NAME |
                       ipod::IPOD_ACCESSORYINFOTYPE_MASK_ACCESSORYFIRMWARE |
                       ipod::IPOD_ACCESSORYINFOTYPE_MASK_ACCESSORYHARDWARE |
                       ipod::IPOD_ACCESSORYINFOTYPE_MASK_ACCESSORYMFG |
                       ipod::IPOD_ACCESSORYINFOTYPE_MASK_ACCESSORYMODELNUM;
  EXPECT_EQ(answered, 0xF3);
}

}  // namespace
