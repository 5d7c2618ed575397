// SPDX-License-Identifier: MIT
// What can go wrong on the iPod's side and on the line from it, one named switch each.

#pragma once

#include <array>
#include <bitset>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "simulator/base/clock.h"
#include "simulator/base/random.h"

namespace ipodsim {

enum class Fault {
  kDroppedBytes,
  kDoubledBytes,
  kFlippedBits,
  kLateBytes,
  kSplitBytes,
  kJunk,
  kRefusedCommands,
  kPendingAcks,
  kShortReplies,
  kLongReplies,
  kUnaskedRequests,
  kUnplug,
};
constexpr std::size_t kFaultCount = 12;

struct FaultInfo {
  Fault fault;
  const char* name;
  const char* description;
};

/// The faults that are switched on, and how often they strike.
class Faults {
 public:
  static const std::array<FaultInfo, kFaultCount>& All();

  /// False when there is no fault of this name.
  bool Enable(std::string_view name);
  void Enable(Fault fault) { enabled_.set(static_cast<std::size_t>(fault)); }
  bool Has(Fault fault) const { return enabled_.test(static_cast<std::size_t>(fault)); }
  bool Any() const { return enabled_.any(); }

  /// A fault strikes once, at a drawn place, in every run of this many opportunities.
  std::uint32_t one_in = 8;
  /// The cable is pulled after so many frames from the accessory, when given; else drawn.
  std::optional<std::uint32_t> unplug_after;
  Microseconds unplugged_for = 2 * kSecond;

 private:
  std::bitset<kFaultCount> enabled_;
};

/// Decides, from the seed alone, when each fault strikes.
class FaultDice {
 public:
  FaultDice(const Faults& faults, std::uint64_t seed);

  bool Strikes(Fault fault);
  /// For the choices of a fault that struck (which byte, which bit, how long).
  Random& Choices(Fault fault) { return streams_[static_cast<std::size_t>(fault)]; }

 private:
  struct Run {
    std::uint32_t left = 0;
    std::uint32_t strike_when_left = 0;
  };

  const Faults faults_;
  std::vector<Random> streams_;
  std::array<Run, kFaultCount> runs_{};
};

}  // namespace ipodsim
