// SPDX-License-Identifier: MIT
// Many runs, and the figures of them.
#pragma once

#include <array>
#include <map>
#include <string>
#include <vector>

#include "children.h"
#include "finding_matrix.h"

namespace truth {

struct SurveyOptions {
  std::uint64_t runs = 0;
  std::uint64_t seed = 1;
  unsigned jobs = 2;
  std::string scene;    // empty: all
  std::string trouble;  // empty: all
  bool shows_honest = false;
  bool findings = false;  // what they are instead of whether the commands told the truth
};

class Survey {
 public:
  explicit Survey(SurveyOptions options) : options_(std::move(options)) {}

  /// Prints each bad run as it comes, and the figures at the end. False when there was a bad one,
  /// or a figure is not reached.
  bool Run();

 private:
  using Figures = std::array<unsigned, kVerdicts>;
  struct Untroubled {
    unsigned requests = 0;
    unsigned answers = 0;
    bool right = false;  // an iPod without Sports takes no workout even so
  };

  std::vector<Case> Choose() const;
  void MeasureUntroubled(const std::vector<Case>& runs);
  void Take(const Report& report);
  void PrintTable() const;
  void PrintTotals() const;

  SurveyOptions options_;
  std::map<std::string, Untroubled> untroubled_;  // by scene, profile and conduct
  std::map<std::string, Figures> by_trouble_;
  FindingMatrix findings_;
  Figures all_{};
  // Where one trouble struck, which need not spoil a result that is right without it.
  Figures curable_{};
};

/// Runs one alone and tells all about it. @return the exit status: 1 for a bad one
int Repeat(const std::string& name);

}  // namespace truth
