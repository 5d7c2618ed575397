// SPDX-License-Identifier: MIT
// Sends, and reads until the answer comes.
#include "ipod/legacy_exchange.h"

#include <algorithm>
#include <optional>

#include "console/clock.h"
#include "console/interrupt.h"

namespace ipodctl {

namespace {

using Result = LegacyAnswer::Result;

constexpr int kAttempts = 3;
constexpr std::chrono::seconds kLongestAttempt(10);  // of an iPod that keeps sending other things
constexpr std::uint8_t kOk = 0;
constexpr std::uint8_t kPending = 6;

struct ExtendedFrame {
  std::uint8_t command;
  std::vector<std::uint8_t> data;
};

// The next frame of the Extended Interface; none when the line stays silent. Two-byte commands
// begin with a 0, which the extractor takes for the whole command, so it hands out the low byte and
// the data, and answers the iPod's questions on the way.
std::optional<ExtendedFrame> ReadExtended(ipod& docked) {
  constexpr unsigned char kAnyExtended = 0;
  constexpr unsigned char kCapacity = 255;
  constexpr auto kUntouched = static_cast<wchar_t>(0xFFFF);
  std::vector<wchar_t> text(kCapacity, kUntouched);
  if (docked.extractdatafrompacket(kAnyExtended, text.data(), kCapacity, 0, 0) == 0) {
    return std::nullopt;
  }
  ExtendedFrame frame = {};
  const auto end = std::find(text.begin(), text.end() - 1, kUntouched);
  if (end == text.begin()) return frame;
  frame.command = static_cast<std::uint8_t>(text.front());
  for (auto unit = text.begin() + 1; unit != end; ++unit) {
    frame.data.push_back(static_cast<std::uint8_t>(*unit));
  }
  return frame;
}

enum class Verdict { kForeign, kDamaged, kFinal };

// Data: status, and the command that is acknowledged in two bytes.
Verdict JudgeAck(const LegacyQuestion& question, ExtendedFrame& frame, LegacyAnswer* answer) {
  if (frame.data.size() < 3) return Verdict::kForeign;
  const std::uint8_t status = frame.data[0];
  if (frame.data[1] != 0 || frame.data[2] != question.command || status == kPending) {
    return Verdict::kForeign;
  }
  const bool wanted = question.answer == ipod::IPOD_COMMAND_EXTENDEDACK;
  if (status == kOk && !wanted) return Verdict::kForeign;
  answer->result = status == kOk ? Result::kAnswered : Result::kRefused;
  answer->status = status;
  answer->data = std::move(frame.data);
  return Verdict::kFinal;
}

Verdict Judge(const LegacyQuestion& question, ExtendedFrame& frame, LegacyAnswer* answer) {
  if (frame.command == ipod::IPOD_COMMAND_EXTENDEDACK) return JudgeAck(question, frame, answer);
  if (frame.command != question.answer) return Verdict::kForeign;
  if (frame.data.size() < question.least || (question.is_text && frame.data.back() != 0)) {
    return Verdict::kDamaged;
  }
  if (!std::equal(question.repeated.begin(), question.repeated.end(), frame.data.begin())) {
    return Verdict::kForeign;
  }
  answer->result = Result::kAnswered;
  answer->data = std::move(frame.data);
  return Verdict::kFinal;
}

// One attempt, until the answer has come or the line is silent.
LegacyAnswer Attempt(ipod& docked, const LegacyQuestion& question) {
  LegacyAnswer answer;
  if (question.send(docked) == 0) return answer;
  const auto start = SteadyTime();
  while (SteadyTime() - start < kLongestAttempt) {
    std::optional<ExtendedFrame> frame = ReadExtended(docked);
    if (!frame || Judge(question, *frame, &answer) != Verdict::kForeign) break;
  }
  return answer;
}

// Another question than the one that was asked more than once: the answers that are still under way
// come before its own.
void LetLateAnswersGoBy(ipod& docked, const LegacyQuestion& asked) {
  const LegacyQuestion index = {[](ipod& to) { return to.command_getcurrentplayingtrackindex(); },
                                ipod::IPOD_COMMAND_GETCURRENTPLAYINGTACKINDEX,
                                ipod::IPOD_COMMAND_RETURNCURRENTPLAYINGTRACKINDEX, 4};
  Attempt(docked, asked.command == ipod::IPOD_COMMAND_GETPLAYSTATUS ? index : StatusQuestion());
}

}  // namespace

std::uint32_t LegacyAnswer::Number(std::size_t at) const {
  std::uint32_t number = 0;
  for (std::size_t i = at; i < at + 4; ++i) number = number << 8 | data[i];
  return number;
}

LegacyAnswer AskLegacy(ipod& docked, const LegacyQuestion& question) {
  LegacyAnswer answer;
  for (int attempt = 1; attempt <= kAttempts; ++attempt) {
    StopIfInterrupted();
    answer = Attempt(docked, question);
    if (answer.result == Result::kUnanswered) continue;
    if (attempt > 1) LetLateAnswersGoBy(docked, question);
    break;
  }
  return answer;
}

LegacyAnswer AskForAck(ipod& docked, const std::function<int(ipod& docked)>& send,
                       std::uint8_t command) {
  LegacyAnswer answer;
  constexpr unsigned char kCapacity = 3;
  wchar_t text[kCapacity] = {};
  if (send(docked) == 0 ||
      docked.extractdatafrompacket(ipod::IPOD_COMMAND_ACK, text, kCapacity, 0, 0) == 0 ||
      text[1] != command) {
    return answer;
  }
  answer.status = static_cast<std::uint8_t>(text[0]);
  answer.result = answer.status == kOk ? Result::kAnswered : Result::kRefused;
  return answer;
}

LegacyQuestion StatusQuestion() {
  return {[](ipod& docked) { return docked.command_getplaystatus(); },
          ipod::IPOD_COMMAND_GETPLAYSTATUS, ipod::IPOD_COMMAND_RETURNPLAYSTATUS, 9};
}

}  // namespace ipodctl
