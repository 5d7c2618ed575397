// SPDX-License-Identifier: MIT
// The table of troubles.
#include "trouble.h"

#include "simulator/settings/habits.h"

namespace truth {

namespace {

using ipodsim::Fault;
using ipodsim::Settings;

constexpr bool kOnce = true;
constexpr bool kOften = false;
constexpr bool kFatal = false;

const std::vector<Trouble>& Meddlings() {
  static const std::vector<Trouble> kAll = {
      {"none"},
      {"late", Meddling::kLate},
      {"held-up", Meddling::kHeldUp},
      {"doubled", Meddling::kDoubled},
      {"repeated", Meddling::kRepeated},
      {"swapped", Meddling::kSwapped},
      {"missing", Meddling::kMissing},
      {"cut", Meddling::kCut},
      {"broken", Meddling::kBroken},
      {"junk", Meddling::kJunk},
      {"dropped-byte", Meddling::kDroppedByte},
      {"doubled-byte", Meddling::kDoubledByte},
      {"flipped-bit", Meddling::kFlippedBit},
      {"notification", Meddling::kNotification},
      {"state-change", Meddling::kStateChange},
      {"lost", Meddling::kLost},
      {"refused", Meddling::kRefused, kOnce, kFatal},
      {"refused-always", Meddling::kRefusedAlways, kOnce, kFatal},
      {"pending", Meddling::kPending},
      {"question", Meddling::kQuestion},
      {"interrupt", Meddling::kInterrupt, kOnce, kFatal},
      {"restart", Meddling::kRestart, kOnce, kFatal},
      {"hang-up", Meddling::kHangUp, kOnce, kFatal},
      {"loopback", Meddling::kLoopback, kOnce, kFatal},
      {"slow", Meddling::kSlow, kOften},
      {"often-late", Meddling::kLate, kOften},
      {"often-doubled", Meddling::kDoubled, kOften},
      {"often-repeated", Meddling::kRepeated, kOften},
      {"often-swapped", Meddling::kSwapped, kOften},
      {"often-missing", Meddling::kMissing, kOften},
      {"often-cut", Meddling::kCut, kOften},
      {"often-asked", Meddling::kQuestion, kOften},
      {"often-notified", Meddling::kNotification, kOften},
      {"often-refused", Meddling::kRefused, kOften, kFatal},
      {"often-pending", Meddling::kPending, kOften},
      {"dropped-bytes", Meddling::kDroppedByte, kOften},
      {"doubled-bytes", Meddling::kDoubledByte, kOften},
      {"flipped-bits", Meddling::kFlippedBit, kOften},
  };
  return kAll;
}

// What damages bytes is left to the dock, which knows when the checksum holds all the same.
bool IsLeftToTheDock(Fault fault) {
  return fault == Fault::kDroppedBytes || fault == Fault::kDoubledBytes ||
         fault == Fault::kFlippedBits;
}

bool IsFatal(Fault fault) {
  return fault == Fault::kRefusedCommands || fault == Fault::kUnplug || fault == Fault::kRestart ||
         fault == Fault::kHangUp;
}

// Habits of iPods with which nothing can be done about a command that is refused.
bool IsRefusing(const std::string& habit) {
  for (const char* name :
       {"no-name", "few-facts", "no-track-info", "authentication", "stays-paused"}) {
    if (habit == name) return true;
  }
  return false;
}

}  // namespace

const std::vector<Trouble>& AllTroubles() {
  static const std::vector<Trouble> kAll = [] {
    std::vector<Trouble> all = Meddlings();
    for (const ipodsim::FaultInfo& info : ipodsim::Faults::All()) {
      if (IsLeftToTheDock(info.fault)) continue;
      all.push_back({std::string("sim-") + info.name, Meddling::kNone, kOften, !IsFatal(info.fault),
                     [fault = info.fault](Settings& settings) { settings.faults.Enable(fault); }});
    }
    for (const ipodsim::Habit& habit : ipodsim::AllHabits()) {
      all.push_back({habit.name, Meddling::kNone, kOnce, !IsRefusing(habit.name),
                     [&habit](Settings& settings) { habit.apply(&settings); }});
    }
    return all;
  }();
  return kAll;
}

const Trouble* TroubleByName(const std::string& name) {
  for (const Trouble& trouble : AllTroubles()) {
    if (name == trouble.name) return &trouble;
  }
  return nullptr;
}

}  // namespace truth
