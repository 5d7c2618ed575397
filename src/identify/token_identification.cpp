// SPDX-License-Identifier: MIT
// The identification sequence by tokens: options, tokens, and the end.
#include "identify/accessory_identity.h"
#include "identify/identification_sequence.h"
#include "ipodcomm/TraceLog.h"
#include "platform/services.h"
#include "protocol/commands.h"
#include "session/exchange.h"

namespace ipodcomm {

namespace {

constexpr DWORD kSettlePauseMs = 300;
constexpr int kMaxPayload = 255;

// Preferences announced with the tokens.
constexpr PreferenceSetting kPreferences[] = {
    {0x01, 0x00}, {0x02, 0x00}, {0x03, 0x01}, {0x08, 0x01}, {0x0A, 0x01}, {0x00, 0x01},
};

}  // namespace

/// kDone when the iPod has accepted the tokens. On a failure identifiers go off again, because the
/// iPod has then not accepted them.
IdentificationSequence::Outcome IdentificationSequence::IdentifyByTokens() {
  Outcome outcome = SurveyOptions();
  if (outcome == Outcome::kDone) outcome = SendTokens();
  if (outcome == Outcome::kDone) outcome = KeepGoing() ? EndTokens() : Outcome::kAbandoned;
  if (outcome == Outcome::kFallBack) session_.transaction_id_mode_ = 0;
  return outcome;
}

/// Asks what the iPod supports, which decides the lingoes to announce.
IdentificationSequence::Outcome IdentificationSequence::SurveyOptions() {
  if (!KeepGoing()) return Outcome::kAbandoned;
  Sleep(kSettlePauseMs);
  session_.Command_RequestMaxPayloadSize();

  CIpodComm::Identity& identity = session_.identity_;
  const LingoOptions general = RequestOptions(kGeneralLingo);
  if (general.exchanged) identity.general_option = (general.reply[6] & 0xF0) == 0 ? 1 : 0;

  const LingoOptions sports = RequestOptions(kSportsLingo);
  identity.sports_supported = sports.exchanged && !sports.refused && sports.OptionSet() ? 1 : 0;
  NKDbgPrintfW(L"Supports Sports %d\n", identity.sports_supported);
  if (!KeepGoing()) return Outcome::kAbandoned;

  announcement_.lingoes = {kGeneralLingo, kDisplayRemoteLingo};
  if (identity.sports_supported != 0) {
    announcement_.lingoes.push_back(kSportsLingo);
    announcement_.lingoes.push_back(kStorageLingo);
  }
  const LingoOptions extended = RequestOptions(kExtendedLingo);
  announcement_.lingoes.push_back(kExtendedLingo);
  if (extended.exchanged) {
    identity.database_track_info = extended.OptionSet() ? 1 : 0;
  } else {
    // The General lingo is then announced three times in all. Prescribed so; iPods accept it.
    announcement_.lingoes.push_back(kGeneralLingo);
    announcement_.lingoes.push_back(kGeneralLingo);
  }
  return Outcome::kDone;
}

/// GetiPodOptionsForLingo: `4B lingo`, answered by `4C lingo options(8)`.
IdentificationSequence::LingoOptions IdentificationSequence::RequestOptions(std::uint8_t lingo) {
  const unsigned char data[] = {lingo};
  LingoOptions options = {};
  tagIPOD_READ_PARAMS read = Answer(general::kRetIpodOptionsForLingo, options.reply);
  options.exchanged =
      session_.Exchange(Command(kGeneralLingo, general::kGetIpodOptionsForLingo, data), &read);
  options.refused = read.ack_received != 0;
  return options;
}

IdentificationSequence::Outcome IdentificationSequence::SendTokens() {
  TokenPacket packet([this](unsigned char* payload, unsigned long length) {
    return session_.Command_SetFIDTokenValue(payload, length);
  });
  if (!SendIdentifyToken(&packet) || !AddTokens(&packet)) return Outcome::kFallBack;
  if (packet.Send()) return Outcome::kDone;
  CKORVATrace::LogSoftwareError(kIdentifyFunction, L"Error setting FID tokens.");
  return Outcome::kFallBack;
}

/// The identification token always travels alone.
bool IdentificationSequence::SendIdentifyToken(TokenPacket* packet) {
  return Added(packet->Add([this](unsigned char* destination, unsigned long capacity) {
           return session_.AddIdentifyToken(destination, capacity, announcement_);
         })) &&
         packet->Send();
}

/// Adds the other tokens in their order, as far as they can be sent.
bool IdentificationSequence::AddTokens(TokenPacket* packet) {
  unsigned char caps[] = {0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x05};
  unsigned char scratch[8] = {};
  const auto text = [this](unsigned char type, const std::string& value) {
    return [this, type, value](unsigned char* destination, unsigned long capacity) {
      return session_.AddAccNameToken(destination, capacity, type, value);
    };
  };
  const auto version = [this](unsigned char type) {
    return [this, type](unsigned char* destination, unsigned long capacity) {
      return session_.AddAccVersionToken(destination, capacity, type, version_.bytes);
    };
  };
  const auto capabilities = [&](unsigned char* destination, unsigned long capacity) {
    return session_.AddAccCapsToken(destination, capacity, caps);
  };
  const auto max_payload = [&](unsigned char* destination, unsigned long capacity) {
    return session_.AddAccMaxPayloadToken(destination, capacity, kMaxPayload);
  };
  const auto certification = [&](unsigned char* destination, unsigned long capacity) {
    return session_.AddAccRFCertToken(destination, capacity, scratch);
  };
  // A certification token that needs a fresh packet becomes a status token there. Prescribed so.
  const auto status = [&](unsigned char* destination, unsigned long capacity) {
    return session_.AddAccStatusToken(destination, capacity, scratch);
  };

  const bool added =
      Added(packet->Add(capabilities)) && Added(packet->Add(text(kInfoName, kAccessoryName))) &&
      Added(packet->Add(version(kInfoFirmware))) && Added(packet->Add(version(kInfoHardware))) &&
      Added(packet->Add(text(kInfoManufacturer, kAccessoryManufacturer))) &&
      Added(packet->Add(text(kInfoModelNumber, session_.Model()))) &&
      Added(packet->Add(text(kInfoSerialNumber, kAccessorySerialNumber))) &&
      Added(packet->Add(max_payload)) && Added(packet->Add(certification, status));
  if (!added) return false;
  for (const PreferenceSetting& preference : kPreferences) {
    const auto token = [&](unsigned char* destination, unsigned long capacity) {
      return session_.AddPreferenceToken(destination, capacity, preference.preference_class,
                                         preference.setting);
    };
    if (!Added(packet->Add(token))) return false;
  }
  return true;
}

/// Whether a token went into a packet. The text is the same for every token.
bool IdentificationSequence::Added(TokenPacket::Result result) {
  if (result == TokenPacket::Result::kDoesNotFit) {
    CKORVATrace::LogSoftwareError(kIdentifyFunction, L"Error adding caps token");
  }
  return result == TokenPacket::Result::kAdded;
}

/// EndIDPS: `3B 00`, answered by `3C status`.
IdentificationSequence::Outcome IdentificationSequence::EndTokens() {
  const unsigned char data[] = {0x00};
  unsigned char reply[1] = {};
  if (!session_.Exchange(Command(kGeneralLingo, general::kEndIdps, data),
                         Answer(general::kIdpsStatus, reply))) {
    session_.transaction_id_mode_ = 0;  // also when the host stops now
    return KeepGoing() ? Outcome::kFallBack : Outcome::kAbandoned;
  }
  NKDbgPrintfW(L"Time to do IDPS %d\n", static_cast<std::uint32_t>(GetTickCount() - started_ms_));
  return TakeEndStatus(reply[0]);
}

IdentificationSequence::Outcome IdentificationSequence::TakeEndStatus(unsigned char status) {
  constexpr unsigned char kTooManyFailures = 5;
  if (status == 0) return Outcome::kDone;
  CKORVATrace::LogSoftwareError(kIdentifyFunction, L"IDPS failed with code %02x", status);
  if (status == kTooManyFailures) {
    session_.identity_.idps_enabled = 0;  // retrying is pointless
  } else {
    NKDbgPrintfW(L"IDPS Failed = %2x\r\n", status);
  }
  return Outcome::kFallBack;
}

}  // namespace ipodcomm
