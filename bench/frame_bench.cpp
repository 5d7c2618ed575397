// SPDX-License-Identifier: MIT
// Frames: building them, and assembling a stream of them byte by byte.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstring>
#include <map>
#include <vector>

#include "figures.h"
#include "ipodcomm/detail/FrameAssembler.h"
#include "protocol/commands.h"
#include "protocol/frame.h"

namespace {

using Bytes = std::vector<std::uint8_t>;

// A database record as iPods send them: index, then a name of common length.
Bytes RecordFrame() {
  Bytes frame = {0xFF, 0x55, 0x00, 0x04, 0x00, 0x1B, 0x00, 0x00, 0x00, 0x07};
  for (int i = 0; i < 24; ++i) frame.push_back(static_cast<std::uint8_t>('a' + i));
  frame.push_back(0x00);
  frame[2] = static_cast<std::uint8_t>(frame.size() - 3);
  std::uint8_t sum = 0;
  for (std::size_t i = 2; i < frame.size(); ++i) sum = static_cast<std::uint8_t>(sum + frame[i]);
  frame.push_back(static_cast<std::uint8_t>(0x100 - sum));
  return frame;
}

constexpr int kFrames = 1000;

Bytes Stream() {
  const Bytes frame = RecordFrame();
  Bytes stream;
  for (int i = 0; i < kFrames; ++i) stream.insert(stream.end(), frame.begin(), frame.end());
  return stream;
}

void CountBytes(benchmark::State& state, std::size_t bytes_per_turn) {
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) *
                          static_cast<std::int64_t>(bytes_per_turn));
}

// The yardstick: takes a byte at a time as the assembler does, but only copies and sums.
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
  const Bytes stream = Stream();
  Copier copier;
  for (auto _ : state) {
    for (const std::uint8_t byte : stream) copier.Feed(byte);
    benchmark::DoNotOptimize(copier);
    benchmark::ClobberMemory();
  }
  CountBytes(state, stream.size());
}
BENCHMARK(CopyAndSum);

void AssembleFrames(benchmark::State& state) {
  const Bytes stream = Stream();
  ipodcomm::FrameAssembler assembler;
  for (auto _ : state) {
    int frames = 0;
    for (const std::uint8_t byte : stream) frames += assembler.Feed(byte) ? 1 : 0;
    benchmark::DoNotOptimize(frames);
  }
  CountBytes(state, stream.size());
}
BENCHMARK(AssembleFrames);

void BuildFrame(benchmark::State& state) {
  const unsigned char data[9] = {5, 0, 0, 0, 0, 0, 0, 0, 50};
  unsigned char frame[1024];
  for (auto _ : state) {
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

// Keeps each benchmark's rate instead of printing its own table.
class RateReporter : public benchmark::BenchmarkReporter {
 public:
  bool ReportContext(const Context& /*context*/) override { return true; }
  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      for (const auto& [name, counter] : run.counters) rates_[run.benchmark_name()] = counter;
    }
  }
  double rate(const std::string& name) const { return rates_.at(name); }

 private:
  std::map<std::string, double> rates_;
};

double AllocationsPerFrame() {
  const Bytes stream = Stream();
  ipodcomm::FrameAssembler assembler;
  const unsigned long before = bench::AllocationCount();
  for (const std::uint8_t byte : stream) benchmark::DoNotOptimize(assembler.Feed(byte));
  return static_cast<double>(bench::AllocationCount() - before) / kFrames;
}

}  // namespace

void bench::MeasureFrames(int* argc, char** argv) {
  constexpr double kMega = 1e6;
  benchmark::Initialize(argc, argv);
  RateReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  const double goal = reporter.rate("CopyAndSum") / 2;
  const double speed = reporter.rate("AssembleFrames");
  PrintHeading("Frames");
  PrintFigure("frame assembly", Number(speed / kMega, 0) + " MB/s",
              "goal: " + Number(goal / kMega, 0) + " MB/s, half of copy-and-sum");
  PrintFigure("allocations per assembled frame", Number(AllocationsPerFrame(), 1), "goal: 0");
  PrintFigure("frame building", Number(reporter.rate("BuildFrame") / kMega, 1) + " M/s", "");
}
