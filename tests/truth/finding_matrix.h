// SPDX-License-Identifier: MIT
// Which troubles are found out as what.
#pragma once

#include <map>
#include <string>

#include "children.h"

namespace truth {

/// 0 of nothing.
double Percent(unsigned part, unsigned whole);

/// Counts, for each trouble, the most important finding of each run.
class FindingMatrix {
 public:
  /// Prints a run in which something is said to be proved that is not the case, and, where asked
  /// for, one whose trouble is not named.
  void Take(const Report& report, bool shows_unnamed);
  void Print() const;
  /// Whether nothing was wrong, and nearly everything named.
  bool Good() const;

 private:
  struct Row {
    std::map<std::string, unsigned> first;  // runs by the code of their first finding
    unsigned runs = 0;
    unsigned to_name = 0;
    unsigned named = 0;
    unsigned wrong = 0;
  };

  std::map<std::string, Row> rows_;  // by trouble
  Row all_;
};

}  // namespace truth
