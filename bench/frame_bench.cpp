// SPDX-License-Identifier: MIT
// Frames: building them, and assembling a stream of them byte by byte.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <map>
#include <string>
#include <vector>

#include "figures.h"
#include "ipodcomm/detail/FrameAssembler.h"
#include "plain_framing.h"
#include "protocol/commands.h"
#include "protocol/frame.h"

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::size_t kStreamSize = 10'000'000;
constexpr std::int64_t kPayloads[] = {4, 28, 200};

// A frame with so many bytes from its lingo on.
Bytes Frame(std::size_t payload) {
  Bytes frame = {0xFF, 0x55, static_cast<std::uint8_t>(payload)};
  for (std::size_t i = 0; i < payload; ++i) frame.push_back(static_cast<std::uint8_t>(4 + 7 * i));
  std::uint8_t sum = 0;
  for (std::size_t i = 2; i < frame.size(); ++i) sum = static_cast<std::uint8_t>(sum + frame[i]);
  frame.push_back(static_cast<std::uint8_t>(0x100 - sum));
  return frame;
}

Bytes Stream(std::int64_t payload) {
  const Bytes frame = Frame(static_cast<std::size_t>(payload));
  Bytes stream;
  stream.reserve(kStreamSize);
  while (stream.size() + frame.size() <= kStreamSize) {
    stream.insert(stream.end(), frame.begin(), frame.end());
  }
  return stream;
}

void CountBytes(benchmark::State& state, std::size_t bytes_per_turn) {
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) *
                          static_cast<std::int64_t>(bytes_per_turn));
}

// The yardstick of runs: takes a byte at a time, but only copies and sums.
class Copier {
 public:
  void Feed(std::uint8_t byte) {
    copy_[index_++] = byte;
    sum_ = static_cast<std::uint8_t>(sum_ + byte);
    if (index_ == sizeof copy_) index_ = 0;
  }

 private:
  std::uint8_t copy_[1024] = {};
  std::uint32_t index_ = 0;
  std::uint8_t sum_ = 0;
};

void CopyAndSum(benchmark::State& state) {
  const Bytes stream = Stream(state.range(0));
  Copier copier;
  for ([[maybe_unused]] auto _ : state) {
    for (const std::uint8_t byte : stream) copier.Feed(byte);
    benchmark::DoNotOptimize(copier);
    benchmark::ClobberMemory();
  }
  CountBytes(state, stream.size());
}

void PlainFraming(benchmark::State& state) {
  const Bytes stream = Stream(state.range(0));
  bench::PlainFraming framing;
  for ([[maybe_unused]] auto _ : state) {
    int frames = 0;
    for (const std::uint8_t byte : stream) frames += bench::PlainFramingFeed(&framing, byte);
    benchmark::DoNotOptimize(frames);
  }
  CountBytes(state, stream.size());
}

void AssembleByBytes(benchmark::State& state) {
  const Bytes stream = Stream(state.range(0));
  ipodcomm::FrameAssembler assembler;
  for ([[maybe_unused]] auto _ : state) {
    int frames = 0;
    for (const std::uint8_t byte : stream) frames += assembler.Feed(byte) ? 1 : 0;
    benchmark::DoNotOptimize(frames);
  }
  CountBytes(state, stream.size());
}

void AssembleByRuns(benchmark::State& state) {
  const Bytes stream = Stream(state.range(0));
  ipodcomm::FrameAssembler assembler;
  for ([[maybe_unused]] auto _ : state) {
    int frames = 0;
    const std::uint8_t* next = stream.data();
    const std::uint8_t* const end = next + stream.size();
    while (next != end) frames += assembler.FeedRun(&next, end) ? 1 : 0;
    benchmark::DoNotOptimize(frames);
  }
  CountBytes(state, stream.size());
}

// The best of several runs each, one after the other: other programs only make a run slower.
void EachPayload(benchmark::internal::Benchmark* measured) {
  for (const std::int64_t payload : kPayloads) measured->Arg(payload);
  measured->Repetitions(5)->MinTime(0.05);
}
BENCHMARK(CopyAndSum)->Apply(EachPayload);
BENCHMARK(PlainFraming)->Apply(EachPayload);
BENCHMARK(AssembleByBytes)->Apply(EachPayload);
BENCHMARK(AssembleByRuns)->Apply(EachPayload);

void BuildFrame(benchmark::State& state) {
  const unsigned char data[9] = {5, 0, 0, 0, 0, 0, 0, 0, 50};
  unsigned char frame[1024];
  for ([[maybe_unused]] auto _ : state) {
    const std::uint32_t size = ipodcomm::FrameSize(ipodcomm::kExtendedLingo, true, sizeof data);
    const std::uint32_t next = ipodcomm::WriteHeader(frame, size, ipodcomm::kExtendedLingo, 0x1A);
    std::memcpy(frame + next + 2, data, sizeof data);
    ipodcomm::WriteChecksum(frame, size);
    benchmark::DoNotOptimize(frame);
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()));
}
BENCHMARK(BuildFrame);

// Keeps each benchmark's best rate instead of printing its own table.
class RateReporter : public benchmark::BenchmarkReporter {
 public:
  bool ReportContext(const Context& /*context*/) override { return true; }
  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      double& best = rates_[run.run_name.function_name + "/" + run.run_name.args];
      for (const auto& [name, counter] : run.counters) best = std::max(best, counter.value);
    }
  }
  /// Per second, in millions; 0 when it was filtered out.
  double Millions(const std::string& name, const std::string& payload = "") const {
    const auto rate = rates_.find(name + "/" + payload);
    return rate != rates_.end() ? rate->second / 1e6 : 0;
  }

 private:
  std::map<std::string, double> rates_;
};

double AllocationsPerFrame() {
  constexpr std::int64_t kPayload = 28;
  const Bytes stream = Stream(kPayload);
  ipodcomm::FrameAssembler assembler;
  int frames = 0;
  const unsigned long before = bench::AllocationCount();
  for (const std::uint8_t byte : stream) frames += assembler.Feed(byte) ? 1 : 0;
  return static_cast<double>(bench::AllocationCount() - before) / frames;
}

void PrintAssembly(const RateReporter& reporter, const std::string& payload) {
  using bench::Number;
  const double plain = reporter.Millions("PlainFraming", payload);
  const double copy = reporter.Millions("CopyAndSum", payload);
  bench::PrintFigure("frames of " + payload + " bytes of payload, by bytes",
                     Number(reporter.Millions("AssembleByBytes", payload), 0) + " MB/s",
                     "goal: " + Number(2 * plain, 0) + " MB/s, twice a plain framing in C");
  bench::PrintFigure("  in runs", Number(reporter.Millions("AssembleByRuns", payload), 0) + " MB/s",
                     "goals: " + Number(copy / 2, 0) + " MB/s, half of copy-and-sum, and " +
                         Number(5 * plain, 0) + " MB/s, five times the framing in C");
}

}  // namespace

void bench::MeasureFrames(int* argc, char** argv) {
  benchmark::Initialize(argc, argv);
  RateReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  PrintHeading("Frames");
  for (const std::int64_t payload : kPayloads) PrintAssembly(reporter, std::to_string(payload));
  PrintFigure("allocations per assembled frame", Number(AllocationsPerFrame(), 1), "goal: 0");
  PrintFigure("frame building", Number(reporter.Millions("BuildFrame"), 1) + " M/s", "");
}
