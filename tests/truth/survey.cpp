// SPDX-License-Identifier: MIT
// Chooses runs, and counts what became of them.
#include "survey.h"

#include <cstdio>
#include <numeric>

namespace truth {

namespace {

std::string KindOf(const Case& run) {
  return std::string(run.scene->name) + "/" + ipodsim::TraitsOf(run.profile).name + "/" +
         run.conduct;
}

unsigned Sum(const std::array<unsigned, kVerdicts>& figures) {
  return std::accumulate(figures.begin(), figures.end(), 0U);
}

unsigned Count(const std::array<unsigned, kVerdicts>& figures, Verdict verdict) {
  return figures[static_cast<std::size_t>(verdict)];
}

void PrintReport(const Report& report) {
  std::printf("%s: %s\n  script/truth --only %s\n", NameOf(report.judgement.verdict),
              report.judgement.why.c_str(), report.run.name().c_str());
  std::fflush(stdout);
}

}  // namespace

bool Survey::Run() {
  std::vector<Case> runs = Choose();
  MeasureUntroubled(runs);
  for (Case& run : runs) {
    const Untroubled& untroubled = untroubled_[KindOf(run)];
    run.place = DrawPlace(run, untroubled.requests, untroubled.answers);
  }
  RunInChildren(runs, options_.jobs, [this](const Report& report) { Take(report); });
  if (options_.findings) {
    findings_.Print();
    return findings_.Good();
  }
  PrintTable();
  PrintTotals();
  return Count(all_, Verdict::kLie) + Count(all_, Verdict::kFalseCause) +
             Count(all_, Verdict::kHang) ==
         0;
}

std::vector<Case> Survey::Choose() const {
  std::vector<Case> runs;
  for (std::uint64_t number = 0; runs.size() < options_.runs; ++number) {
    const Case run = CaseByNumber(number, options_.seed);
    if (!options_.scene.empty() && options_.scene != run.scene->name) continue;
    if (!options_.trouble.empty() && options_.trouble != run.trouble->name) continue;
    runs.push_back(run);
  }
  return runs;
}

// Also the runs where nothing goes wrong, each once: they are all right.
void Survey::MeasureUntroubled(const std::vector<Case>& runs) {
  std::map<std::string, Case> kinds;
  for (const Case& run : runs) {
    Case untroubled = run;
    untroubled.trouble = TroubleByName("none");
    kinds.emplace(KindOf(run), untroubled);
  }
  std::vector<Case> all;
  for (const auto& kind : kinds) all.push_back(kind.second);
  RunInChildren(all, options_.jobs, [this](const Report& report) {
    untroubled_[KindOf(report.run)] = {report.requests, report.answers,
                                       report.judgement.verdict == Verdict::kRight};
    Take(report);
  });
}

void Survey::Take(const Report& report) {
  if (options_.findings) {
    findings_.Take(report, options_.shows_honest);
    return;
  }
  const auto verdict = static_cast<std::size_t>(report.judgement.verdict);
  const Trouble& trouble = *report.run.trouble;
  ++all_[verdict];
  ++by_trouble_[trouble.name][verdict];
  const bool troubled = trouble.once && trouble.curable && trouble.name != "none";
  if (troubled && untroubled_[KindOf(report.run)].right) ++curable_[verdict];
  const bool shown = IsBad(report.judgement.verdict) ||
                     (options_.shows_honest && report.judgement.verdict != Verdict::kRight);
  if (shown) PrintReport(report);
}

void Survey::PrintTable() const {
  std::printf("\n%-20s%8s%8s%8s%8s%8s%8s%8s\n", "trouble", "runs", "right", "honest", "lies",
              "false", "hangs", "checks.");
  for (const Trouble& trouble : AllTroubles()) {
    const auto found = by_trouble_.find(trouble.name);
    if (found == by_trouble_.end()) continue;
    std::printf("%-20s%8u", trouble.name.c_str(), Sum(found->second));
    for (const unsigned figure : found->second) std::printf("%8u", figure);
    std::printf("\n");
  }
}

void Survey::PrintTotals() const {
  std::printf(
      "\n%u runs: %u right, %u honest failures, %u lies, %u false causes, %u hangs, "
      "%u where a damaged frame's checksum held\n",
      Sum(all_), Count(all_, Verdict::kRight), Count(all_, Verdict::kHonest),
      Count(all_, Verdict::kLie), Count(all_, Verdict::kFalseCause), Count(all_, Verdict::kHang),
      Count(all_, Verdict::kCollision));
  std::printf("right under one trouble that need not spoil the result: %.1f %% of %u (goal 95)\n",
              Percent(Count(curable_, Verdict::kRight), Sum(curable_)), Sum(curable_));
}

int Repeat(const std::string& name) {
  const std::optional<Case> run = CaseByName(name);
  if (!run) {
    std::fprintf(stderr, "truth: there is no run '%s'\n", name.c_str());
    return 64;
  }
  const Report report = RunHere(*run, true);
  std::printf("%s%s%s  (%.1f s, %u requests, %u answers)\n", NameOf(report.judgement.verdict),
              report.judgement.why.empty() ? "" : ": ", report.judgement.why.c_str(),
              report.seconds, report.requests, report.answers);
  return IsBad(report.judgement.verdict) ? 1 : 0;
}

}  // namespace truth
