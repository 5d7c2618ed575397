// SPDX-License-Identifier: MIT
// Trials in a process of their own, so that a crash, a hang or a sanitizer's report is a result
// like any other.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace reliability {

/// Numbers that a trial adds up, whichever process it runs in.
struct Tally {
  std::uint64_t runs = 0;
  std::uint64_t decisions = 0;
  std::uint64_t began_before_wrap = 0;
  std::uint64_t wrapped = 0;
  std::uint64_t works_at_once = 0;
  std::uint64_t works_opened_again = 0;
  std::uint64_t works_in_a_new_session = 0;
};
/// Of all trials so far.
Tally& TotalTally();

/// What went wrong in trial number `failed`; nothing when `text` is empty.
struct Verdict {
  std::uint64_t failed = 0;
  std::string text;
  bool passed() const { return text.empty(); }
};

/// Whether the trials from some number on go on.
using Trial = std::function<std::string(std::uint64_t number)>;

/// The numbers of a series: `first`, and every `step`th from there on before `end`.
struct Places {
  std::uint64_t first = 1;
  std::uint64_t end = 0xFFFFFFFF;
  std::uint64_t step = 1;
};

/// Runs a series of trials until one fails. A trial that takes more than `most_seconds` hangs.
Verdict RunApart(const Places& places, const Trial& trial, unsigned most_seconds = 120);

/// A trial calls this to say that there are no more, which is no failure.
void EndSeries();

}  // namespace reliability
