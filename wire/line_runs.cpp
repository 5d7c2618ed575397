// SPDX-License-Identifier: MIT
#include "wire/line_runs.h"

#include <utility>

namespace ipodwire {
namespace {

// A frame does not go on after a silence as long as this.
constexpr Nanoseconds kLongSilence = 250'000'000;
constexpr std::size_t kLongestRun = 70000;

}  // namespace

std::vector<Observed> LineRuns::Add(std::uint64_t number, Nanoseconds time,
                                    const std::vector<std::uint8_t>& bytes, bool no_frame) {
  std::vector<Observed> ended;
  if (no_frame || time - last_byte_at_ > kLongSilence) Finish(&ended);
  last_byte_at_ = time;
  if (no_frame) {
    ended.push_back({number, time, sender_, bytes});
    return ended;
  }
  for (const std::uint8_t byte : bytes) Push(number, time, byte, &ended);
  // A sync byte at the end may begin a frame.
  const bool may_go_on = in_frame_ || (!current_.bytes.empty() && current_.bytes.back() == 0xFF);
  if (!may_go_on) Finish(&ended);
  return ended;
}

std::vector<Observed> LineRuns::End() {
  std::vector<Observed> ended;
  Finish(&ended);
  return ended;
}

void LineRuns::Push(std::uint64_t number, Nanoseconds time, std::uint8_t byte,
                    std::vector<Observed>* ended) {
  const bool begins =
      !in_frame_ && byte == 0x55 && !current_.bytes.empty() && current_.bytes.back() == 0xFF;
  if (begins) {
    // What came before the sync byte is no part of the frame.
    const Observed before = current_;
    current_.bytes.pop_back();
    if (current_.bytes.empty()) {
      current_ = before;
    } else {
      Finish(ended);
      current_ = {number, time, sender_, {0xFF}};
    }
    in_frame_ = true;
  }
  if (current_.bytes.empty()) current_ = {number, time, sender_, {}};
  current_.bytes.push_back(byte);
  const bool done = in_frame_ ? IsWhole() : current_.bytes.size() >= kLongestRun;
  if (done) Finish(ended);
}

void LineRuns::Finish(std::vector<Observed>* ended) {
  if (!current_.bytes.empty()) ended->push_back(std::move(current_));
  current_ = {};
  in_frame_ = false;
}

bool LineRuns::IsWhole() const {
  const std::vector<std::uint8_t>& bytes = current_.bytes;
  if (bytes.size() < 4) return false;
  if (bytes[2] != 0) return bytes.size() == std::size_t{bytes[2]} + 4;
  if (bytes.size() < 6) return false;
  return bytes.size() == (std::size_t{bytes[3]} << 8) + bytes[4] + 6;
}

}  // namespace ipodwire
