// SPDX-License-Identifier: MIT
// What can go wrong on the iPod's side and on the line from it, one named switch each.

#pragma once

#include <array>
#include <bitset>
#include <cstdint>
#include <map>
#include <optional>
#include <string_view>
#include <utility>
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
  kLateAnswers,
  kDoubledAnswers,
  kShuffledAnswers,
  kMissingAnswers,
  kRestart,
  kHangUp,
};
constexpr std::size_t kFaultCount = 18;

struct FaultInfo {
  Fault fault;
  const char* name;
  const char* description;
};

/// A fault of the iPod, not of the line, that strikes at a certain command rather than by the dice.
struct PlannedFault {
  Fault fault;
  std::uint8_t lingo;
  std::uint16_t command;
  std::uint32_t nth = 1;     // of the accessory's frames with this command, from 1; 0 for every one
  std::uint32_t answer = 1;  // of the answers to it, from 1; 0 for each
};

/// What the iPod says when it speaks out of turn.
enum class Interjection : std::uint8_t {
  kAsksInformation,  // RequestAccessoryInfo: what information there is
  kAsksName,         // RequestAccessoryInfo: the accessory's name
  kAsksSports,       // the capabilities in the Sports lingo
  kAsksStorage,      // and in the Storage lingo
  kNotifies,         // nothing that wants an answer
};
constexpr std::uint32_t kInterjectionCount = 5;

/// The faults that are switched on, and how often they strike.
class Faults {
 public:
  static const std::array<FaultInfo, kFaultCount>& All();

  /// False when there is no fault of this name.
  bool Enable(std::string_view name);
  void Enable(Fault fault) { enabled_.set(static_cast<std::size_t>(fault)); }
  bool Has(Fault fault) const { return enabled_.test(static_cast<std::size_t>(fault)); }
  bool Any() const { return enabled_.any(); }
  /// A plan works besides what is switched on, and whether that is.
  void Plan(const PlannedFault& planned) { plans_.push_back(planned); }
  const std::vector<PlannedFault>& plans() const { return plans_; }
  /// Whether it may ever strike.
  bool MayStrike(Fault fault) const;

  /// A fault strikes once, at a drawn place, in every run of this many opportunities.
  std::uint32_t one_in = 8;
  /// The cable is pulled, the iPod restarts or the line goes dead after so many frames from the
  /// accessory, when given; else drawn.
  std::optional<std::uint32_t> unplug_after;
  Microseconds unplugged_for = 2 * kSecond;  // and so long takes a restart
  /// How late a late answer is, when given; else drawn.
  std::optional<Microseconds> late_by;
  /// What is said out of turn, when given; else drawn.
  std::optional<Interjection> interjection;

 private:
  std::vector<PlannedFault> plans_;
  std::bitset<kFaultCount> enabled_;
};

/// Decides, from the plans and else from the seed alone, when each fault strikes.
class FaultDice {
 public:
  FaultDice(const Faults& faults, std::uint64_t seed);

  /// A frame of the accessory came: what is planned for it strikes from here on.
  void NoticeFrame(std::uint8_t lingo, std::uint16_t command);
  /// One of the answers to that frame is on.
  void NoticeAnswer() { ++answers_; }
  bool Strikes(Fault fault);
  /// Whether it is planned for this frame, whichever of its answers is on.
  bool IsPlanned(Fault fault) const;
  /// For the choices of a fault that struck (which byte, which bit, how long).
  Random& Choices(Fault fault) { return streams_[static_cast<std::size_t>(fault)]; }

 private:
  struct Run {
    std::uint32_t left = 0;
    std::uint32_t strike_when_left = 0;
  };

  bool IsDrawn(Fault fault);
  bool IsFor(const PlannedFault& plan) const;

  const Faults faults_;
  std::vector<Random> streams_;
  std::array<Run, kFaultCount> runs_{};
  std::map<std::pair<std::uint8_t, std::uint16_t>, std::uint32_t> frames_;  // by lingo and command
  std::pair<std::uint8_t, std::uint16_t> current_;
  std::uint32_t answers_ = 0;  // to the current frame
};

}  // namespace ipodsim
