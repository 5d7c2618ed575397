// SPDX-License-Identifier: MIT
#include "workout/workout_ipod.h"

#include <utility>

#include "support/bytes.h"
#include "world/threads/race_detector.h"

namespace test {

using ipodcomm::virtual_platform::Unwatched;

namespace {

// FF 55 length lingo command data checksum
constexpr std::size_t kAroundBody = 4;

std::string Kind(const std::vector<std::uint8_t>& frame) { return ToHex(frame.data() + 3, 2); }

}  // namespace

WorkoutIpod::WorkoutIpod() {
  Reply("09 83", {"FF 55 05 09 84 00 03 05 66"});
  Reply("0C 01", {"FF 55 18 0C 02 00 00 00 00 40 00 00 00 00 10 00 00 00 F0 00 00 00 00 00 00 01 "
                  "02 97"});
  Reply("0C 10", {"FF 55 0A 0C 11 00 00 00 00 40 00 00 00 99"});
  Reply("0C 12", {"FF 55 03 0C 04 2A C3"});
  Reply("0C 07", {"FF 55 05 0C 00 00 07 2A BE"});
  Reply("0C 08", {"FF 55 05 0C 00 00 08 2A BD"});
}

void WorkoutIpod::Reply(const std::string& kind, const std::vector<std::string>& replies) {
  const Unwatched unwatched;
  replies_[kind].clear();
  for (const std::string& reply : replies) replies_[kind].push_back(Hex(reply));
}

std::vector<WorkoutIpod::Bytes> WorkoutIpod::DrainReceived() {
  const Unwatched unwatched;
  return std::exchange(frames_, {});
}

std::vector<std::string> WorkoutIpod::DrainFrames() {
  std::vector<std::string> frames;
  for (const Bytes& frame : DrainReceived()) frames.push_back(ToHex(frame));
  return frames;
}

std::vector<std::string> WorkoutIpod::DrainKinds() {
  std::vector<std::string> kinds;
  for (const Bytes& frame : DrainReceived()) kinds.push_back(Kind(frame));
  return kinds;
}

std::vector<WorkoutIpod::Write> WorkoutIpod::DrainWrites() {
  std::vector<Write> writes;
  for (const Bytes& frame : DrainReceived()) {
    if (Kind(frame) != "0C 07") continue;
    std::uint32_t offset = 0;
    for (int i = 5; i < 9; ++i) offset = offset << 8 | frame[static_cast<std::size_t>(i)];
    writes.push_back({offset, frame[9], std::string(frame.begin() + 10, frame.end() - 1)});
  }
  return writes;
}

void WorkoutIpod::Receive(const std::uint8_t* data, std::size_t size, std::int64_t /*now_us*/) {
  for (std::size_t i = 0; i < size; ++i) {
    unfinished_.push_back(data[i]);
    // A lone sync byte wakes it up.
    if (unfinished_.size() == 2 && unfinished_[1] == 0xFF) unfinished_.pop_back();
    if (unfinished_.size() < 3 || unfinished_.size() < unfinished_[2] + kAroundBody) continue;
    ReplyTo(unfinished_);
    frames_.push_back(std::exchange(unfinished_, {}));
  }
}

void WorkoutIpod::ReplyTo(const Bytes& frame) {
  const auto found = replies_.find(Kind(frame));
  if (found == replies_.end() || found->second.empty()) return;
  std::vector<Bytes>& replies = found->second;
  outgoing_.insert(outgoing_.end(), replies.front().begin(), replies.front().end());
  if (replies.size() > 1) replies.erase(replies.begin());
}

std::optional<std::int64_t> WorkoutIpod::NextEvent() {
  if (outgoing_.empty()) return std::nullopt;
  return 0;
}

WorkoutIpod::Bytes WorkoutIpod::Transmit(std::int64_t /*now_us*/) {
  return std::exchange(outgoing_, {});
}

}  // namespace test
