// SPDX-License-Identifier: MIT
// The table of iPods.

#include "profile.h"

namespace ipodsim {

const LingoSupport* Traits::Lingo(std::uint8_t lingo) const {
  for (const LingoSupport& support : lingoes) {
    if (support.lingo == lingo) return &support;
  }
  return nullptr;
}

const std::vector<Traits>& AllProfiles() {
  // General, Simple Remote, Display Remote, Extended Interface, Sports, Storage. Bit 0x02 in the
  // options of the Extended Interface is the track information of the database, in those of Sports
  // the workout services.
  static const std::vector<LingoSupport> kFull = {
      {0x00, {1, 9}, 0x03},  {0x02, {1, 2}, 0x00}, {0x03, {1, 5}, 0x00},
      {0x04, {1, 14}, 0x03}, {0x09, {1, 1}, 0x02}, {0x0C, {1, 2}, 0x00},
  };
  static const std::vector<LingoSupport> kWithoutSports = {
      {0x00, {1, 9}, 0x03}, {0x02, {1, 2}, 0x00}, {0x03, {1, 5}, 0x00}, {0x04, {1, 14}, 0x03}};
  static const std::vector<LingoSupport> kClassic = {{0x00, {1, 6}, 0x00}, {0x02, {1, 2}, 0x00},
                                                     {0x03, {1, 5}, 0x00}, {0x04, {1, 12}, 0x00},
                                                     {0x09, {1, 1}, 0x02}, {0x0C, {1, 2}, 0x00}};
  static const std::vector<LingoSupport> kOld = {
      {0x00, {1, 1}, 0x00}, {0x02, {1, 0}, 0x00}, {0x03, {1, 0}, 0x00}, {0x04, {1, 7}, 0x00}};
  static const std::vector<Traits> kAll = {
      {Profile::kNano,
       "nano",
       "token identification, Sports and Storage",
       true,
       true,
       true,
       true,
       true,
       0x00140000,
       "MB598LL",
       "5U8250SIM01",
       {1, 0, 4},
       kFull},
      {Profile::kClassic,
       "classic",
       "no token identification",
       false,
       false,
       true,
       true,
       true,
       0x00130100,
       "MB029LL",
       "8K7420SIM02",
       {2, 0, 1},
       kClassic},
      {Profile::kOld,
       "old",
       "lingo versions from before what an accessory needs",
       false,
       false,
       false,
       false,
       true,
       0x00030000,
       "M9160LL",
       "JQ4310SIM03",
       {2, 0, 0},
       kOld},
      {Profile::kNoSports,
       "nosports",
       "token identification, neither Sports nor Storage",
       true,
       true,
       true,
       true,
       true,
       0x00150000,
       "MB147LL",
       "9C8410SIM04",
       {1, 1, 2},
       kWithoutSports},
      {Profile::kSilent,
       "silent",
       "takes everything and never answers",
       false,
       false,
       false,
       false,
       false,
       0x00140000,
       "MB598LL",
       "5U8250SIM05",
       {1, 0, 4},
       kFull},
  };
  return kAll;
}

const Traits& TraitsOf(Profile profile) {
  for (const Traits& traits : AllProfiles()) {
    if (traits.profile == profile) return traits;
  }
  return AllProfiles().front();
}

std::optional<Profile> ProfileByName(std::string_view name) {
  for (const Traits& traits : AllProfiles()) {
    if (name == traits.name) return traits.profile;
  }
  return std::nullopt;
}

}  // namespace ipodsim
