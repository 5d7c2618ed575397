// SPDX-License-Identifier: MIT
// Judges the order of commands.

#include "order.h"

#include <string>

namespace ipodsim {
namespace {

// How long an accessory must at least wait for an answer before it may try again.
constexpr Microseconds kPatience = 500 * kMillisecond;

std::string NameOf(std::uint8_t lingo, std::uint16_t command) {
  return std::string(LingoName(lingo)) + " " + CommandName(lingo, command);
}

// Consoles in the field send these and go on without reading the answer: they wake the iPod so, and
// a button's release follows its press after 30 ms. Older ones also identify so, select a track,
// which then plays, send the rows of a picture, and read of an artwork but the first part.
bool IsNotAwaited(const Request& request, bool by_older_console) {
  switch (request.lingo) {
    case kGeneral:
      return request.command == general::kRequestRemoteUiMode ||
             request.command == general::kExitRemoteUiMode ||
             (by_older_console && request.command == general::kIdentifyDeviceLingoes);
    case kSimpleRemote:
      return true;
    case kExtended:
      return by_older_console && (request.command == extended::kSelectDbRecord ||
                                  request.command == extended::kSelectSortDbRecord ||
                                  request.command == extended::kSetDisplayImage ||
                                  request.command == extended::kGetTrackArtworkData);
    default:
      return false;
  }
}

bool IsRequest(const Request& request) {
  return request.rule->nature == CommandNature::kRequest ||
         request.rule->nature == CommandNature::kRequestWithout;
}

}  // namespace

bool Order::Check(const Request& request) {
  const bool welcome = CheckIdentified(request);
  CheckTurn(request);
  if (request.lingo != kExtended || general_->in_extended_mode()) return true;
  if (welcome) {
    link_->Report(MistakeKind::kWrongMode,
                  CommandName(request.lingo, request.command) + " before EnterRemoteUIMode");
  }
  link_->Acknowledge(request, AckStatus::kFailed);
  return false;
}

void Order::NoticeMissingIdentifier(const Request& request) {
  // A console cannot know in what state another one left the iPod, so it may leave the remote user
  // interface before it identifies, without an identifier. Whether it does is known at its next
  // frame.
  if (request.lingo == kGeneral && request.command == general::kExitRemoteUiMode) {
    exit_without_identifier_ = true;
    return;
  }
  link_->Report(MistakeKind::kIdentifierMissing,
                CommandName(request.lingo, request.command) + " came without one");
}

void Order::NoticeFrame(const Request& request) {
  if (exit_without_identifier_ && !Identification::Begins(request)) {
    link_->Report(MistakeKind::kIdentifierMissing,
                  CommandName(kGeneral, general::kExitRemoteUiMode) +
                      " came without one and no identification followed");
  }
  exit_without_identifier_ = false;
}

bool Order::CheckIdentified(const Request& request) {
  if (!identification_->identified()) {
    if (!Identification::IsAllowedBefore(request)) {
      link_->Report(MistakeKind::kCommandBeforeIdentification,
                    NameOf(request.lingo, request.command));
      return false;
    }
    return true;
  }
  // Consoles in the field press buttons without announcing the Simple Remote lingo.
  const bool announced = (identification_->announced() & (1u << request.lingo)) != 0;
  if (announced || request.lingo == kGeneral || request.lingo == kSimpleRemote) return true;
  link_->Report(MistakeKind::kLingoNotAnnounced, NameOf(request.lingo, request.command));
  return false;
}

// Nothing may come in the middle of a record stream but its cancellation, and no second command
// before the first is answered. An accessory that begins to identify is excused: it cannot know
// what another one left behind.
void Order::CheckTurn(const Request& request) {
  const Microseconds pause = link_->now() - last_frame_at_;
  last_frame_at_ = link_->now();
  const bool cancels = request.lingo == kGeneral && request.command == general::kCancelCommand;
  if (!IsRequest(request) || cancels) return;
  // An answer that it did not wait for is read in place of the next one, and so on until it pauses.
  if (pause >= kPatience) answers_behind_ = false;
  if (IsNotAwaited(request, identification_->by_older_console())) answers_behind_ = true;
  const Outbox::Item* answer = link_->NextAnswer();
  // Consoles in the field take the acknowledgement that an answer is pending for the answer.
  if (answer != nullptr && answer->asked->was_pending) answers_behind_ = true;
  if (answer == nullptr || answers_behind_ || Identification::Begins(request)) return;
  const std::string detail = NameOf(request.lingo, request.command) + " before the end of " +
                             NameOf(answer->asked->lingo, answer->asked->command);
  if (answer->streamed) {
    link_->Report(MistakeKind::kCommandDuringStream, detail);
  } else if (link_->now() - answer->asked->at < kPatience) {
    link_->Report(MistakeKind::kCommandBeforeAnswer, detail);
  }
}

void Order::Forget() {
  exit_without_identifier_ = false;
  answers_behind_ = false;
}

}  // namespace ipodsim
