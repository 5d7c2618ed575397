// SPDX-License-Identifier: MIT
#include "any_ipod.h"

#include <utility>

namespace fuzz {
namespace {

using Bytes = AnyIpod::Bytes;

constexpr std::uint8_t kGeneral = 0x00;
constexpr std::uint8_t kExtended = 0x04;
constexpr std::uint8_t kSports = 0x09;
constexpr std::uint8_t kStorage = 0x0C;

// From the lingo on. At most 65535 bytes, of which the small form takes 255.
Bytes Frame(const Bytes& content, bool large) {
  Bytes frame = {0xFF, 0x55};
  if (large || content.size() > 255) {
    frame.push_back(0);
    frame.push_back(static_cast<std::uint8_t>(content.size() >> 8));
  }
  frame.push_back(static_cast<std::uint8_t>(content.size()));
  frame.insert(frame.end(), content.begin(), content.end());
  unsigned sum = 0;
  for (std::size_t i = 2; i < frame.size(); ++i) sum += frame[i];
  frame.push_back(static_cast<std::uint8_t>(0U - sum));
  return frame;
}

// The content of the frame that the bytes end with, or nothing.
std::optional<Bytes> Content(const Bytes& heard) {
  constexpr std::size_t kSmallHeader = 3;
  constexpr std::size_t kLargeHeader = 5;
  if (heard.size() <= kSmallHeader) return std::nullopt;
  const bool large = heard[2] == 0;
  const std::size_t header = large ? kLargeHeader : kSmallHeader;
  if (heard.size() <= header) return std::nullopt;
  const std::size_t length = large ? std::size_t{heard[3]} << 8 | heard[4] : heard[2];
  if (heard.size() < header + length + 1) return std::nullopt;
  const auto begin = heard.begin() + static_cast<std::ptrdiff_t>(header);
  return Bytes(begin, begin + static_cast<std::ptrdiff_t>(length));
}

// A host may send its sync byte alone, and again.
bool MayBeFrame(const Bytes& heard) {
  return heard[0] == 0xFF && (heard.size() < 2 || heard[1] == 0x55);
}

void AppendCommand(std::uint8_t lingo, std::uint16_t command, Bytes* content) {
  if (lingo == kExtended) content->push_back(static_cast<std::uint8_t>(command >> 8));
  content->push_back(static_cast<std::uint8_t>(command));
}

Bytes Head(const Question& question, std::uint16_t command) {
  Bytes content = {question.lingo};
  AppendCommand(question.lingo, command, &content);
  content.insert(content.end(), question.identifier.begin(), question.identifier.end());
  return content;
}

// Most answers have the number behind their question's.
std::uint16_t AnswerTo(const Question& question) {
  if (question.lingo == kGeneral && question.command == 0x4F) return 0x51;
  if (question.lingo == kStorage && question.command == 0x12) return 0x04;
  return static_cast<std::uint16_t>(question.command + 1);
}

std::uint16_t AckIn(std::uint8_t lingo) {
  switch (lingo) {
    case kGeneral:
      return 0x02;
    case kExtended:
      return 0x0001;
    case kSports:
      return 0x80;
    default:
      return 0x00;
  }
}

Bytes Ack(const Question& question, std::uint8_t status) {
  Bytes content = Head(question, AckIn(question.lingo));
  content.push_back(status);
  AppendCommand(question.lingo, question.command, &content);
  return content;
}

bool MayCarryIdentifier(std::uint8_t lingo, std::uint16_t command) {
  return lingo != kGeneral || (command != 0x03 && command != 0x13 && command != 0x28);
}

}  // namespace

void AnyIpod::Behave() {
  behaves_ = true;
  heard_.clear();
}

void AnyIpod::Send(const Bytes& bytes) {
  outgoing_.insert(outgoing_.end(), bytes.begin(), bytes.end());
}

void AnyIpod::Receive(const std::uint8_t* data, std::size_t size, std::int64_t /*now_us*/) {
  for (std::size_t i = 0; i < size; ++i) {
    heard_.push_back(data[i]);
    if (!MayBeFrame(heard_)) {
      heard_.clear();
      if (data[i] == 0xFF) heard_.push_back(data[i]);
    }
    const std::optional<Bytes> content = Content(heard_);
    if (!content) continue;
    heard_.clear();
    Answer(ReadQuestion(*content));
  }
}

std::optional<std::int64_t> AnyIpod::NextEvent() {
  if (outgoing_.empty()) return std::nullopt;
  return 0;
}

Bytes AnyIpod::Transmit(std::int64_t /*now_us*/) { return std::exchange(outgoing_, {}); }

Question AnyIpod::ReadQuestion(const Bytes& content) const {
  Input input(content.data(), content.size());
  Question question;
  question.lingo = input.Byte();
  if (question.lingo == kExtended) question.command = static_cast<std::uint16_t>(input.Byte() << 8);
  question.command = static_cast<std::uint16_t>(question.command | input.Byte());
  if (identifiers_ && MayCarryIdentifier(question.lingo, question.command)) {
    question.identifier = input.Bytes(2);
  }
  return question;
}

void AnyIpod::Answer(const Question& question) {
  constexpr std::uint8_t kBadParameter = 0x04;
  if (!behaves_) {
    if (!input_->empty()) return SayNext(question);
    return Send(Frame(Ack(question, kBadParameter), false));
  }
  if (question.lingo != kGeneral || question.command != 0x0D) return;
  Bytes content = Head(question, AnswerTo(question));
  const Bytes model = {0x00, 0x01, 0x02, 0x03, 'M', 'A', '4', '7', '7', 0x00};
  content.insert(content.end(), model.begin(), model.end());
  Send(Frame(content, false));
}

void AnyIpod::SayNext(const Question& question) {
  constexpr unsigned kAnother = 0x04;
  constexpr unsigned kLarge = 0x08;
  unsigned how = kAnother;
  while ((how & kAnother) != 0 && !input_->empty()) {
    how = input_->Byte();
    const Bytes bytes = input_->Bytes(input_->Byte());
    const bool large = (how & kLarge) != 0;
    Bytes content;
    switch (how & 3) {
      case 0:
        Send(bytes);
        continue;
      case 1:
        content = bytes;
        break;
      case 2:
        content = Head(question, AnswerTo(question));
        content.insert(content.end(), bytes.begin(), bytes.end());
        break;
      default:
        content = Ack(question, bytes.empty() ? std::uint8_t{0} : bytes[0]);
        break;
    }
    Send(Frame(content, large));
  }
}

}  // namespace fuzz
