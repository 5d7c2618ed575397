// SPDX-License-Identifier: MIT
// Holds what a command said against what is true of the iPod.
//
// The truth is the simulated iPod's own: its library, its player, its preferences, its files. None
// of the library's code is asked.
#pragma once

#include <string>

#include "one_run.h"

namespace truth {

enum class Verdict {
  kRight,       // the result is true and whole
  kHonest,      // it failed, and said nothing untrue
  kLie,         // it ended with 0, and the result is wrong or not whole
  kFalseCause,  // it failed, and gave a cause that is not the case
  kHang,        // it did not end, or far too late
  kCollision,   // it was wrong, but a damaged frame's checksum held
};
constexpr std::size_t kVerdicts = 6;

const char* NameOf(Verdict verdict);
inline bool IsBad(Verdict verdict) {
  return verdict == Verdict::kLie || verdict == Verdict::kFalseCause || verdict == Verdict::kHang;
}

struct Judgement {
  Verdict verdict = Verdict::kRight;
  std::string why;  // of anything but a right result
};

/// @param ipod as the command left it
Judgement Judge(const Case& run, const Finished& finished, const ipodsim::SimulatedIpod& ipod,
                std::int64_t now_us);

/// Whether the iPod said that it does not know a lingo, which may stand for being too old for it.
bool KnowsNoSuchLingo(const Account& account);

/// What is untrue or missing in the output of a command that ended with 0; empty when nothing is.
std::string WhatIsUntrue(const Case& run, const std::string& out, const Account& account,
                         const ipodsim::SimulatedIpod& ipod, std::int64_t now_us);

/// What is untrue in the output of a command that was interrupted; much may be missing.
std::string WhatIsUntrueSoFar(const Case& run, const std::string& out, const Account& account,
                              const ipodsim::SimulatedIpod& ipod, std::int64_t now_us);

/// What is untrue in the sentence with which a command failed; empty when nothing is.
std::string WhatIsNotTheCause(const Case& run, const Outcome& outcome, const Account& account,
                              const ipodsim::SimulatedIpod& ipod);

}  // namespace truth
