// SPDX-License-Identifier: MIT
// Times, numbers and sends what the iPod has to say.

#include "link.h"

#include <algorithm>
#include <utility>

namespace ipodsim {

Link::Link(const Settings& settings)
    : settings_(settings),
      dice_(settings.faults, settings.seed),
      latency_(settings.seed, 3),
      line_(&dice_) {}

void Link::BeginRequest(const Request& request) {
  pending_ = false;
  dice_.NoticeFrame(request.lingo, request.command);
}

void Link::Reply(const Request& request, std::uint16_t command, Bytes data) {
  Answer(NextReplyTime(), request, command, std::move(data), false);
}

void Link::Acknowledge(const Request& request, AckStatus status) {
  Bytes data = {static_cast<std::uint8_t>(status)};
  if (request.lingo == kExtended) Put8(data, request.command >> 8);
  Put8(data, request.command);
  const std::uint16_t command = AckCommand(request.lingo);
  if (command != kNoAck) Reply(request, command, std::move(data));
}

void Link::Refuse(const Request& request, MistakeKind kind, const std::string& detail) {
  Report(kind, detail);
  Acknowledge(request, AckStatus::kBadParameter);
}

void Link::Stream(const Request& request, std::uint16_t command, std::vector<Bytes> answers) {
  Microseconds due = NextReplyTime();
  for (Bytes& answer : answers) {
    Answer(std::max(due, last_reply_due_), request, command, std::move(answer), true);
    due = std::max(due, last_reply_due_) + settings_.record_period;
  }
}

void Link::AcknowledgePending(const Request& request) {
  Bytes data = {static_cast<std::uint8_t>(AckStatus::kPending)};
  if (request.lingo == kExtended) Put8(data, request.command >> 8);
  Put8(data, request.command);
  Put32(data, static_cast<std::uint32_t>(settings_.pending_time / kMillisecond));
  const std::uint16_t command = AckCommand(request.lingo);
  if (command == kNoAck || pending_) return;
  QueueAnswer(NextReplyTime(), request, command, std::move(data), false, false);
  pending_ = true;
}

std::uint16_t Link::Send(std::uint8_t lingo, std::uint16_t command, Bytes data, Microseconds due) {
  const std::uint16_t identifier = own_identifier_;
  std::optional<std::uint16_t> carried;
  if (identifiers_on_) {
    carried = identifier;
    ++own_identifier_;
    // An accessory steps its own counter once more when it meets a request whose identifier is not
    // behind it.
    ++allowed_extra_steps_;
  }
  Queue(due, {lingo, command, std::move(data)}, carried, {});
  return identifier;
}

void Link::SetIdentifiers(bool on) {
  identifiers_on_ = on;
  last_identifier_.reset();
  allowed_extra_steps_ = 0;
  if (on) own_identifier_ = 1;
}

void Link::CheckIdentifier(const Request& request) {
  if (!identifiers_on_ || !request.identifier) return;
  const std::uint16_t identifier = *request.identifier;
  if (request.rule != nullptr && request.rule->nature == CommandNature::kAnswerEchoing) {
    // The echo is checked by whoever asked; the accessory's own counter steps all the same.
    ++allowed_extra_steps_;
    return;
  }
  const bool cancels = request.lingo == kGeneral && request.command == general::kCancelCommand;
  if (!cancels && last_identifier_) {
    const auto steps = static_cast<std::uint16_t>(identifier - *last_identifier_);
    // An accessory that has just opened its port counts from 0 again.
    const bool restarted = identifier <= allowed_extra_steps_;
    const bool stepped = steps >= 1 && std::uint32_t{steps} - 1 <= allowed_extra_steps_;
    if (stepped) {
      allowed_extra_steps_ -= std::uint32_t{steps} - 1;
    } else if (!restarted) {
      Report(MistakeKind::kIdentifierNotStepping,
             CommandName(request.lingo, request.command) + " came under " +
                 std::to_string(identifier) + " after " + std::to_string(*last_identifier_));
    }
  }
  last_identifier_ = identifier;
}

void Link::Report(MistakeKind kind, const std::string& detail) {
  mistakes_.push_back({kind, MistakeName(kind), detail, now_});
  Note(TraceLine::Direction::kNote, std::string("mistake: ") + MistakeName(kind) + ": " + detail);
}

bool Link::LineIsFaulty() const {
  for (const Fault fault :
       {Fault::kDroppedBytes, Fault::kDoubledBytes, Fault::kFlippedBits, Fault::kLateBytes,
        Fault::kSplitBytes, Fault::kJunk, Fault::kUnplug, Fault::kRestart, Fault::kHangUp}) {
    if (settings_.faults.MayStrike(fault)) return true;
  }
  return false;
}

bool Link::AnswersAreFaulty() const {
  for (const Fault fault :
       {Fault::kPendingAcks, Fault::kShortReplies, Fault::kLongReplies, Fault::kLateAnswers,
        Fault::kDoubledAnswers, Fault::kShuffledAnswers, Fault::kMissingAnswers}) {
    if (settings_.faults.MayStrike(fault)) return true;
  }
  return LineIsFaulty();
}

const Outbox::Item* Link::NextAnswer() const {
  return AnswersAreFaulty() ? nullptr : outbox_.NextAnswer(now_);
}

std::optional<Microseconds> Link::NextDue() const {
  const auto queued = outbox_.NextDue();
  const auto sending = line_.NextDue();
  if (!queued || !sending) return queued ? queued : sending;
  return std::min(*queued, *sending);
}

Bytes Link::Transmit(Microseconds now) {
  Microseconds due = 0;
  Outbox::Item item;
  while (outbox_.Pop(now, &due, &item)) {
    if (item.after_next) {
      held_back_.push_back(std::move(item));
      continue;
    }
    SendNow(item, due);
    if (!item.asked) continue;
    for (const Outbox::Item& held : std::exchange(held_back_, {})) SendNow(held, due);
  }
  return line_.PopDue(now);
}

void Link::SendNow(const Outbox::Item& item, Microseconds at) {
  if (trace) {
    Frame frame;
    ParseFrame(item.wire, &frame);
    trace({at, TraceLine::Direction::kToAccessory,
           Describe(frame, item.has_identifier, Sender::kIpod)});
  }
  line_.Send(item.wire, at);
}

void Link::Clear() {
  outbox_.Clear();
  held_back_.clear();
  line_.Clear();
  last_reply_due_ = 0;
  SetIdentifiers(false);
}

void Link::Note(TraceLine::Direction direction, const std::string& text) const {
  if (trace) trace({now_, direction, text});
}

// Half of the answers within 8 ms, 95 in 100 within 15 ms, the rest with a long tail.
Microseconds Link::DrawLatency() {
  const double place = latency_.Fraction();
  const double within = latency_.Fraction();
  double milliseconds = 0;
  if (place < 0.5) {
    milliseconds = 4 + 4 * within;
  } else if (place < 0.95) {
    milliseconds = 8 + 7 * within;
  } else {
    milliseconds = 15 + 225 * within * within * within;
  }
  return static_cast<Microseconds>(milliseconds * 1000);
}

Microseconds Link::NextReplyTime() {
  const Microseconds latency = settings_.fixed_latency ? *settings_.fixed_latency : DrawLatency();
  const Microseconds due = now_ + latency + (pending_ ? settings_.pending_time : 0);
  // One answer never overtakes another.
  last_reply_due_ = std::max(last_reply_due_, due);
  return last_reply_due_;
}

Microseconds Link::NextTurn() {
  const Microseconds latency = settings_.fixed_latency ? *settings_.fixed_latency : DrawLatency();
  return std::max(last_reply_due_, now_) + latency;
}

Microseconds Link::DrawLateness() {
  if (settings_.faults.late_by) return *settings_.faults.late_by;
  return (200 + dice_.Choices(Fault::kLateAnswers).Below(1500)) * kMillisecond;
}

// One answer, and what befalls it.
void Link::Answer(Microseconds due, const Request& request, std::uint16_t command, Bytes data,
                  bool streamed) {
  dice_.NoticeAnswer();
  data = Misshapen(std::move(data));
  if (dice_.Strikes(Fault::kLateAnswers)) {
    due += DrawLateness();
    last_reply_due_ = std::max(last_reply_due_, due);
  }
  const bool missing = dice_.Strikes(Fault::kMissingAnswers);
  const bool doubled = dice_.Strikes(Fault::kDoubledAnswers);
  const bool after_next = dice_.Strikes(Fault::kShuffledAnswers);
  if (missing) return;
  if (doubled) QueueAnswer(due, request, command, data, streamed, after_next);
  QueueAnswer(due, request, command, std::move(data), streamed, after_next);
}

void Link::QueueAnswer(Microseconds due, const Request& request, std::uint16_t command, Bytes data,
                       bool streamed, bool after_next) {
  Outbox::Item item;
  item.asked = Outbox::Asked{request.lingo, request.command, now_, pending_};
  item.streamed = streamed;
  item.after_next = after_next;
  Queue(due, {request.lingo, command, std::move(data)}, request.identifier, std::move(item));
}

void Link::Queue(Microseconds due, const Frame& frame, std::optional<std::uint16_t> identifier,
                 Outbox::Item item) {
  Frame whole{frame.lingo, frame.command, {}};
  if (identifier) Put16(whole.data, *identifier);
  whole.data.insert(whole.data.end(), frame.data.begin(), frame.data.end());
  item.wire = BuildFrame(whole, settings_.large_frames_only);
  item.has_identifier = identifier.has_value();
  item.identifier = identifier.value_or(0);
  outbox_.Add(due, std::move(item));
}

Bytes Link::Misshapen(Bytes data) {
  if (!data.empty() && dice_.Strikes(Fault::kShortReplies)) {
    Random& random = dice_.Choices(Fault::kShortReplies);
    data.resize(random.Below(static_cast<std::uint32_t>(data.size())));
  }
  if (dice_.Strikes(Fault::kLongReplies)) {
    Random& random = dice_.Choices(Fault::kLongReplies);
    for (std::uint32_t left = 1 + random.Below(300); left > 0; --left) {
      Put8(data, random.Below(256));
    }
  }
  return data;
}

}  // namespace ipodsim
