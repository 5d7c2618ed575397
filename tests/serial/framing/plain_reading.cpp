// SPDX-License-Identifier: MIT
// What the bytes of a line hold, read by place and all at once.
#include "plain_reading.h"

#include <algorithm>

namespace test {

namespace {

constexpr std::size_t kLongest = 1023;

std::size_t Find(const Bytes& line, std::uint8_t byte, std::size_t from) {
  const auto begin = line.begin() + static_cast<std::ptrdiff_t>(std::min(from, line.size()));
  return static_cast<std::size_t>(std::find(begin, line.end(), byte) - line.begin());
}

// A frame that has begun: where its first byte, its start byte and its end are. The end is unknown
// as long as the length is, and then lies behind all bytes.
struct Begun {
  std::size_t first;
  std::size_t start;
  std::size_t end;
  bool endless;
};

// A frame without its sync byte begins at its start byte, if other bytes stand between the two.
Begun FindFrame(const Bytes& line, std::size_t from) {
  const std::size_t sync = Find(line, 0xFF, from);
  const std::size_t start = Find(line, 0x55, sync + 1);
  Begun begun = {start == sync + 1 ? sync : start, start, line.size() + 1, false};
  const std::size_t length = start + 1;
  if (length >= line.size()) return begun;
  if (line[length] != 0) {
    begun.end = length + 1 + line[length] + 1;
  } else if (length + 2 < line.size()) {
    const std::size_t declared = line[length + 1] * std::size_t{256} + line[length + 2];
    begun.end = length + 3 + declared + 1;
    begun.endless = declared == 0;
  }
  return begun;
}

Bytes Part(const Bytes& line, std::size_t from, std::size_t to) {
  return Bytes(line.begin() + static_cast<std::ptrdiff_t>(from),
               line.begin() + static_cast<std::ptrdiff_t>(to));
}

bool ChecksumHolds(const Bytes& line, const Begun& frame) {
  unsigned sum = 0;
  for (std::size_t i = frame.start + 1; i < frame.end; ++i) sum += line[i];
  return sum % 256 == 0;
}

Reading Read(const Bytes& line, bool again) {
  Reading reading;
  for (std::size_t next = 0;;) {
    Begun frame = FindFrame(line, next);
    if (frame.start >= line.size()) {
      reading.end = line.size();
      return reading;
    }
    const bool too_long = frame.endless || frame.end - frame.first > kLongest;
    if (too_long) frame.end = frame.first + kLongest;
    const bool whole = frame.end <= line.size();
    if (!whole && !again) {
      reading.end = frame.end;
      return reading;
    }
    const bool good = whole && !too_long && ChecksumHolds(line, frame);
    if (good) reading.frames.push_back(Part(line, frame.first, frame.end));
    next = good || !again ? frame.end : frame.first + 1;
  }
}

}  // namespace

Reading ReadPlainly(const Bytes& line) { return Read(line, false); }

Reading ReadAgain(const Bytes& line) {
  Reading reading = Read(line, true);
  for (Bytes& frame : reading.frames) {
    if (frame.front() != 0xFF) frame.insert(frame.begin(), 0xFF);
  }
  return reading;
}

Reading ReadAsLegacy(const Bytes& line) {
  constexpr std::size_t kWrapped = 65536;
  Reading reading;
  for (std::size_t next = 0;;) {
    Begun frame = FindFrame(line, next);
    if (frame.start >= line.size()) {
      reading.end = line.size();
      return reading;
    }
    if (frame.endless) frame.end += kWrapped;
    if (frame.end > line.size()) {
      reading.end = frame.end;
      return reading;
    }
    Bytes bytes = Part(line, frame.start, frame.end);
    bytes.insert(bytes.begin(), 0xFF);
    reading.frames.push_back(std::move(bytes));
    next = frame.end;
  }
}

}  // namespace test
