// SPDX-License-Identifier: MIT
// Runs in processes of their own: one that crashes or never ends takes nothing along.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "judge.h"

namespace truth {

/// What became of a run.
struct Report {
  Case run;
  Judgement judgement;
  double seconds = 0;  // virtual
  unsigned requests = 0;
  unsigned answers = 0;
  bool struck = false;
  bool has_a_name = false;            // what went wrong
  bool named = false;                 // by one of the findings
  std::vector<std::string> findings;  // their codes, the most important first
  std::string not_proved;             // what is said to be, in words
};

/// Runs and judges it here. One per process.
Report RunHere(const Case& run, bool trace);

/// Runs and judges all, `at_a_time` of them, and hands out each report as it comes.
void RunInChildren(const std::vector<Case>& runs, unsigned at_a_time,
                   const std::function<void(const Report&)>& take);

}  // namespace truth
