// SPDX-License-Identifier: MIT
#include "report.h"

#include <sys/resource.h>

#include <cinttypes>
#include <cstdio>

namespace reliability {
namespace {

std::string program_name = "reliability";

// Of this process and those it has waited for. A busy machine gives a core in part only.
double ProcessorSecondsUsed() {
  double seconds = 0;
  for (const int who : {RUSAGE_SELF, RUSAGE_CHILDREN}) {
    rusage usage = {};
    getrusage(who, &usage);
    for (const timeval& time : {usage.ru_utime, usage.ru_stime}) {
      seconds += static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    }
  }
  return seconds;
}

}  // namespace

const std::string& ProgramName() { return program_name; }
void SetProgramName(const char* name) { program_name = name; }

// A shell may have left its own children's to this process.
Report::Report() : used_before_s_(ProcessorSecondsUsed()) {}

double Report::ProcessorSeconds() const { return ProcessorSecondsUsed() - used_before_s_; }

void Report::Found(std::uint64_t runs) const {
  std::printf("found after %" PRIu64 " runs and %.1f s\n", runs, seconds());
}

double Report::seconds() const {
  const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - began_;
  return taken.count();
}

int Report::Passed(const std::string& what, std::uint64_t count, std::uint64_t seed) const {
  const Tally& tally = TotalTally();
  std::printf("%s: %" PRIu64 ", 0 failures; seed %" PRIu64
              ", %.1f s (%.1f s of a core), %.0f a second of a "
              "core\n",
              what.c_str(), count, seed, seconds(), ProcessorSeconds(),
              static_cast<double>(count) / ProcessorSeconds());
  std::printf("  %" PRIu64 " decisions a run; %" PRIu64
              " began less than a minute before the tick "
              "count's wrap, %" PRIu64 " ran over it\n",
              tally.decisions / (tally.runs == 0 ? 1 : tally.runs), tally.began_before_wrap,
              tally.wrapped);
  if (tally.works_at_once + tally.works_opened_again + tally.works_in_a_new_session > 0) {
    std::printf("  a command worked at once after %" PRIu64 ", once opened again after %" PRIu64
                ", in a new session after %" PRIu64 "\n",
                tally.works_at_once, tally.works_opened_again, tally.works_in_a_new_session);
  }
  return 0;
}

int Report::Ended(const std::string& what, unsigned found, std::uint64_t seed) const {
  if (found == 0) return Passed(what, TotalTally().runs, seed);
  std::printf("%u ways found something, in %.0f s\n", found, seconds());
  return 1;
}

int Report::Failed(const std::string& where, const std::string& wrong,
                   const std::string& repeat) const {
  std::printf("FAILED: %s\n  %s\n  to repeat: %s %s\n", where.c_str(), wrong.c_str(),
              program_name.c_str(), repeat.c_str());
  std::fflush(stdout);
  return 1;
}

}  // namespace reliability
