// SPDX-License-Identifier: MIT
#include "support/answering_ipod.h"

#include <algorithm>
#include <utility>

#include "world/threads/race_detector.h"

namespace test {

using ipodcomm::virtual_platform::Unwatched;

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

// 0C 07 offset(4) handle(1) text
bool IsWrite(const Bytes& request) {
  return request.size() >= 7 && BeginsWith(request, {0x0C, 0x07});
}

AnsweringIpod::Write WriteOf(const Bytes& request) {
  std::uint32_t offset = 0;
  for (std::size_t i = 2; i < 6; ++i) offset = offset << 8 | request[i];
  return {offset, request[6], std::string(request.begin() + 7, request.end())};
}

}  // namespace

void AnsweringIpod::AnswerNth(std::string_view start, unsigned nth, std::string_view reply) {
  const Unwatched unwatched;
  const Rule rule{Hex(start), Hex(reply), nth};
  // Of two with starts as long, the newer goes first.
  rules_.emplace_hint(rules_.lower_bound(rule.start.size()), rule.start.size(), rule);
}

void AnsweringIpod::AnswerInTurn(std::string_view start, const std::vector<std::string>& replies) {
  Answer(start, replies.back());
  for (unsigned i = 0; i + 1 < replies.size(); ++i) AnswerNth(start, i + 1, replies[i]);
}

std::vector<AnsweringIpod::Frame> AnsweringIpod::Drain() {
  const Unwatched unwatched;
  return std::exchange(frames_, {});
}

std::vector<std::string> AnsweringIpod::DrainFrames() {
  std::vector<std::string> texts;
  for (const Frame& frame : Drain()) {
    texts.push_back((frame.right ? "" : "wrong ") + frame.caption + ToHex(frame.bytes));
  }
  return texts;
}

std::vector<std::string> AnsweringIpod::DrainKinds() {
  std::vector<std::string> kinds;
  for (const Frame& frame : Drain()) {
    kinds.push_back((frame.right ? "" : "wrong ") + ToHex(frame.Request().data(), 2));
  }
  return kinds;
}

std::vector<AnsweringIpod::Write> AnsweringIpod::DrainWrites() {
  std::vector<Write> writes;
  for (const Frame& frame : Drain()) {
    const Bytes request = frame.Request();
    if (IsWrite(request)) writes.push_back(WriteOf(request));
  }
  return writes;
}

std::vector<std::string> AnsweringIpod::DrainLines(int handle, std::uint32_t offset) {
  std::vector<std::string> lines;
  for (const Frame& frame : Drain()) {
    if (!frame.right) lines.emplace_back("wrong");
    const Bytes request = frame.Request();
    if (!IsWrite(request)) continue;
    const Write write = WriteOf(request);
    if (write.handle != handle || write.offset != offset) lines.emplace_back("misplaced");
    lines.push_back(write.text);
    offset += static_cast<std::uint32_t>(write.text.size());
  }
  return lines;
}

Bytes AnsweringIpod::Frame::Request() const {
  return {bytes.begin() + kRequestPosition, bytes.end() - 1};
}

void AnsweringIpod::Receive(const std::uint8_t* data, std::size_t size, std::int64_t /*now_us*/) {
  Bytes& bytes = receiving_.bytes;
  for (std::size_t i = 0; i < size; ++i) {
    if (bytes.empty() && caption_) receiving_.caption = caption_() + ": ";
    bytes.push_back(data[i]);
    // A lone sync byte wakes the iPod; the frame begins with the next one.
    if (bytes.size() == 2 && bytes[1] == 0xFF) bytes.pop_back();
    if (bytes.size() > 2 && bytes.size() == bytes[2] + kAroundRequest) AcceptFrame();
  }
}

void AnsweringIpod::AcceptFrame() {
  receiving_.right = IsRight(receiving_.bytes);
  frames_.push_back(std::exchange(receiving_, {}));
  if (frames_.back().right) Reply(frames_.back().Request());
}

void AnsweringIpod::Reply(const Bytes& request) {
  const Bytes* reply = nullptr;
  for (auto& [size, rule] : rules_) {
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
