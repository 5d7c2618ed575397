// SPDX-License-Identifier: MIT
// A sample of the runs of script/truth: none of them lies, gives a false cause or hangs.
#include <gtest/gtest.h>

#include "children.h"

namespace truth {
namespace {

constexpr std::uint64_t kSlices = 8;
constexpr std::uint64_t kRunsPerSlice = 50;
// Shares no factor with the numbers of commands and of troubles, so that a slice has many of both.
constexpr std::uint64_t kStride = 1009;
constexpr unsigned kFrames = 40;  // about as many as a command sends

class Sample : public ::testing::TestWithParam<std::uint64_t> {};

TEST_P(Sample, TellsNothingUntrue) {
  std::vector<Case> runs;
  for (std::uint64_t i = 0; i < kRunsPerSlice; ++i) {
    Case run = CaseByNumber((GetParam() * kRunsPerSlice + i) * kStride, 1);
    run.place = DrawPlace(run, kFrames, kFrames);
    runs.push_back(run);
  }
  unsigned right = 0;
  RunInChildren(runs, 1, [&right](const Report& report) {
    EXPECT_FALSE(IsBad(report.judgement.verdict))
        << NameOf(report.judgement.verdict) << ": " << report.judgement.why
        << "\nscript/truth --only " << report.run.name();
    if (report.judgement.verdict == Verdict::kRight) ++right;
  });
  EXPECT_GE(right, kRunsPerSlice / 2) << "that all fail honestly proves little";
}

INSTANTIATE_TEST_SUITE_P(Slices, Sample, ::testing::Range<std::uint64_t>(0, kSlices));

}  // namespace
}  // namespace truth
