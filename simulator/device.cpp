// SPDX-License-Identifier: MIT
// Parses and checks frames and hands each to the subject that serves it.

#include "device.h"

#include <algorithm>

namespace ipodsim {
namespace {

MistakeKind MistakeOf(FramingProblem problem) {
  switch (problem) {
    case FramingProblem::kBadChecksum:
      return MistakeKind::kBadChecksum;
    case FramingProblem::kTruncated:
      return MistakeKind::kTruncatedFrame;
    case FramingProblem::kStrayBytes:
      return MistakeKind::kStrayBytes;
    case FramingProblem::kNoCommand:
      break;
  }
  return MistakeKind::kFrameWithoutCommand;
}

bool IsEarlier(std::optional<Microseconds> time, std::optional<Microseconds> other) {
  return time && (!other || *time < *other);
}

}  // namespace

SimulatedIpod::Device::Device(Settings given)
    : settings(std::move(given)),
      traits(TraitsOf(settings.profile)),
      link(settings),
      player(&settings.library, settings.seed),
      questions(&link, settings),
      identification(&link, &questions, settings),
      general(&link, settings),
      order(&link, &identification, &general),
      browsing(&link, &player, settings),
      notifications(&link, &player, settings),
      playback(&link, &player, &notifications, settings),
      remotes(&link, &player, &playback),
      artwork(&link, &player, settings),
      chapters(&link, &player),
      display(&link),
      sports(&link, settings),
      storage(&link, settings) {
  reader.on_frame = [this](const Frame& frame, const Bytes&) { OnFrame(frame); };
  reader.on_problem = [this](FramingProblem problem, const std::string& detail) {
    link.Report(MistakeOf(problem), detail);
  };
  DrawCountdown();
}

void SimulatedIpod::Device::OnFrame(const Frame& frame) {
  Request request;
  request.rule = FindCommand(frame.lingo, frame.command);
  request.lingo = frame.lingo;
  request.command = frame.command;
  request.data = frame.data;
  const bool carries = ParseIdentifier(&request);
  if (link.trace) {
    link.Note(TraceLine::Direction::kFromAccessory,
              Describe(frame, request.identifier.has_value()));
  }
  if (!traits.answers) return;
  link.BeginRequest(request);
  if (request.rule == nullptr) {
    link.Report(MistakeKind::kUnknownCommand, std::string(LingoName(frame.lingo)) + " " +
                                                  CommandName(frame.lingo, frame.command));
    link.Acknowledge(request, AckStatus::kUnknown);
    return;
  }
  if (IsUnheard(request)) return;
  if (!CheckSize(request)) return;
  order.NoticeFrame(request);
  if (carries && !request.identifier) order.NoticeMissingIdentifier(request);
  link.CheckIdentifier(request);
  // An answer is never out of order: the question decided when it comes.
  if (questions.Handle(request)) return;
  storage.NoticeRequest(request);
  if (Identification::Begins(request)) {
    // It owes no answers from before.
    EndSession();
  } else {
    questions.NoticeFrame();
  }
  if (!order.Check(request)) return;
  if (IsStoppedByFault(request)) return;
  Serve(request);
  CountDown();
}

// Moves the transaction identifier, if there is one, from the data to its place; says whether there
// should be one.
bool SimulatedIpod::Device::ParseIdentifier(Request* request) {
  const CommandRule* rule = request->rule;
  const std::size_t size = request->data.size();
  const std::size_t least = rule == nullptr ? 0 : rule->least;
  // StartIDPS comes before identifiers are agreed on, and yet with one from some accessories.
  const bool starts = request->lingo == kGeneral && request->command == general::kStartIdps;
  const bool expected =
      !starts && link.identifiers_on() && (rule == nullptr || rule->CarriesIdentifier());
  if ((expected || starts) && size >= least + 2) {
    request->identifier = Get16(request->data, 0);
    request->data.erase(request->data.begin(), request->data.begin() + 2);
  }
  return expected;
}

// An iPod that wants identifiers does not hear the questions with which a session begins without
// one. What else comes so it refuses, under an identifier that nobody gave it.
bool SimulatedIpod::Device::IsUnheard(const Request& request) const {
  if (!traits.wants_identifiers || request.identifier || link.identifiers_on()) return false;
  return request.lingo == kGeneral && (request.command == general::kStartIdps ||
                                       request.command == general::kRequestLingoProtocolVersion);
}

bool SimulatedIpod::Device::CheckSize(const Request& request) {
  const std::size_t size = request.data.size();
  if (size >= request.rule->least && size <= request.rule->most) return true;
  link.Report(MistakeKind::kWrongPayloadSize,
              CommandName(request.lingo, request.command) + " with " + std::to_string(size) +
                  " bytes instead of " + std::to_string(request.rule->least));
  if (request.rule->nature == CommandNature::kRequest ||
      request.rule->nature == CommandNature::kRequestWithout) {
    link.Acknowledge(request, AckStatus::kBadParameter);
  }
  return false;
}

// The faults of the iPod itself. True when the command is not to be carried out.
bool SimulatedIpod::Device::IsStoppedByFault(const Request& request) {
  const bool starts = request.lingo == kGeneral && request.command == general::kStartIdps;
  if (starts && traits.identifies_by_tokens && settings.start_idps_needs_identifier &&
      !request.identifier) {
    return true;
  }
  FaultDice& dice = link.dice();
  if (dice.Strikes(Fault::kUnaskedRequests)) questions.AskOutOfTurn();
  const bool answered = request.rule->nature == CommandNature::kRequest ||
                        request.rule->nature == CommandNature::kRequestWithout;
  if (!answered) return false;
  if (traits.wants_identifiers && !link.identifiers_on() && !starts) {
    Request numbered = request;
    numbered.identifier = 0;
    link.Acknowledge(numbered, AckStatus::kBadParameter);
    return true;
  }
  if (dice.Strikes(Fault::kPendingAcks)) link.AcknowledgePending(request);
  if (!IsRefused(request)) return false;
  storage.NoticeRefusal(request);
  return true;
}

bool SimulatedIpod::Device::IsRefused(const Request& request) {
  if (link.dice().Strikes(Fault::kRefusedCommands)) {
    link.Acknowledge(request, AckStatus::kFailed);
    return true;
  }
  const auto refused = settings.refused.find({request.lingo, request.command});
  if (refused == settings.refused.end()) return false;
  link.Acknowledge(request, refused->second);
  return true;
}

// What an accessory that identifies anew left behind: it hears no more of its notifications, nor
// the rest of its records, and its files end where they are.
void SimulatedIpod::Device::EndSession() {
  link.CancelStreams(std::nullopt);
  notifications.SetMask(0);
  general.ForgetEvents();
  remotes.Forget();
  storage.EndSession();
}

void SimulatedIpod::Device::Serve(const Request& request) {
  questions.AskAbout(request);
  const bool had_tokens = identification.by_tokens();
  if (identification.Handle(request)) {
    if (!had_tokens && identification.by_tokens()) general.Apply(identification.tokens());
    return;
  }
  if (general.Handle(request) || browsing.Handle(request) || playback.Handle(request) ||
      artwork.Handle(request) || chapters.Handle(request) || display.Handle(request) ||
      remotes.Handle(request) || sports.Handle(request) || storage.Handle(request)) {
    return;
  }
  // Lingoes and services that this iPod does not offer.
  link.Acknowledge(request, AckStatus::kUnknown);
}

void SimulatedIpod::Device::Advance(Microseconds now) {
  if (HasCome(awake_at_, now)) {
    link.SetNow(*awake_at_);
    Replug();
  }
  for (auto timeout = questions.NextTimeout(); HasCome(timeout, now);
       timeout = questions.NextTimeout()) {
    notifications.Advance(*timeout);
    questions.Advance(*timeout);
  }
  notifications.Advance(now);
}

std::optional<Microseconds> SimulatedIpod::Device::NextEvent() const {
  if (!awake()) return awake_at_;
  std::optional<Microseconds> next = link.NextDue();
  for (const auto time : {notifications.NextEvent(), questions.NextTimeout()}) {
    if (IsEarlier(time, next)) next = time;
  }
  return next;
}

void SimulatedIpod::Device::Finish() {
  reader.Finish();
  questions.Finish();
  storage.EndSession();
}

void SimulatedIpod::Device::Unplug(std::optional<Microseconds> until) {
  plugged = false;
  awake_at_ = until;
  Forget("unplugged");
  if (player.state() != PlayerState::kStopped) player.Control(PlayControl::kPause, link.now());
}

void SimulatedIpod::Device::Restart(Microseconds until) {
  restarting_ = true;
  awake_at_ = until;
  Forget("restarts");
  player.Control(PlayControl::kStop, link.now());
}

void SimulatedIpod::Device::Forget(const char* why) {
  link.Note(TraceLine::Direction::kNote, why);
  link.Clear();
  reader.Reset();
  questions.Forget();
  identification.Forget();
  general.Forget();
  browsing.Forget();
  notifications.SetMask(0);
  order.Forget();
  playback.Forget();
  remotes.Forget();
  display.Forget();
  storage.Forget();
}

void SimulatedIpod::Device::Replug() {
  link.Note(TraceLine::Direction::kNote, plugged ? "is up again" : "plugged in");
  plugged = true;
  restarting_ = false;
  awake_at_.reset();
  DrawCountdown();
}

// The cable is pulled, the iPod restarts or the line goes dead behind the frame for which it is
// planned, or once the drawn number of frames has come.
void SimulatedIpod::Device::CountDown() {
  FaultDice& dice = link.dice();
  const bool drawn = frames_left_ > 0 && --frames_left_ == 0;
  const auto strikes = [&](Fault fault) {
    return (drawn && settings.faults.Has(fault)) || dice.IsPlanned(fault);
  };
  const Microseconds back = link.now() + settings.faults.unplugged_for;
  if (strikes(Fault::kHangUp)) {
    Unplug(std::nullopt);
  } else if (strikes(Fault::kUnplug)) {
    Unplug(back);
  } else if (strikes(Fault::kRestart)) {
    Restart(back);
  }
}

void SimulatedIpod::Device::DrawCountdown() {
  Random& random = link.dice().Choices(Fault::kUnplug);
  frames_left_ = settings.faults.unplug_after.value_or(20 + random.Below(60));
  frames_left_ = std::max(frames_left_, 1u);
}

}  // namespace ipodsim
