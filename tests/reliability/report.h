// SPDX-License-Identifier: MIT
// What a command prints at its end: the figure, the seed, the time and the rate.
#pragma once

#include <chrono>
#include <string>

#include "apart.h"

namespace reliability {

class Report {
 public:
  Report();
  /// Prints the figure of a command that has found nothing. @return the program's status
  int Passed(const std::string& what, std::uint64_t count, std::uint64_t seed) const;
  /// Passed, of as many runs as were made, when `found` is 0; else prints how many of the ways that
  /// were tried found something. @return the program's status
  int Ended(const std::string& what, unsigned found, std::uint64_t seed) const;
  /// Prints when something was found.
  void Found(std::uint64_t runs) const;
  /// Prints what was found and the command that repeats it.
  int Failed(const std::string& where, const std::string& wrong, const std::string& repeat) const;
  double seconds() const;

 private:
  double ProcessorSeconds() const;

  const std::chrono::steady_clock::time_point began_ = std::chrono::steady_clock::now();
  const double used_before_s_;
};

/// This program, as it was called.
const std::string& ProgramName();
void SetProgramName(const char* name);

}  // namespace reliability
