// SPDX-License-Identifier: MIT
// The table of faults, and the dice that say when each strikes.

#include "ipod_faults.h"

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

FaultDice::FaultDice(const Faults& faults, std::uint64_t seed) : faults_(faults) {
  for (std::size_t i = 0; i < kFaultCount; ++i) streams_.emplace_back(seed, 100 + i);
}

bool FaultDice::Strikes(Fault fault) {
  if (!faults_.Has(fault)) return false;
  Run& run = runs_[static_cast<std::size_t>(fault)];
  if (run.left == 0) {
    run.left = faults_.one_in == 0 ? 1 : faults_.one_in;
    run.strike_when_left = 1 + Choices(fault).Below(run.left);
  }
  return run.left-- == run.strike_when_left;
}

}  // namespace ipodsim
