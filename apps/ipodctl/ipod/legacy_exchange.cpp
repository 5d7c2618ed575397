// SPDX-License-Identifier: MIT
// Sends, and reads until the answer comes.
#include "ipod/legacy_exchange.h"

#include <algorithm>
#include <cstdio>
#include <optional>

#include "console/clock.h"
#include "console/interrupt.h"
#include "console/text.h"

namespace ipodctl {

namespace {

using Result = LegacyAnswer::Result;

constexpr int kAttempts = 3;
constexpr std::chrono::seconds kLongestAttempt(10);  // of an iPod that keeps sending other things
constexpr std::uint8_t kOk = 0;
constexpr std::uint8_t kPending = 6;

// The interface hands out what it has of a frame that breaks off once the line has been silent for
// five reads, or Ctrl-C ended the wait, and then fills up with zeros.
constexpr std::chrono::milliseconds kBrokenOff(2900);

using Bytes = std::vector<std::uint8_t>;

// What follows the command byte in the next frame whose command byte is `command`; none when the
// line stays silent. The iPod's questions are answered on the way.
std::optional<Bytes> ReadFrame(ipod& docked, std::uint8_t command) {
  constexpr unsigned char kCapacity = 255;
  constexpr auto kUntouched = static_cast<wchar_t>(0xFFFF);
  std::vector<wchar_t> text(kCapacity, kUntouched);
  const auto start = SteadyTime();
  if (docked.extractdatafrompacket(command, text.data(), kCapacity, 0, 0) == 0) return std::nullopt;
  if (SteadyTime() - start >= kBrokenOff || Interrupted()) return std::nullopt;
  // The extractor ends every text in the buffer's last character.
  Bytes bytes;
  for (auto unit = text.begin(); unit != text.end() - 1 && *unit != kUntouched; ++unit) {
    bytes.push_back(static_cast<std::uint8_t>(*unit));
  }
  return bytes;
}

// A frame of the Extended Interface. Its commands have two bytes and begin with a 0.
struct ExtendedFrame {
  std::uint8_t command;
  Bytes data;
};

std::optional<ExtendedFrame> ReadExtended(ipod& docked) {
  const std::optional<Bytes> bytes = ReadFrame(docked, 0);
  if (!bytes) return std::nullopt;
  if (bytes->empty()) return ExtendedFrame{};
  return ExtendedFrame{bytes->front(), Bytes(bytes->begin() + 1, bytes->end())};
}

// Some iPods refuse under a transaction identifier that nobody gave them.
void SkipIdentifier(Bytes* ack, std::size_t bare_size) {
  constexpr std::size_t kIdentifierBytes = 2;
  if (ack->size() == bare_size + kIdentifierBytes) {
    ack->erase(ack->begin(), ack->begin() + kIdentifierBytes);
  }
}

enum class Verdict { kForeign, kDamaged, kFinal };

// Data: status, and the command that is acknowledged in two bytes.
Verdict JudgeAck(const LegacyQuestion& question, ExtendedFrame& frame, LegacyAnswer* answer) {
  constexpr std::size_t kAckBytes = 3;
  SkipIdentifier(&frame.data, kAckBytes);
  if (frame.data.size() < kAckBytes) return Verdict::kForeign;
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

Verdict JudgeData(const LegacyQuestion& question, Bytes& data, LegacyAnswer* answer) {
  if (data.size() < question.least || (question.is_text && data.back() != 0)) {
    return Verdict::kDamaged;
  }
  if (!std::equal(question.repeated.begin(), question.repeated.end(), data.begin())) {
    return Verdict::kForeign;
  }
  answer->result = Result::kAnswered;
  answer->data = std::move(data);
  return Verdict::kFinal;
}

Verdict Judge(const LegacyQuestion& question, ExtendedFrame& frame, LegacyAnswer* answer) {
  if (frame.command == ipod::IPOD_COMMAND_EXTENDEDACK) return JudgeAck(question, frame, answer);
  if (frame.command != question.answer) return Verdict::kForeign;
  return JudgeData(question, frame.data, answer);
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

LegacyAnswer AskLegacyShort(ipod& docked, const LegacyQuestion& question) {
  LegacyAnswer none;
  for (int attempt = 1; attempt <= kAttempts; ++attempt) {
    StopIfInterrupted();
    LegacyAnswer answer;
    if (question.send(docked) == 0) continue;
    Verdict verdict = Verdict::kForeign;
    const auto start = SteadyTime();
    while (verdict == Verdict::kForeign && SteadyTime() - start < kLongestAttempt) {
      std::optional<Bytes> data = ReadFrame(docked, question.answer);
      if (!data) break;
      verdict = JudgeData(question, *data, &answer);
    }
    if (answer.answered()) return answer;
    if (verdict == Verdict::kDamaged) none.result = Result::kUnclear;
    if (verdict == Verdict::kDamaged || attempt == 2) continue;
    answer = AskForAck(docked, question);
    if (answer.refused()) return answer;
    if (answer.result == Result::kUnclear) none.result = Result::kUnclear;
  }
  return none;
}

LegacyAnswer AskForAck(ipod& docked, const LegacyQuestion& question) {
  constexpr std::size_t kAckBytes = 2;
  LegacyAnswer answer;
  if (question.send(docked) == 0) return answer;
  const auto start = SteadyTime();
  while (SteadyTime() - start < kLongestAttempt) {
    std::optional<Bytes> ack = ReadFrame(docked, question.ack);
    if (!ack) break;
    answer.result = Result::kUnclear;
    SkipIdentifier(&*ack, kAckBytes);
    if (ack->size() < kAckBytes || (*ack)[1] != question.command || (*ack)[0] == kPending) continue;
    answer.status = ack->front();
    answer.result = answer.status == kOk ? Result::kAnswered : Result::kRefused;
    break;
  }
  return answer;
}

LegacyQuestion StatusQuestion() {
  return {[](ipod& docked) { return docked.command_getplaystatus(); },
          ipod::IPOD_COMMAND_GETPLAYSTATUS, ipod::IPOD_COMMAND_RETURNPLAYSTATUS, 9};
}

LegacyQuestion NameQuestion() {
  return {[](ipod& docked) { return docked.command_requestipodname(); },
          ipod::IPOD_COMMAND_REQUESTIPODNAME, ipod::IPOD_COMMAND_RETURNIPODNAME, 1, true};
}

LegacyQuestion ModelQuestion() {
  return {[](ipod& docked) { return docked.command_requestipodmodelnum(); },
          ipod::IPOD_COMMAND_REQUESTIPODMODELNUM, ipod::IPOD_COMMAND_RETURNIPODMODELNUM, 5, true};
}

LegacyQuestion SerialNumberQuestion() {
  return {[](ipod& docked) { return docked.command_requestipodserialnum(); },
          ipod::IPOD_COMMAND_REQUESTIPODSERIALNUM, ipod::IPOD_COMMAND_RETURNIPODSERIALNUM, 1, true};
}

LegacyQuestion SoftwareVersionQuestion() {
  return {[](ipod& docked) { return docked.command_requestipodsoftwareversion(); },
          ipod::IPOD_COMMAND_REQUESTIPODSOFTWAREVERSION,
          ipod::IPOD_COMMAND_RETURNIPODSOFTWAREVERSION, 3};
}

std::string TextIn(const LegacyAnswer& answer, std::size_t at) {
  return Utf8(Wide(reinterpret_cast<const char*>(answer.data.data()) + at).c_str());
}

std::string Dotted(const std::vector<std::uint8_t>& bytes, const char* first_separator) {
  return std::to_string(bytes[0]) + first_separator + std::to_string(bytes[1]) + "." +
         std::to_string(bytes[2]);
}

std::string ShownModelNumber(const std::vector<std::uint8_t>& id) {
  char text[16];
  std::snprintf(text, sizeof text, "%02x%02x|%02x%02x", id[0], id[1], id[2], id[3]);
  return text;
}

}  // namespace ipodctl
