// SPDX-License-Identifier: MIT
// Serves the General lingo.

#include "general.h"

namespace ipodsim {
namespace {

constexpr std::uint32_t kMaxPayload = 506;
const Bytes kSupportedEvents = {0, 0, 0, 0, 0, 0, 0x02, 0x0C};

struct PreferenceRange {
  std::uint8_t preference_class;
  std::uint8_t most;
  std::uint8_t initial;
};
constexpr PreferenceRange kPreferences[] = {
    {0, 2, 0},   // video out: off, on, ask
    {1, 1, 0},   // screen: fill, fit
    {2, 1, 0},   // signal: NTSC, PAL
    {3, 1, 0},   // line out: off, on
    {8, 3, 0},   // video connection: none, composite, S-video, component
    {9, 1, 0},   // closed captions
    {10, 1, 0},  // monitor: 4:3, 16:9
    {12, 1, 0},  // subtitles
    {13, 1, 0},  // alternate audio
    {15, 1, 0},  // pause on removal
};

const PreferenceRange* FindPreference(std::uint8_t preference_class) {
  for (const PreferenceRange& range : kPreferences) {
    if (range.preference_class == preference_class) return &range;
  }
  return nullptr;
}

}  // namespace

General::General(Link* link, const Settings& settings)
    : link_(link), settings_(settings), traits_(TraitsOf(settings.profile)) {
  for (const PreferenceRange& range : kPreferences) {
    preferences_[range.preference_class].value = range.initial;
  }
  ForgetEvents();
}

void General::Forget() {
  for (auto& entry : preferences_) {
    Preference& preference = entry.second;
    preference.value = preference.original.PopOriginal().value_or(preference.value);
  }
  ui_mode_ = 0;
  ForgetEvents();
}

void General::ChangePreference(std::uint8_t preference_class, std::uint8_t value,
                               AtDetach at_detach) {
  Preference& preference = preferences_[preference_class];
  preference.original.NoticeChange(preference.value, at_detach);
  preference.value = value;
}

void General::Apply(const std::vector<Token>& tokens) {
  for (const Token& token : tokens) {
    if (token.subtype != kPreferenceToken || token.fields.size() < 2) continue;
    const PreferenceRange* range = FindPreference(token.fields[0]);
    if (range != nullptr && token.fields[1] <= range->most) {
      const bool restores = token.fields.size() > 2 && token.fields[2] != 0;
      ChangePreference(range->preference_class, token.fields[1],
                       restores ? AtDetach::kRestore : AtDetach::kKeep);
    }
  }
}

std::uint8_t General::preference(std::uint8_t preference_class) const {
  const auto found = preferences_.find(preference_class);
  return found == preferences_.end() ? 0 : found->second.value;
}

bool General::Handle(const Request& request) {
  if (request.lingo != kGeneral) return false;
  return HandleIdentity(request) || HandleUserInterface(request) || HandleEvents(request);
}

bool General::HandleIdentity(const Request& request) {
  Bytes data;
  switch (request.command) {
    case general::kAck:  // the accessory's own acknowledgement
      return true;
    case general::kRequestIpodName:
      PutText(data, settings_.name.empty() ? settings_.library.name : settings_.name);
      link_->Reply(request, general::kReturnIpodName, data);
      return true;
    case general::kRequestIpodSoftwareVersion:
      link_->Reply(request, general::kReturnIpodSoftwareVersion,
                   {traits_.software[0], traits_.software[1], traits_.software[2]});
      return true;
    case general::kRequestIpodSerialNum:
      PutText(data, traits_.serial_number);
      link_->Reply(request, general::kReturnIpodSerialNum, data);
      return true;
    case general::kRequestIpodModelNum:
      Put32(data, settings_.model_id.value_or(traits_.model_id));
      PutText(data, settings_.model_number.empty() ? traits_.model_number : settings_.model_number);
      link_->Reply(request, general::kReturnIpodModelNum, data);
      return true;
    case general::kRequestLingoProtocolVersion:
      ReturnLingoVersion(request);
      return true;
    case general::kRequestMaxPayloadSize:
      Put16(data, kMaxPayload);
      if (traits_.identifies_by_tokens) {
        link_->Reply(request, general::kReturnMaxPayloadSize, data);
      } else {
        link_->Acknowledge(request, AckStatus::kUnknown);
      }
      return true;
    case general::kGetIpodPreferences:
      ReturnPreference(request);
      return true;
    case general::kSetIpodPreferences:
      SetPreference(request);
      return true;
    case general::kGetIpodOptionsForLingo:
      ReturnOptions(request);
      return true;
    default:
      return false;
  }
}

void General::ReturnLingoVersion(const Request& request) {
  const LingoSupport* support = traits_.Lingo(request.data[0]);
  if (support == nullptr) {
    link_->Acknowledge(request, AckStatus::kUnknown);
    return;
  }
  link_->Reply(request, general::kReturnLingoProtocolVersion,
               {support->lingo, support->version.major, support->version.minor});
}

// Refused with an acknowledgement that names this command: by an iPod that knows no options, and by
// every iPod for a lingo that it does not speak.
void General::ReturnOptions(const Request& request) {
  const LingoSupport* support = traits_.Lingo(request.data[0]);
  if (!traits_.knows_options || support == nullptr) {
    link_->Acknowledge(request, AckStatus::kUnknown);
    return;
  }
  link_->Reply(request, general::kRetIpodOptionsForLingo,
               {support->lingo, 0, 0, 0, 0, 0, 0, 0, support->options});
}

bool General::KnowsPreferences() const {
  const Version version = traits_.Lingo(kGeneral)->version;
  return version.major > 1 || (version.major == 1 && version.minor >= 5);
}

void General::ReturnPreference(const Request& request) {
  const auto preference = preferences_.find(request.data[0]);
  if (!KnowsPreferences() || preference == preferences_.end()) {
    link_->Acknowledge(request, AckStatus::kUnknown);
    return;
  }
  link_->Reply(request, general::kRetIpodPreferences,
               {preference->first, preference->second.value});
}

void General::SetPreference(const Request& request) {
  const PreferenceRange* range = FindPreference(request.data[0]);
  if (!KnowsPreferences() || range == nullptr) {
    link_->Acknowledge(request, AckStatus::kUnknown);
    return;
  }
  if (request.data[1] > range->most || request.data[2] > 1) {
    link_->Refuse(request, MistakeKind::kBadParameter,
                  "preference " + std::to_string(request.data[0]) + " set to " +
                      std::to_string(request.data[1]) + ", restored " +
                      std::to_string(request.data[2]));
    return;
  }
  ChangePreference(range->preference_class, request.data[1],
                   request.data[2] == 1 ? AtDetach::kRestore : AtDetach::kKeep);
  link_->Acknowledge(request, AckStatus::kOk);
}

bool General::HandleUserInterface(const Request& request) {
  switch (request.command) {
    case general::kRequestRemoteUiMode:
      // Answered by an acknowledgement, which is what consoles in the field wait for.
      if (settings_.remote_ui_is_pending_first) link_->AcknowledgePending(request);
      link_->Acknowledge(request, AckStatus::kOk);
      return true;
    case general::kEnterRemoteUiMode:
      SwitchUserInterface(request, kExtendedMode);
      return true;
    case general::kExitRemoteUiMode:
      SwitchUserInterface(request, 0);
      return true;
    case general::kSetUiMode:
      if (!traits_.knows_ui_mode) {
        link_->Acknowledge(request, AckStatus::kUnknown);
      } else if (request.data[0] > 3) {
        link_->Refuse(request, MistakeKind::kBadParameter,
                      "SetUIMode with mode " + std::to_string(request.data[0]));
      } else {
        SwitchUserInterface(request, request.data[0]);
      }
      return true;
    default:
      return false;
  }
}

void General::SwitchUserInterface(const Request& request, std::uint8_t mode) {
  ui_mode_ = mode;
  if (settings_.remote_ui_is_pending_first) link_->AcknowledgePending(request);
  link_->Acknowledge(request, AckStatus::kOk);
}

bool General::HandleEvents(const Request& request) {
  switch (request.command) {
    case general::kSetEventNotification:
      if (!traits_.identifies_by_tokens) {
        link_->Acknowledge(request, AckStatus::kUnknown);
        return true;
      }
      for (std::size_t i = 0; i < kSupportedEvents.size(); ++i) {
        if ((request.data[i] & ~kSupportedEvents[i]) == 0) continue;
        link_->Refuse(request, MistakeKind::kBadParameter,
                      "SetEventNotification with events not offered");
        return true;
      }
      events_ = request.data;
      link_->Acknowledge(request, AckStatus::kOk);
      return true;
    case general::kGetEventNotification:
      if (traits_.identifies_by_tokens) {
        link_->Reply(request, general::kRetEventNotification, kSupportedEvents);
      } else {
        link_->Acknowledge(request, AckStatus::kUnknown);
      }
      return true;
    case general::kCancelCommand:
      // Carries nothing but the identifier of the request to give up.
      link_->CancelStreams(request.identifier);
      link_->Acknowledge(request, AckStatus::kOk);
      return true;
    default:
      return false;
  }
}

}  // namespace ipodsim
