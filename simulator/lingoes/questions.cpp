// SPDX-License-Identifier: MIT
// Asks the accessory about itself and checks what it answers.

#include "questions.h"

#include <algorithm>

#include "simulator/protocol/accessory_information.h"

namespace ipodsim {
namespace {

// The information that is asked for when the accessory says that it has it.
constexpr std::uint8_t kWanted[] = {kAccessoryName, kFirmwareVersion, kHardwareVersion,
                                    kManufacturer,  kModelNumber,     kSerialNumber,
                                    kMaxPayload};

// How long an accessory may take for its answer while it goes on with something else. Only the end
// of a run is so strict; until then it has all of the time-out.
constexpr Microseconds kReactionTime = 500 * kMillisecond;

std::size_t SizeOf(std::uint8_t type) {
  switch (type) {
    case kCapabilities:
      return 4;
    case kMaxPayload:
      return 2;
    default:
      return 3;
  }
}

}  // namespace

void Questions::Start(std::uint32_t announced_lingoes) {
  Stop();
  answers_.clear();
  if (!settings_.asks_accessory) return;
  waiting_.push_back(
      {kGeneral, general::kGetAccessoryInfo, {kCapabilities}, general::kRetAccessoryInfo});
  if ((announced_lingoes & (1u << kSports)) != 0)
    waiting_.push_back({kSports, sports::kGetDeviceCaps, {}, sports::kRetDeviceCaps});
  if ((announced_lingoes & (1u << kStorage)) != 0)
    waiting_.push_back({kStorage, storage::kGetAccessoryCaps, {}, storage::kRetAccessoryCaps});
  AskNext();
}

void Questions::Stop() {
  waiting_.clear();
  for (Question& question : asked_) question.forgiven = true;
  in_turn_ = false;
}

void Questions::Forget() {
  waiting_.clear();
  asked_.clear();
  answers_.clear();
  expected_.clear();
  in_turn_ = false;
}

void Questions::AskOutOfTurn() {
  // By the value of an Interjection.
  static const Question kQuestions[] = {
      {kGeneral, general::kGetAccessoryInfo, {kCapabilities}, general::kRetAccessoryInfo},
      {kGeneral, general::kGetAccessoryInfo, {kAccessoryName}, general::kRetAccessoryInfo},
      {kSports, sports::kGetDeviceCaps, {}, sports::kRetDeviceCaps},
      {kStorage, storage::kGetAccessoryCaps, {}, storage::kRetAccessoryCaps},
  };
  Random& random = link_->dice().Choices(Fault::kUnaskedRequests);
  const auto drawn = static_cast<Interjection>(random.Below(kInterjectionCount));
  const Interjection choice = settings_.faults.interjection.value_or(drawn);
  if (choice == Interjection::kNotifies) {
    link_->Send(kGeneral, general::kIpodNotification, {0x02, 0x00}, link_->now());
    return;
  }
  AskAside(kQuestions[static_cast<std::size_t>(choice)]);
}

void Questions::AskAbout(const Request& request) {
  if (!settings_.asks_during_session) return;
  if (request.lingo == kSports && request.command == sports::kGetIpodCaps) {
    AskAside({kSports, sports::kGetDeviceVersion, {}, sports::kRetDeviceVersion});
    AskAside({kSports, sports::kGetDeviceCaps, {}, sports::kRetDeviceCaps});
  }
  if (request.lingo == kStorage && request.command == storage::kGetIpodCaps) {
    AskAside({kStorage, storage::kGetAccessoryCaps, {}, storage::kRetAccessoryCaps});
  }
}

// Asked without waiting for the answer; the question that is waited for stays the last.
void Questions::AskAside(Question question) {
  std::optional<Question> current;
  if (in_turn_ && !asked_.empty()) {
    current = asked_.back();
    asked_.pop_back();
  }
  Ask(std::move(question), link_->now());
  if (current) asked_.push_back(*current);
}

void Questions::Ask(Question question, Microseconds due) {
  question.carried = link_->identifiers_on();
  question.identifier = link_->Send(question.lingo, question.command, question.data, due);
  question.asked_at = due;
  asked_.push_back(std::move(question));
}

void Questions::AskNext() {
  in_turn_ = !waiting_.empty();
  if (!in_turn_) return;
  Question question = waiting_.front();
  waiting_.pop_front();
  Ask(std::move(question), link_->NextTurn());
}

bool Questions::Answers(const Question& question, const Request& request) const {
  return question.lingo == request.lingo && question.answer == request.command &&
         (question.data.empty() || question.data[0] == request.data[0]);
}

bool Questions::Handle(const Request& request) {
  if (request.rule == nullptr || !request.rule->IsAnswer()) return false;
  const auto found = std::find_if(asked_.rbegin(), asked_.rend(), [&](const Question& question) {
    return Answers(question, request);
  });
  if (found == asked_.rend()) {
    link_->Report(MistakeKind::kUnaskedAnswer,
                  CommandName(request.lingo, request.command) + " without a request for it");
    return true;
  }
  const Question question = *found;
  const bool waited_for = in_turn_ && found == asked_.rbegin();
  asked_.erase(std::next(found).base());
  CheckAnswer(question, request);
  if (waited_for) AskNext();
  return true;
}

void Questions::CheckAnswer(const Question& question, const Request& request) {
  const bool echoes = request.rule->nature == CommandNature::kAnswerEchoing;
  if (echoes && question.carried && !question.forgiven &&
      request.identifier != question.identifier) {
    // The accessory echoes the last request that it met in a lingo; two can be under way.
    const bool other = std::any_of(asked_.begin(), asked_.end(), [&](const Question& asked) {
      return Answers(asked, request) && request.identifier == asked.identifier;
    });
    if (!other) {
      link_->Report(MistakeKind::kIdentifierNotEchoed, CommandName(request.lingo, request.command) +
                                                           " does not echo " +
                                                           std::to_string(question.identifier));
    }
  }
  if (request.lingo == kGeneral) CheckInformation(request);
}

void Questions::CheckInformation(const Request& request) {
  const std::uint8_t type = request.data[0];
  const std::string name = "RetAccessoryInfo of type " + std::to_string(type);
  Bytes value(request.data.begin() + 1, request.data.end());
  if (IsTextInformation(type)) {
    if (value.empty() || value.back() != 0 || std::count(value.begin(), value.end(), 0) != 1) {
      link_->Report(MistakeKind::kWrongAnswer, name + " is not a text that ends in one zero byte");
      return;
    }
  } else if (value.size() != SizeOf(type)) {
    link_->Report(MistakeKind::kWrongAnswer, name + " holds " + std::to_string(value.size()) +
                                                 " bytes instead of " +
                                                 std::to_string(SizeOf(type)));
    return;
  }
  const auto expected = expected_.find(type);
  if (expected != expected_.end() && expected->second != value) {
    link_->Report(MistakeKind::kWrongAnswer, name + " differs from the identification token");
  }
  if (type == kCapabilities) {
    const std::uint32_t mask = Get32(value, 0);
    std::deque<Question> wanted;
    for (const std::uint8_t kind : kWanted) {
      if ((mask & (1u << kind)) != 0)
        wanted.push_back(
            {kGeneral, general::kGetAccessoryInfo, {kind}, general::kRetAccessoryInfo});
    }
    // Only the first answer leads to questions; asked again out of turn it just confirms.
    if (answers_.count(kCapabilities) == 0) {
      waiting_.insert(waiting_.begin(), wanted.begin(), wanted.end());
    }
  }
  answers_[type] = std::move(value);
}

// A question that nothing follows may have met nobody: an accessory that reads its port only now
// and then, or one that has closed it. One that goes on with something else was there to answer.
void Questions::NoticeFrame() {
  for (Question& question : asked_) {
    if (link_->now() >= question.asked_at) question.heard_since = true;
  }
  DropOverdue();
}

void Questions::Finish() {
  for (const Question& question : asked_) {
    const bool had_time = link_->now() - question.asked_at >= kReactionTime;
    if (IsOverdue(question) || (question.heard_since && had_time)) ReportMissing(question);
  }
  asked_.clear();
}

bool Questions::IsOverdue(const Question& question) const {
  return link_->now() - question.asked_at >= settings_.answer_timeout;
}

void Questions::DropOverdue() {
  for (auto it = asked_.begin(); it != asked_.end();) {
    if (!IsOverdue(*it) || !(it->heard_since || it->forgiven)) {
      ++it;
      continue;
    }
    ReportMissing(*it);
    if (std::next(it) == asked_.end() && in_turn_) in_turn_ = false;
    it = asked_.erase(it);
  }
  if (!in_turn_) AskNext();
}

void Questions::ReportMissing(const Question& question) {
  // On a faulty line the question may never have arrived.
  if (question.forgiven || link_->LineIsFaulty()) return;
  link_->Report(MistakeKind::kMissingAnswer,
                CommandName(question.lingo, question.command, Sender::kIpod) + " was not answered");
}

void Questions::Advance(Microseconds now) {
  if (!HasCome(NextTimeout(), now)) return;
  if (in_turn_ && IsOverdue(asked_.back())) in_turn_ = false;
  DropOverdue();
}

std::optional<Microseconds> Questions::NextTimeout() const {
  std::optional<Microseconds> next;
  for (const Question& question : asked_) {
    const bool waited_for = in_turn_ && &question == &asked_.back() && !waiting_.empty();
    if (!waited_for && !question.heard_since && !question.forgiven) continue;
    const Microseconds timeout = question.asked_at + settings_.answer_timeout;
    if (!next || timeout < *next) next = timeout;
  }
  return next;
}

}  // namespace ipodsim
