// SPDX-License-Identifier: MIT
// What the command line asks for.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "apart.h"
#include "deviations.h"
#include "scenario.h"

namespace reliability {

enum class Strategy { kChangePoints, kUniform };

struct Options {
  std::string command;
  std::uint64_t runs = 1000;
  std::uint64_t seed = 1;
  std::optional<unsigned> minutes;  // runs until then instead
  Strategy strategy = Strategy::kChangePoints;
  unsigned depth = 3;
  unsigned points = 500;
  unsigned pauses = 0;  // before one service call in so many a thread loses its processor; 0: never
  unsigned first = 0;   // of each kind of fault so many places; 0: all there are
  unsigned every = 1;   // of them each so manieth
  std::uint64_t at = 0;  // one place alone
  std::string service;
  unsigned long code = 0;
  std::optional<bool> for_ever_only;
  std::string action;
  unsigned most = 0;    // ends when so many ways have found something; 0: tries all
  bool shorten = true;  // the schedule that fails
  std::vector<const Scenario*> scenarios;  // all unless named
  std::optional<Deviations> replay;
};

/// Prints what is wrong with the command line, or the help, and returns the program's status then.
std::optional<int> ReadOptions(int count, char** arguments, Options* options);

/// The places that --first, --every and --at leave.
Places PlacesOf(const Options& options);

/// Whether --most ways have found something.
inline bool IsEnough(const Options& options, unsigned found) {
  return options.most != 0 && found >= options.most;
}

const char* StrategyName(Strategy strategy);

}  // namespace reliability
