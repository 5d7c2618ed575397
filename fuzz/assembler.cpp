// SPDX-License-Identifier: MIT
// The library's frame assembler: what is fed byte by byte and in runs comes out the same.
#include <algorithm>
#include <vector>

#include "fuzz.h"
#include "ipodcomm/detail/FrameAssembler.h"

namespace {

using Frames = std::vector<std::vector<std::uint8_t>>;

void Take(const ipodcomm::FrameAssembler& assembler, Frames* frames) {
  frames->emplace_back(assembler.data(), assembler.data() + assembler.length());
}

Frames ByteByByte(const std::uint8_t* data, std::size_t size) {
  ipodcomm::FrameAssembler assembler;
  assembler.Reset();
  Frames frames;
  for (std::size_t i = 0; i < size; ++i) {
    if (assembler.Feed(data[i])) Take(assembler, &frames);
  }
  return frames;
}

Frames InRuns(const std::uint8_t* data, std::size_t size, std::size_t longest) {
  ipodcomm::FrameAssembler assembler;
  assembler.Reset();
  Frames frames;
  for (std::size_t at = 0; at < size;) {
    const std::uint8_t* next = data + at;
    const std::uint8_t* const end = data + std::min(size, at + longest);
    at = static_cast<std::size_t>(end - data);
    while (next != end) {
      if (assembler.FeedRun(&next, end)) Take(assembler, &frames);
    }
  }
  return frames;
}

// It begins with FF 55, or behind a lone FF with 55 alone, and its checksum holds.
bool IsFrame(const std::vector<std::uint8_t>& bytes) {
  const std::size_t start = bytes[0] == 0xFF ? 1 : 0;
  unsigned sum = 0;
  for (std::size_t i = start + 1; i < bytes.size(); ++i) sum += bytes[i];
  return bytes.size() >= start + 4 && bytes[start] == 0x55 && sum % 256 == 0;
}

}  // namespace

// The first byte is the length of the runs.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const Frames frames = ByteByByte(data + 1, size - 1);
  fuzz::Require(InRuns(data + 1, size - 1, std::size_t{data[0]} + 1) == frames);
  fuzz::Require(std::all_of(frames.begin(), frames.end(), IsFrame));
  return 0;
}
