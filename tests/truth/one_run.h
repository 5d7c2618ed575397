// SPDX-License-Identifier: MIT
// One run: a command against a simulated iPod in a virtual world.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "dock.h"
#include "scenes.h"
#include "wire/findings/finding.h"

namespace truth {

/// What a user of the command saw.
struct Outcome {
  int status = -1;
  std::string out;      // standard output, JSON
  std::string message;  // the sentence of a failure
  double seconds = 0;   // virtual
  bool deadlocked = false;
};

struct Finished {
  Outcome outcome;
  Account account;
  std::vector<ipodwire::Finding> findings;  // of what went over the line
};

/// Runs ipodctl on the present world's line, with the program's own arguments.
Outcome RunProgram(const std::vector<std::string>& arguments);

/// Runs the command, and has `look` look at the iPod as the command left it.
/// @param trace whether every frame is told on standard error
Finished Run(const Case& run, bool trace,
             const std::function<void(const Finished&, const ipodsim::SimulatedIpod&,
                                      std::int64_t now_us)>& look);

}  // namespace truth
