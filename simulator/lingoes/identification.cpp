// SPDX-License-Identifier: MIT
// The identification procedures.

#include "identification.h"

#include <algorithm>

#include "simulator/protocol/accessory_information.h"

namespace ipodsim {
namespace {

constexpr std::uint8_t kTokenAccepted = 0;
constexpr std::uint8_t kTokenMalformed = 1;
constexpr std::uint8_t kTokenUnsupported = 2;

constexpr std::uint8_t kIdentified = 0;
constexpr std::uint8_t kTokensMissing = 1;
constexpr std::uint8_t kAbandoned = 3;

struct RequiredToken {
  std::uint8_t subtype;
  int information_type;  // -1 where the subtype says it all
  const char* name;
};
constexpr RequiredToken kRequired[] = {
    {kIdentifyToken, -1, "identification"},
    {kCapabilitiesToken, -1, "capabilities"},
    {kInformationToken, kAccessoryName, "accessory name"},
    {kInformationToken, kFirmwareVersion, "firmware version"},
    {kInformationToken, kHardwareVersion, "hardware version"},
    {kInformationToken, kManufacturer, "manufacturer"},
    {kInformationToken, kModelNumber, "model number"},
};

}  // namespace

Identification::Identification(Link* link, Questions* questions, const Settings& settings)
    : link_(link),
      questions_(questions),
      settings_(settings),
      traits_(TraitsOf(settings.profile)) {}

bool Identification::Handle(const Request& request) {
  if (request.lingo != kGeneral) return false;
  switch (request.command) {
    case general::kIdentify:
      OldestIdentify(request);
      return true;
    case general::kIdentifyDeviceLingoes:
      IdentifyByLingoes(request);
      return true;
    case general::kStartIdps:
      StartTokens(request);
      return true;
    case general::kSetFidTokenValues:
      AcceptTokens(request);
      return true;
    case general::kEndIdps:
      EndTokens(request);
      return true;
    default:
      return false;
  }
}

void Identification::Forget() {
  accepts_tokens_ = false;
  by_tokens_ = false;
  began_oldest_way_ = false;
  by_older_console_ = false;
  announced_ = 0;
  tokens_.clear();
  packets_.clear();
}

bool Identification::Begins(const Request& request) {
  return request.lingo == kGeneral && (request.command == general::kIdentify ||
                                       request.command == general::kIdentifyDeviceLingoes ||
                                       request.command == general::kStartIdps);
}

bool Identification::IsAllowedBefore(const Request& request) {
  if (request.lingo != kGeneral) return false;
  // Leaving the remote user interface, too: a console cannot know in what state it left the iPod.
  switch (request.command) {
    case general::kIdentify:
    case general::kAck:
    case general::kRequestRemoteUiMode:
    case general::kExitRemoteUiMode:
    case general::kRequestLingoProtocolVersion:
    case general::kRequestMaxPayloadSize:
    case general::kIdentifyDeviceLingoes:
    case general::kRetAccessoryInfo:
    case general::kStartIdps:
    case general::kSetFidTokenValues:
    case general::kEndIdps:
    case general::kGetIpodOptionsForLingo:
    case general::kCancelCommand:
      return true;
    default:
      return false;
  }
}

// Names one lingo and is not answered. Such accessories speak the remote lingoes.
void Identification::OldestIdentify(const Request& request) {
  Forget();
  questions_->Stop();
  link_->SetIdentifiers(false);
  began_oldest_way_ = true;
  by_older_console_ = true;
  announced_ = (1u << kGeneral) | (1u << kSimpleRemote) | (1u << kDisplayRemote) |
               (1u << (request.data[0] & 0x1F));
}

void Identification::IdentifyByLingoes(const Request& request) {
  const std::uint32_t mask = Get32(request.data, 0);
  std::uint32_t supported = 0;
  for (const LingoSupport& support : traits_.lingoes) supported |= 1u << support.lingo;
  if ((mask & 1u) == 0) {
    link_->Report(MistakeKind::kBadParameter, "IdentifyDeviceLingoes without the General lingo");
  }
  if ((mask & 1u) == 0 || (mask & ~supported) != 0) {
    link_->Acknowledge(request, AckStatus::kBadParameter);
    return;
  }
  const bool older_console = began_oldest_way_;
  Forget();
  by_older_console_ = older_console;
  announced_ = mask;
  // From here on frames carry no transaction identifiers, in either direction.
  if (!settings_.keeps_identifiers) link_->SetIdentifiers(false);
  link_->Acknowledge(request, AckStatus::kOk);
  if (!older_console || settings_.asks_oldest_accessories) questions_->Start(announced_);
}

void Identification::StartTokens(const Request& request) {
  if (!traits_.identifies_by_tokens) {
    if (!settings_.refuses_start_idps_silently) link_->Acknowledge(request, AckStatus::kUnknown);
    return;
  }
  Forget();
  questions_->Stop();
  accepts_tokens_ = true;
  link_->SetIdentifiers(true);
  link_->Acknowledge(request, AckStatus::kOk);
}

void Identification::AcceptTokens(const Request& request) {
  if (!accepts_tokens_) {
    link_->Report(MistakeKind::kTokensOutsideIdentification, "SetFIDTokenValues before StartIDPS");
    link_->Acknowledge(request, AckStatus::kFailed);
    return;
  }
  const TokenPacket packet = ParseTokens(request.data);
  if (!packet.bad_layout.empty()) {
    link_->Report(MistakeKind::kBadTokenLayout, packet.bad_layout);
  }
  if (!packet.wrong_count.empty()) {
    link_->Report(MistakeKind::kWrongTokenCount, packet.wrong_count);
  }
  // An accessory that missed our answer sends the same packet again.
  const bool repeated = !packets_.insert(request.data).second;
  Bytes answer = {static_cast<std::uint8_t>(packet.tokens.size())};
  for (const Token& token : packet.tokens) {
    if (!repeated) Remember(token);
    const Bytes selector = token.Selector();
    Put8(answer, static_cast<std::uint32_t>(3 + selector.size()));
    Put8(answer, 0);
    Put8(answer, token.subtype);
    Put8(answer, Judge(token));
    answer.insert(answer.end(), selector.begin(), selector.end());
  }
  link_->Reply(request, general::kRetFidTokenValueAcks, std::move(answer));
}

void Identification::Remember(const Token& token) {
  if (tokens_.empty() && token.subtype != kIdentifyToken) {
    link_->Report(MistakeKind::kBadTokenLayout, "the identification token does not come first");
  }
  const bool known = std::any_of(tokens_.begin(), tokens_.end(), [&](const Token& other) {
    return other.subtype == token.subtype && other.Selector() == token.Selector();
  });
  if (known) link_->Report(MistakeKind::kDuplicateToken, token.Name() + " token given twice");
  tokens_.push_back(token);
}

std::uint8_t Identification::Judge(const Token& token) const {
  if (!LayoutProblem(token).empty()) return kTokenMalformed;
  if (token.subtype != kIdentifyToken) return kTokenAccepted;
  for (std::size_t i = 1; i <= token.fields[0]; ++i) {
    if (traits_.Lingo(token.fields[i]) == nullptr) return kTokenUnsupported;
  }
  return kTokenAccepted;
}

void Identification::EndTokens(const Request& request) {
  if (!accepts_tokens_) {
    link_->Report(MistakeKind::kTokensOutsideIdentification, "EndIDPS before StartIDPS");
    link_->Reply(request, general::kIdpsStatus, {kTokensMissing});
    return;
  }
  accepts_tokens_ = false;
  if (request.data[0] != 0) {
    link_->Reply(request, general::kIdpsStatus, {kAbandoned});
    return;
  }
  if (ReportMissingTokens()) {
    link_->Reply(request, general::kIdpsStatus, {kTokensMissing});
    return;
  }
  for (const Token& token : tokens_) {
    if (token.subtype == kIdentifyToken) {
      for (std::size_t i = 1; i <= token.fields[0]; ++i) announced_ |= 1u << (token.fields[i] & 31);
    }
    // The versions are left out: accessories that cannot read their own give them at random.
    const bool comparable = token.subtype == kInformationToken &&
                            (token.fields[0] == kAccessoryName || token.fields[0] == kManufacturer);
    if (comparable) {
      questions_->Expect(token.fields[0], Bytes(token.fields.begin() + 1, token.fields.end()));
    }
  }
  by_tokens_ = true;
  link_->Reply(request, general::kIdpsStatus, {kIdentified});
  questions_->Start(announced_);
}

bool Identification::ReportMissingTokens() {
  bool missing = false;
  for (const RequiredToken& required : kRequired) {
    const bool given = std::any_of(tokens_.begin(), tokens_.end(), [&](const Token& token) {
      return token.subtype == required.subtype && LayoutProblem(token).empty() &&
             (required.information_type < 0 || token.fields[0] == required.information_type);
    });
    if (given) continue;
    missing = true;
    link_->Report(MistakeKind::kMissingToken, std::string("no ") + required.name + " token");
  }
  return missing;
}

}  // namespace ipodsim
