// SPDX-License-Identifier: MIT
// Frames: building them, and assembling a stream of them byte by byte.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstring>
#include <vector>

#include "ipodcomm/detail/FrameAssembler.h"
#include "protocol/frame.h"

namespace {

// A database record as iPods send them: index, then a name of common length.
std::vector<std::uint8_t> RecordFrame() {
  std::vector<std::uint8_t> frame = {0xFF, 0x55, 0x00, 0x04, 0x00, 0x1B, 0x00, 0x00, 0x00, 0x07};
  for (int i = 0; i < 24; ++i) frame.push_back(static_cast<std::uint8_t>('a' + i));
  frame.push_back(0x00);
  frame[2] = static_cast<std::uint8_t>(frame.size() - 3);
  std::uint8_t sum = 0;
  for (std::size_t i = 2; i < frame.size(); ++i) sum = static_cast<std::uint8_t>(sum + frame[i]);
  frame.push_back(static_cast<std::uint8_t>(0x100 - sum));
  return frame;
}

std::vector<std::uint8_t> Stream() {
  constexpr int kFrames = 1000;
  const std::vector<std::uint8_t> frame = RecordFrame();
  std::vector<std::uint8_t> stream;
  for (int i = 0; i < kFrames; ++i) stream.insert(stream.end(), frame.begin(), frame.end());
  return stream;
}

void CountBytes(benchmark::State& state, std::size_t bytes_per_turn) {
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * bytes_per_turn));
}

/// The yardstick: a loop that only copies and sums the same stream.
void CopyAndSum(benchmark::State& state) {
  const std::vector<std::uint8_t> stream = Stream();
  std::vector<std::uint8_t> copy(1024);
  for (auto _ : state) {
    std::uint8_t sum = 0;
    std::size_t index = 0;
    for (const std::uint8_t byte : stream) {
      copy[index] = byte;
      index = (index + 1) % copy.size();
      sum = static_cast<std::uint8_t>(sum + byte);
    }
    benchmark::DoNotOptimize(sum);
    benchmark::ClobberMemory();
  }
  CountBytes(state, stream.size());
}
BENCHMARK(CopyAndSum);

void AssembleFrames(benchmark::State& state) {
  const std::vector<std::uint8_t> stream = Stream();
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

}  // namespace
