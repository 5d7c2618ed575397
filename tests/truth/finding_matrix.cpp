// SPDX-License-Identifier: MIT
#include "finding_matrix.h"

#include <cstdio>

namespace truth {

namespace {

constexpr double kGoal = 95;
const char* const kNone = "none";

}  // namespace

double Percent(unsigned part, unsigned whole) {
  return whole == 0 ? 0 : 100.0 * part / static_cast<double>(whole);
}

void FindingMatrix::Take(const Report& report, bool shows_unnamed) {
  const std::string first = report.findings.empty() ? kNone : report.findings.front();
  for (Row* row : {&rows_[report.run.trouble->name], &all_}) {
    ++row->first[first];
    ++row->runs;
    if (report.has_a_name) ++row->to_name;
    if (report.has_a_name && report.named) ++row->named;
    if (!report.not_proved.empty()) ++row->wrong;
  }
  const bool unnamed = report.has_a_name && !report.named;
  if (report.not_proved.empty() && !(unnamed && shows_unnamed)) return;
  std::printf("%s\n  script/truth --only %s\n",
              report.not_proved.empty() ? "NOT NAMED" : ("WRONG: " + report.not_proved).c_str(),
              report.run.name().c_str());
  std::fflush(stdout);
}

void FindingMatrix::Print() const {
  std::printf("\nThe most important finding of each run, by trouble:\n\n%-20s", "");
  for (const auto& column : all_.first) std::printf("%6s", column.first.c_str());
  std::printf("%8s%8s%7s\n", "to name", "named", "wrong");
  for (const Trouble& trouble : AllTroubles()) {
    const auto row = rows_.find(trouble.name);
    if (row == rows_.end()) continue;
    std::printf("%-20s", trouble.name.c_str());
    for (const auto& column : all_.first) {
      const auto cell = row->second.first.find(column.first);
      std::printf("%6s",
                  cell == row->second.first.end() ? "." : std::to_string(cell->second).c_str());
    }
    std::printf("%8u%8u%7u\n", row->second.to_name, row->second.named, row->second.wrong);
  }
  std::printf("\n%u runs: %u with something proved that was not the case\n", all_.runs, all_.wrong);
  std::printf("troubles named: %.1f %% of %u (goal %.0f)\n", Percent(all_.named, all_.to_name),
              all_.to_name, kGoal);
}

bool FindingMatrix::Good() const {
  return all_.wrong == 0 && (all_.to_name == 0 || Percent(all_.named, all_.to_name) >= kGoal);
}

}  // namespace truth
