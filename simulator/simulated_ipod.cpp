// SPDX-License-Identifier: MIT
// Puts the simulated iPod together: frames in, each to the subject that serves it, frames out.

#include "simulated_ipod.h"

#include <algorithm>

#include "browsing.h"
#include "enquiries.h"
#include "frame.h"
#include "general.h"
#include "identification.h"
#include "link.h"
#include "playback.h"
#include "remotes.h"

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

class SimulatedIpod::Device {
 public:
  explicit Device(Settings given)
      : settings(std::move(given)),
        traits(TraitsOf(settings.profile)),
        link(settings),
        player(&settings.library, settings.seed),
        enquiries(&link, settings),
        identification(&link, &enquiries, settings),
        general(&link, settings),
        browsing(&link, &player, settings),
        playback(&link, &player, settings),
        remotes(&link, &player, &playback) {
    reader.on_frame = [this](const Frame& frame, const Bytes&) { OnFrame(frame); };
    reader.on_problem = [this](FramingProblem problem, const std::string& detail) {
      link.Report(MistakeOf(problem), detail);
    };
    DrawUnplug();
  }

  void Advance(Microseconds now);
  std::optional<Microseconds> NextEvent() const;
  // Out of the dock, until Replug when no time is given.
  void Unplug(std::optional<Microseconds> until);
  void Replug();

  const Settings settings;
  const Traits& traits;
  Link link;
  Player player;
  Enquiries enquiries;
  Identification identification;
  General general;
  Browsing browsing;
  Playback playback;
  Remotes remotes;
  FrameReader reader;
  bool plugged = true;

 private:
  void OnFrame(const Frame& frame);
  bool TakeIdentifier(Request* request);
  bool CheckSize(const Request& request);
  void CheckOrder(const Request& request);
  bool StrikesFirst(const Request& request);
  void Serve(const Request& request);
  void DrawUnplug();

  std::optional<Microseconds> replug_at_;
  std::uint32_t frames_until_unplug_ = 0;
};

void SimulatedIpod::Device::OnFrame(const Frame& frame) {
  Request request;
  request.rule = FindCommand(frame.lingo, frame.command);
  request.lingo = frame.lingo;
  request.command = frame.command;
  request.data = frame.data;
  const bool carries = TakeIdentifier(&request);
  if (link.trace) {
    link.Note(TraceLine::Direction::kFromAccessory,
              Describe(frame, request.identifier.has_value()));
  }
  if (!traits.speaks) return;
  link.BeginRequest();
  if (request.rule == nullptr) {
    link.Report(MistakeKind::kUnknownCommand, std::string(LingoName(frame.lingo)) + " " +
                                                  CommandName(frame.lingo, frame.command));
    link.Acknowledge(request, AckStatus::kUnknown);
    return;
  }
  if (!CheckSize(request)) return;
  if (carries && !request.identifier) {
    link.Report(MistakeKind::kIdentifierMissing,
                CommandName(frame.lingo, frame.command) + " came without one");
  }
  link.CheckIdentifier(request);
  CheckOrder(request);
  if (enquiries.Handle(request)) return;
  enquiries.NoticeOtherFrame();
  if (StrikesFirst(request)) return;
  Serve(request);

  if (settings.faults.Has(Fault::kUnplug) && --frames_until_unplug_ == 0) {
    Unplug(link.now() + settings.faults.unplugged_for);
  }
}

