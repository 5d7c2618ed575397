// SPDX-License-Identifier: MIT
// The table of faults, and the dice that say when each strikes.

#include "ipod_faults.h"

#include <algorithm>

namespace ipodsim {

const std::array<FaultInfo, kFaultCount>& Faults::All() {
  static const std::array<FaultInfo, kFaultCount> kAll = {{
      {Fault::kDroppedBytes, "dropped-bytes", "a byte of a frame is lost"},
      {Fault::kDoubledBytes, "doubled-bytes", "a byte of a frame comes twice"},
      {Fault::kFlippedBits, "flipped-bits", "a bit of a frame is wrong"},
      {Fault::kLateBytes, "late-bytes", "a frame stops for up to 1.5 s in its middle"},
      {Fault::kSplitBytes, "split-bytes", "a frame comes byte by byte with pauses"},
      {Fault::kJunk, "junk", "bytes that belong to no frame come before one"},
      {Fault::kRefusedCommands, "refused-commands", "a command is refused and not carried out"},
      {Fault::kPendingAcks, "pending-acks", "an acknowledgement says that the answer comes later"},
      {Fault::kShortReplies, "short-replies", "an answer is cut short inside a good frame"},
      {Fault::kLongReplies, "long-replies", "an answer carries more bytes than it should"},
      {Fault::kUnaskedRequests, "unasked-requests",
       "the iPod asks for something in the middle of an exchange"},
      {Fault::kUnplug, "unplug", "the iPod is pulled from the dock and put back"},
      {Fault::kLateAnswers, "late-answers", "an answer, and what follows it, is up to 1.7 s late"},
      {Fault::kDoubledAnswers, "doubled-answers", "an answer comes twice"},
      {Fault::kShuffledAnswers, "shuffled-answers", "an answer comes only after the next one"},
      {Fault::kMissingAnswers, "missing-answers", "an answer does not come"},
      {Fault::kRestart, "restart", "the iPod restarts in the dock and forgets the accessory"},
      {Fault::kHangUp, "hang-up", "the iPod is pulled from the dock for good"},
  }};
  return kAll;
}

bool Faults::Enable(std::string_view name) {
  for (const FaultInfo& info : All()) {
    if (name == info.name) {
      Enable(info.fault);
      return true;
    }
  }
  return false;
}

bool Faults::MayStrike(Fault fault) const {
  return Has(fault) || std::any_of(plans_.begin(), plans_.end(),
                                   [fault](const auto& plan) { return plan.fault == fault; });
}

FaultDice::FaultDice(const Faults& faults, std::uint64_t seed) : faults_(faults) {
  for (std::size_t i = 0; i < kFaultCount; ++i) streams_.emplace_back(seed, 100 + i);
}

void FaultDice::NoticeFrame(std::uint8_t lingo, std::uint16_t command) {
  current_ = {lingo, command};
  ++frames_[current_];
  answers_ = 0;
}

bool FaultDice::Strikes(Fault fault) {
  const bool drawn = IsDrawn(fault);
  return drawn ||
         std::any_of(faults_.plans().begin(), faults_.plans().end(), [&](const auto& plan) {
           const bool here = answers_ == 0 || plan.answer == 0 || plan.answer == answers_;
           return plan.fault == fault && here && IsFor(plan);
         });
}

bool FaultDice::IsPlanned(Fault fault) const {
  return std::any_of(faults_.plans().begin(), faults_.plans().end(),
                     [&](const auto& plan) { return plan.fault == fault && IsFor(plan); });
}

// Whether the current frame is the one that it is planned for.
bool FaultDice::IsFor(const PlannedFault& plan) const {
  if (std::pair{plan.lingo, plan.command} != current_) return false;
  return plan.nth == 0 || plan.nth == frames_.at(current_);
}

bool FaultDice::IsDrawn(Fault fault) {
  if (!faults_.Has(fault)) return false;
  Run& run = runs_[static_cast<std::size_t>(fault)];
  if (run.left == 0) {
    run.left = faults_.one_in == 0 ? 1 : faults_.one_in;
    run.strike_when_left = 1 + Choices(fault).Below(run.left);
  }
  return run.left-- == run.strike_when_left;
}

}  // namespace ipodsim
