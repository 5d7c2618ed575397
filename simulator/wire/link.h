// SPDX-License-Identifier: MIT
// The iPod's end of the conversation: answers under the right transaction identifier and at the
// right time, requests of its own, and the list of what the accessory did wrong.

#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "line.h"
#include "mistakes.h"
#include "outbox.h"
#include "simulator/protocol/command_table.h"
#include "simulator/settings/ipod_faults.h"
#include "simulator/settings/settings.h"
#include "trace.h"

namespace ipodsim {

/// A frame from the accessory, its transaction identifier taken off.
struct Request {
  const CommandRule* rule = nullptr;
  std::uint8_t lingo = 0;
  std::uint16_t command = 0;
  Bytes data;
  std::optional<std::uint16_t> identifier;
};

class Link {
 public:
  explicit Link(const Settings& settings);

  void SetNow(Microseconds now) { now_ = now; }
  Microseconds now() const { return now_; }

  /// Answers echo the request's identifier when it carried one.
  void Reply(const Request& request, std::uint16_t command, Bytes data);
  void Acknowledge(const Request& request, AckStatus status);
  /// Reports a mistake and acknowledges the request as one with a bad parameter.
  void Refuse(const Request& request, MistakeKind kind, const std::string& detail);
  /// Many answers to one request, one after another.
  void Stream(const Request& request, std::uint16_t command, std::vector<Bytes> answers);
  /// First acknowledges the request as pending; its answers then come later.
  void AcknowledgePending(const Request& request);
  /// Sends something unasked and returns the identifier that it went out under.
  std::uint16_t Send(std::uint8_t lingo, std::uint16_t command, Bytes data, Microseconds due);
  /// Sends bytes that came back as they were.
  void Echo(const Bytes& bytes) { line_.SendSound(bytes, now_); }
  /// When the iPod next gets around to something of its own: after the answers that it owes.
  Microseconds NextTurn();

  /// A new request is being served.
  void BeginRequest(const Request& request);
  void CancelStreams(std::optional<std::uint16_t> identifier) { outbox_.CancelStreams(identifier); }

  /// Transaction identifiers are on between an accepted StartIDPS and IdentifyDeviceLingoes.
  bool identifiers_on() const { return identifiers_on_; }
  void SetIdentifiers(bool on);
  /// Sees that the accessory's identifiers step as they should.
  void CheckIdentifier(const Request& request);

  void Report(MistakeKind kind, const std::string& detail);
  const std::vector<Mistake>& mistakes() const { return mistakes_; }

  FaultDice& dice() { return dice_; }
  /// Whether a fault may keep the accessory from hearing what the iPod says.
  bool LineIsFaulty() const;
  /// Whether a fault may make an answer useless to the accessory, the line's faults included.
  bool AnswersAreFaulty() const;
  /// The answer that the accessory has to wait for, if any; none while answers are faulty, since
  /// the accessory may then have given up on it.
  const Outbox::Item* NextAnswer() const;

  std::optional<Microseconds> NextDue() const;
  Bytes Transmit(Microseconds now);
  void Clear();

  std::function<void(const TraceLine&)> trace;
  void Note(TraceLine::Direction direction, const std::string& text) const;

 private:
  Microseconds DrawLatency();
  Microseconds NextReplyTime();
  Microseconds DrawLateness();
  void Answer(Microseconds due, const Request& request, std::uint16_t command, Bytes data,
              bool streamed);
  void SendNow(const Outbox::Item& item, Microseconds at);
  void Queue(Microseconds due, const Frame& frame, std::optional<std::uint16_t> identifier,
             Outbox::Item item);
  void QueueAnswer(Microseconds due, const Request& request, std::uint16_t command, Bytes data,
                   bool streamed, bool after_next);
  Bytes Misshapen(Bytes data);

  const Settings& settings_;
  FaultDice dice_;
  Random latency_;
  Outbox outbox_;
  Line line_;
  Microseconds now_ = 0;
  Microseconds last_reply_due_ = 0;
  std::vector<Outbox::Item> held_back_;  // until another answer has gone out
  bool pending_ = false;
  bool identifiers_on_ = false;
  std::uint16_t own_identifier_ = 1;
  std::optional<std::uint16_t> last_identifier_;  // of the accessory
  std::uint32_t allowed_extra_steps_ = 0;
  std::vector<Mistake> mistakes_;
};

}  // namespace ipodsim