// Takes the transaction identifier off the data if there is one; says whether there should be.
bool SimulatedIpod::Device::TakeIdentifier(Request* request) {
  const CommandRule* rule = request->rule;
  const std::size_t size = request->data.size();
  const std::size_t least = rule == nullptr ? 0 : rule->least;
  // StartIDPS comes before identifiers are agreed on, and yet with one from some accessories.
  const bool starts = request->lingo == kGeneral && request->command == 0x38;
  const bool expected =
      !starts && link.identifiers_on() && (rule == nullptr || rule->CarriesIdentifier());
  if ((expected || starts) && size >= least + 2) {
    request->identifier = Get16(request->data, 0);
    request->data.erase(request->data.begin(), request->data.begin() + 2);
  }
  return expected;
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

// Such commands are mistakes and are served all the same, as iPods do.
void SimulatedIpod::Device::CheckOrder(const Request& request) {
  if (!identification.identified()) {
    if (!Identification::IsAllowedBefore(request)) {
      link.Report(MistakeKind::kCommandBeforeIdentification,
                  std::string(LingoName(request.lingo)) + " " +
                      CommandName(request.lingo, request.command));
    }
    return;
  }
  // Consoles in the field press buttons without announcing the Simple Remote lingo.
  const bool announced = (identification.announced() & (1u << request.lingo)) != 0;
  if (!announced && request.lingo != kGeneral && request.lingo != kSimpleRemote) {
    link.Report(MistakeKind::kLingoNotAnnounced, std::string(LingoName(request.lingo)) + " " +
                                                     CommandName(request.lingo, request.command));
  }
}

// The faults of the iPod itself. True when the command is not to be carried out.
bool SimulatedIpod::Device::StrikesFirst(const Request& request) {
  const bool starts = request.lingo == kGeneral && request.command == 0x38;
  if (starts && traits.takes_tokens && settings.start_idps_needs_identifier &&
      !request.identifier) {
    return true;
  }
  FaultDice& dice = link.dice();
  if (dice.Strikes(Fault::kUnaskedRequests)) enquiries.AskOutOfTurn();
  const bool answered = request.rule->nature == CommandNature::kRequest ||
                        request.rule->nature == CommandNature::kRequestWithout;
  if (!answered) return false;
  if (dice.Strikes(Fault::kPendingAcks)) link.AcknowledgePending(request);
  if (dice.Strikes(Fault::kRefusedCommands)) {
    link.Acknowledge(request, AckStatus::kFailed);
    return true;
  }
  return false;
}

void SimulatedIpod::Device::Serve(const Request& request) {
  const bool had_tokens = identification.by_tokens();
  if (identification.Handle(request)) {
    if (!had_tokens && identification.by_tokens()) general.Apply(identification.tokens());
    return;
  }
  if (general.Handle(request) || browsing.Handle(request) || playback.Handle(request) ||
      remotes.Handle(request)) {
    return;
  }
  // What remains are the Sports and Storage services, which this iPod does not offer yet.
  link.Acknowledge(request, AckStatus::kUnknown);
}

void SimulatedIpod::Device::Advance(Microseconds now) {
  if (replug_at_ && *replug_at_ <= now) {
    link.SetNow(*replug_at_);
    Replug();
  }
  for (auto timeout = enquiries.NextTimeout(); timeout && *timeout <= now;
       timeout = enquiries.NextTimeout()) {
    playback.Advance(*timeout);
    enquiries.Advance(*timeout);
  }
  playback.Advance(now);
}

std::optional<Microseconds> SimulatedIpod::Device::NextEvent() const {
  if (!plugged) return replug_at_;
  std::optional<Microseconds> next = link.NextDue();
  for (const auto time : {playback.NextEvent(), enquiries.NextTimeout()}) {
    if (IsEarlier(time, next)) next = time;
  }
  return next;
}

void SimulatedIpod::Device::Unplug(std::optional<Microseconds> until) {
  plugged = false;
  replug_at_ = until;
  link.Note(TraceLine::Direction::kNote, "unplugged");
  link.Clear();
  reader.Reset();
  enquiries.Forget();
  identification.Forget();
  general.Forget();
  browsing.Forget();
  playback.Forget();
  remotes.Forget();
  if (player.state() != PlayerState::kStopped) player.Control(PlayControl::kPause, link.now());
}

void SimulatedIpod::Device::Replug() {
  plugged = true;
  replug_at_.reset();
  link.Note(TraceLine::Direction::kNote, "plugged in");
  DrawUnplug();
}

void SimulatedIpod::Device::DrawUnplug() {
  Random& random = link.dice().Choices(Fault::kUnplug);
  frames_until_unplug_ = settings.faults.unplug_after.value_or(20 + random.Below(60));
  frames_until_unplug_ = std::max(frames_until_unplug_, 1u);
}

SimulatedIpod::SimulatedIpod(Settings settings)
    : device_(std::make_unique<Device>(std::move(settings))) {}

SimulatedIpod::~SimulatedIpod() = default;

void SimulatedIpod::Receive(const std::uint8_t* bytes, std::size_t count, Microseconds now) {
  device_->Advance(now);
  for (std::size_t i = 0; i < count && device_->plugged; ++i) device_->reader.Feed(bytes[i], now);
  // What the commands did to the player is told from here on.
  device_->Advance(now);
}

std::optional<Microseconds> SimulatedIpod::NextEvent() const { return device_->NextEvent(); }

std::vector<std::uint8_t> SimulatedIpod::Transmit(Microseconds now) {
  device_->Advance(now);
  return device_->link.Transmit(now);
}

void SimulatedIpod::Finish(Microseconds now) {
  device_->Advance(now);
  device_->reader.Finish();
}

const std::vector<Mistake>& SimulatedIpod::mistakes() const { return device_->link.mistakes(); }

void SimulatedIpod::set_trace(std::function<void(const TraceLine&)> trace) {
  device_->link.trace = std::move(trace);
}

bool SimulatedIpod::plugged() const { return device_->plugged; }

void SimulatedIpod::Unplug(Microseconds now) {
  device_->Advance(now);
  if (device_->plugged) device_->Unplug(std::nullopt);
}

void SimulatedIpod::Replug(Microseconds now) {
  device_->Advance(now);
  if (!device_->plugged) device_->Replug();
}

const Player& SimulatedIpod::player() const { return device_->player; }
bool SimulatedIpod::identified() const { return device_->identification.identified(); }
bool SimulatedIpod::identified_by_tokens() const { return device_->identification.by_tokens(); }
std::uint32_t SimulatedIpod::announced_lingoes() const {
  return device_->identification.announced();
}
bool SimulatedIpod::identifiers_on() const { return device_->link.identifiers_on(); }
std::uint8_t SimulatedIpod::preference(std::uint8_t preference_class) const {
  return device_->general.preference(preference_class);
}
std::uint8_t SimulatedIpod::ui_mode() const { return device_->general.ui_mode(); }
std::uint32_t SimulatedIpod::notification_mask() const {
  return device_->playback.notification_mask();
}
const std::vector<std::uint8_t>& SimulatedIpod::event_mask() const {
  return device_->general.events();
}

std::vector<std::uint8_t> SimulatedIpod::accessory_information(std::uint8_t type) const {
  const auto& answers = device_->enquiries.answers();
  const auto found = answers.find(type);
  return found == answers.end() ? std::vector<std::uint8_t>{} : found->second;
}

const Settings& SimulatedIpod::settings() const { return device_->settings; }

}  // namespace ipodsim
