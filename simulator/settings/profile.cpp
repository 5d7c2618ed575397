// SPDX-License-Identifier: MIT
// The table of iPods.

#include "profile.h"

#include "simulator/protocol/commands.h"

namespace ipodsim {

const LingoSupport* Traits::Lingo(std::uint8_t lingo) const {
  for (const LingoSupport& support : lingoes) {
    if (support.lingo == lingo) return &support;
  }
  return nullptr;
}

namespace {

// Bits of a lingo's options. Bit 0x01 stands for services that no accessory here asks for.
constexpr std::uint8_t kOtherServices = 0x01;
constexpr std::uint8_t kGeneralPreferences = 0x02;
constexpr std::uint8_t kTrackInformation = 0x02;  // of the database, in the Extended Interface
constexpr std::uint8_t kWorkouts = 0x02;          // in Sports

Traits Nano() {
  Traits nano;
  nano.profile = Profile::kNano;
  nano.name = "nano";
  nano.description = "token identification, Sports and Storage";
  nano.identifies_by_tokens = true;
  nano.knows_options = true;
  nano.knows_wide_notification = true;
  nano.knows_ui_mode = true;
  nano.model_id = 0x00140000;
  nano.model_number = "MB598LL";
  nano.serial_number = "5U8250SIM01";
  nano.software = {1, 0, 4};
  nano.lingoes = {{kGeneral, {1, 9}, kOtherServices | kGeneralPreferences},
                  {kSimpleRemote, {1, 2}, 0},
                  {kDisplayRemote, {1, 5}, 0},
                  {kExtended, {1, 14}, kOtherServices | kTrackInformation},
                  {kSports, {1, 1}, kWorkouts},
                  {kStorage, {1, 2}, 0}};
  return nano;
}

Traits Classic() {
  Traits classic;
  classic.profile = Profile::kClassic;
  classic.name = "classic";
  classic.description = "no token identification";
  classic.knows_wide_notification = true;
  classic.knows_ui_mode = true;
  classic.model_id = 0x00130100;
  classic.model_number = "MB029LL";
  classic.serial_number = "8K7420SIM02";
  classic.software = {2, 0, 1};
  classic.lingoes = {{kGeneral, {1, 6}, 0},        {kSimpleRemote, {1, 2}, 0},
                     {kDisplayRemote, {1, 5}, 0},  {kExtended, {1, 12}, 0},
                     {kSports, {1, 1}, kWorkouts}, {kStorage, {1, 2}, 0}};
  return classic;
}

Traits Old() {
  Traits old;
  old.profile = Profile::kOld;
  old.name = "old";
  old.description = "lingo versions from before what an accessory needs";
  old.model_id = 0x00030000;
  old.model_number = "M9160LL";
  old.serial_number = "JQ4310SIM03";
  old.software = {2, 0, 0};
  old.lingoes = {{kGeneral, {1, 1}, 0},
                 {kSimpleRemote, {1, 0}, 0},
                 {kDisplayRemote, {1, 0}, 0},
                 {kExtended, {1, 7}, 0}};
  return old;
}

Traits NoSports() {
  Traits without = Nano();
  without.profile = Profile::kNoSports;
  without.name = "nosports";
  without.description = "token identification, neither Sports nor Storage";
  without.model_id = 0x00150000;
  without.model_number = "MB147LL";
  without.serial_number = "9C8410SIM04";
  without.software = {1, 1, 2};
  without.lingoes.resize(4);  // General, the remotes and the Extended Interface
  return without;
}

// Never asked for any of its facts, since it does not answer; they are those of a nano.
Traits Silent() {
  Traits silent = Nano();
  silent.profile = Profile::kSilent;
  silent.name = "silent";
  silent.description = "takes everything and never answers";
  silent.answers = false;
  return silent;
}

Traits Strict() {
  Traits strict = Nano();
  strict.profile = Profile::kStrict;
  strict.name = "strict";
  strict.description = "a nano that wants a transaction identifier from the first frame on";
  strict.wants_identifiers = true;
  strict.serial_number = "5U8250SIM05";
  return strict;
}

Traits Echo() {
  Traits echo = Silent();
  echo.profile = Profile::kEcho;
  echo.name = "echo";
  echo.description = "no iPod, but a line that is wired back to itself";
  echo.echoes = true;
  return echo;
}

}  // namespace

const std::vector<Traits>& AllProfiles() {
  static const std::vector<Traits> kAll = {Nano(),   Classic(), Old(), NoSports(),
                                           Silent(), Strict(),  Echo()};
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
