// SPDX-License-Identifier: MIT
#include "answering_ipod.h"

#include <algorithm>
#include <utility>

namespace test {

namespace {

constexpr std::size_t kAroundRequest = 4;  // FF 55 length ... checksum
constexpr std::size_t kRequestPosition = 3;

bool IsRight(const Bytes& frame) {
  std::uint8_t sum = 0;
  for (std::size_t i = 2; i < frame.size(); ++i) sum = static_cast<std::uint8_t>(sum + frame[i]);
  return frame[0] == 0xFF && frame[1] == 0x55 && sum == 0;
}

bool BeginsWith(const Bytes& bytes, const Bytes& start) {
  return bytes.size() >= start.size() && std::equal(start.begin(), start.end(), bytes.begin());
}

Bytes WriteTo(std::uint8_t handle, std::uint32_t offset) {
  const auto byte = [offset](int shift) { return static_cast<std::uint8_t>(offset >> shift); };
  return {0x0C, 0x07, byte(24), byte(16), byte(8), byte(0), handle};
}

}  // namespace

void AnsweringIpod::AnswerNth(std::string_view start, unsigned nth, std::string_view reply) {
  rules_.insert(rules_.begin(), {Hex(start), Hex(reply), nth});
  std::stable_sort(rules_.begin(), rules_.end(), [](const Rule& one, const Rule& other) {
    return one.start.size() > other.start.size();
  });
}

std::vector<std::string> AnsweringIpod::DrainFrames() {
  std::vector<std::string> texts;
  for (const Frame& frame : std::exchange(frames_, {})) {
    texts.push_back((frame.right ? "" : "wrong ") + frame.caption + ToHex(frame.bytes));
  }
  return texts;
}

std::vector<std::string> AnsweringIpod::DrainLines(std::uint8_t handle, std::uint32_t offset) {
  constexpr std::size_t kTextPosition = 7;
  std::vector<std::string> lines;
  for (const Frame& frame : std::exchange(frames_, {})) {
    if (!frame.right) lines.emplace_back("wrong");
    const Bytes request(frame.bytes.begin() + kRequestPosition, frame.bytes.end() - 1);
    if (!BeginsWith(request, {0x0C, 0x07})) continue;
    if (!BeginsWith(request, WriteTo(handle, offset))) lines.emplace_back("misplaced");
    lines.emplace_back(request.begin() + kTextPosition, request.end());
    offset += static_cast<std::uint32_t>(request.size() - kTextPosition);
  }
  return lines;
}

void AnsweringIpod::Receive(const std::uint8_t* data, std::size_t size, std::int64_t /*now_us*/) {
  Bytes& bytes = receiving_.bytes;
  for (std::size_t i = 0; i < size; ++i) {
    if (bytes.empty() && caption_) receiving_.caption = caption_() + ": ";
    bytes.push_back(data[i]);
    if (bytes.size() > 2 && bytes.size() == bytes[2] + kAroundRequest) AcceptFrame();
  }
}

void AnsweringIpod::AcceptFrame() {
  receiving_.right = IsRight(receiving_.bytes);
  frames_.push_back(std::exchange(receiving_, {}));
  const Bytes& frame = frames_.back().bytes;
  if (frames_.back().right) Reply({frame.begin() + kRequestPosition, frame.end() - 1});
}

void AnsweringIpod::Reply(const Bytes& request) {
  const Bytes* reply = nullptr;
  for (Rule& rule : rules_) {
    if (!BeginsWith(request, rule.start)) continue;
    ++rule.seen;
    if (reply == nullptr && (rule.nth == 0 || rule.nth == rule.seen)) reply = &rule.reply;
  }
  if (reply != nullptr) outgoing_.insert(outgoing_.end(), reply->begin(), reply->end());
}

std::optional<std::int64_t> AnsweringIpod::NextEvent() {
  if (outgoing_.empty()) return std::nullopt;
  return 0;
}

std::vector<std::uint8_t> AnsweringIpod::Transmit(std::int64_t /*now_us*/) {
  return std::exchange(outgoing_, {});
}

}  // namespace test
