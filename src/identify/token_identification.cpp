// SPDX-License-Identifier: MIT
// The identification sequence by tokens: options, tokens, and the end.
#include "identify/accessory_identity.h"
#include "identify/identification_sequence.h"
#include "ipodcomm/TraceLog.h"
#include "platform/services.h"
#include "protocol/commands.h"
#include "session/exchange.h"

using ipodcomm::Answer;
using ipodcomm::Command;
using ipodcomm::kExtendedLingo;
using ipodcomm::kGeneralLingo;
using ipodcomm::kIdentifyFunction;
using ipodcomm::kSportsLingo;
namespace general = ipodcomm::general;

namespace {

constexpr std::uint32_t kSettlePauseMs = 300;
constexpr int kMaxPayloadBytes = 255;

}  // namespace

// kDone when the iPod has accepted the tokens. On a failure identifiers go off again, because the
// iPod has then not accepted them.
auto CIpodComm::IdentificationSequence::IdentifyByTokens() -> Outcome {
  Outcome outcome = SurveyOptions();
  if (outcome == Outcome::kDone) outcome = SendTokens();
  if (outcome == Outcome::kDone) outcome = KeepGoing() ? EndTokens() : Outcome::kAbandoned;
  if (outcome == Outcome::kFallBack) session_.transaction_id_mode_ = 0;
  return outcome;
}

// Under the robust conduct tokens that failed are tried once more, from the start. An iPod whose
// answer to EndIDPS got lost has accepted them, refuses the second EndIDPS, and goes by identifiers
// that the session then no longer sends. One that was silent would be so again.
bool CIpodComm::IdentificationSequence::MayTryTokensAgain() const {
  return Robust() && session_.identity_.idps_enabled != 0 && !Stopped() &&
         session_.last_exchange_.result != IPOD_EXCHANGE_UNANSWERED;
}

// Asks what the iPod supports, which decides the lingoes to announce.
auto CIpodComm::IdentificationSequence::SurveyOptions() -> Outcome {
  if (!KeepGoing()) return Outcome::kAbandoned;
  Pause(kSettlePauseMs);
  session_.Command_RequestMaxPayloadSize();

  Identity& identity = session_.identity_;
  const LingoOptions general = RequestOptions(kGeneralLingo);
  if (general.exchanged) identity.general_option = (general.reply[6] & 0xF0) == 0 ? 1 : 0;

  const LingoOptions sports = RequestOptions(kSportsLingo);
  identity.sports_supported = sports.exchanged && !sports.refused && sports.OptionSet() ? 1 : 0;
  NKDbgPrintfW(L"Supports Sports %d\n", identity.sports_supported);
  if (!KeepGoing()) return Outcome::kAbandoned;

  lingoes_ = {};
  lingoes_.Add(kGeneralLingo);
  lingoes_.Add(ipodcomm::kDisplayRemoteLingo);
  if (identity.sports_supported != 0) {
    lingoes_.Add(kSportsLingo);
    lingoes_.Add(ipodcomm::kStorageLingo);
  }
  const LingoOptions extended = RequestOptions(kExtendedLingo);
  lingoes_.Add(kExtendedLingo);
  if (extended.exchanged) {
    identity.database_track_info = extended.OptionSet() ? 1 : 0;
  } else {
    // An iPod that does not answer about its options finds the General lingo announced three times
    // in all. Those in the field accept it so.
    lingoes_.Add(kGeneralLingo);
    lingoes_.Add(kGeneralLingo);
  }
  return Outcome::kDone;
}

// GetiPodOptionsForLingo: `4B lingo`, answered by `4C lingo options(8)`.
auto CIpodComm::IdentificationSequence::RequestOptions(std::uint8_t lingo) -> LingoOptions {
  const unsigned char data[] = {lingo};
  LingoOptions options = {};
  tagIPOD_READ_PARAMS read = Answer(general::kRetIpodOptionsForLingo, options.reply);
  options.exchanged =
      session_.Exchange(Command(kGeneralLingo, general::kGetIpodOptionsForLingo, data), &read);
  options.refused = read.ack_received != 0;
  return options;
}

// Sends the tokens in as many packets as they need. The log's text is the same for every token.
auto CIpodComm::IdentificationSequence::SendTokens() -> Outcome {
  const ModelNumber model = session_.Model();
  const TokenList tokens = Tokens(model.text());
  const Token* const end = tokens.data() + tokens.size();
  ipodcomm::TokenPacket packet;
  for (const Token* next = tokens.data(); next != end;) {
    const Token* const rest = Pack(next, end, &packet);
    if (rest == next) {
      CKORVATrace::LogSoftwareError(kIdentifyFunction, L"Error adding caps token");
      return Outcome::kFallBack;
    }
    if (!session_.Command_SetFIDTokenValue(packet.bytes(), packet.size())) {
      if (Stopped()) return Outcome::kAbandoned;
      if (rest == end) {
        CKORVATrace::LogSoftwareError(kIdentifyFunction, L"Error setting FID tokens.");
      }
      return Outcome::kFallBack;
    }
    next = rest;
  }
  return Outcome::kDone;
}

// The tokens in the order in which iPods expect them.
auto CIpodComm::IdentificationSequence::Tokens(std::string_view model) -> TokenList {
  using Kind = Token::Kind;
  return {{{Kind::kLingoes},
           {Kind::kCapabilities},
           {Kind::kText, ipodcomm::kInfoName, 0, ipodcomm::kAccessoryName},
           {Kind::kVersion, ipodcomm::kInfoFirmware},
           {Kind::kVersion, ipodcomm::kInfoHardware},
           {Kind::kText, ipodcomm::kInfoManufacturer, 0, ipodcomm::kAccessoryManufacturer},
           {Kind::kText, ipodcomm::kInfoModelNumber, 0, model},
           {Kind::kText, ipodcomm::kInfoSerialNumber, 0, ipodcomm::kAccessorySerialNumber},
           {Kind::kMaxPayload},
           {Kind::kCertification},
           {Kind::kPreference, 0x01, 0x00},
           {Kind::kPreference, 0x02, 0x00},
           {Kind::kPreference, 0x03, 0x01},
           {Kind::kPreference, 0x08, 0x01},
           {Kind::kPreference, 0x0A, 0x01},
           {Kind::kPreference, 0x00, 0x01}}};
}

// Packs tokens into a fresh packet as far as they fit. Returns the first one that is left: `next`
// itself when it does not fit even alone. The lingoes always travel alone.
auto CIpodComm::IdentificationSequence::Pack(const Token* next, const Token* end,
                                             ipodcomm::TokenPacket* packet) -> const Token* {
  packet->Clear();
  for (; next != end; ++next) {
    if (!packet->Add(Write(*next, packet))) break;
    if (next->kind == Token::Kind::kLingoes) return next + 1;
  }
  return next;
}

// Writes a token at the packet's end. Returns its size, kNoRoom when it does not fit.
unsigned long CIpodComm::IdentificationSequence::Write(const Token& token,
                                                       ipodcomm::TokenPacket* packet) {
  unsigned char caps[] = {0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x05};
  unsigned char zeros[4] = {};
  unsigned char* const end = packet->end();
  const unsigned long room = packet->room();
  switch (token.kind) {
    case Token::Kind::kLingoes:
      return ipodcomm::WriteIdentifyToken(end, room,
                                          {lingoes_.numbers, lingoes_.count, options_, device_id_});
    case Token::Kind::kCapabilities:
      return session_.AddAccCapsToken(end, room, caps);
    case Token::Kind::kText:
      return ipodcomm::WriteInfoTextToken(end, room, token.number, token.text);
    case Token::Kind::kVersion:
      return session_.AddAccVersionToken(end, room, token.number, version_.bytes);
    case Token::Kind::kMaxPayload:
      return session_.AddAccMaxPayloadToken(end, room, kMaxPayloadBytes);
    case Token::Kind::kCertification:
      // One that did not fit, and so begins a packet, goes out as a status. iPods in the field
      // have known it so.
      return packet->empty() ? session_.AddAccStatusToken(end, room, zeros)
                             : session_.AddAccRFCertToken(end, room, zeros);
    case Token::Kind::kPreference:
      return session_.AddPreferenceToken(end, room, token.number, token.setting);
  }
  return ipodcomm::kNoRoom;
}

// EndIDPS: `3B 00`, answered by `3C status`.
auto CIpodComm::IdentificationSequence::EndTokens() -> Outcome {
  const unsigned char data[] = {0x00};
  unsigned char reply[1] = {};
  if (!session_.Exchange(Command(kGeneralLingo, general::kEndIdps, data),
                         Answer(general::kIdpsStatus, reply))) {
    session_.transaction_id_mode_ = 0;  // also when the host stops now
    return KeepGoing() ? Outcome::kFallBack : Outcome::kAbandoned;
  }
  NKDbgPrintfW(L"Time to do IDPS %d\n", static_cast<std::uint32_t>(GetTickCount() - started_ms_));
  return JudgeTokens(reply[0]);
}

auto CIpodComm::IdentificationSequence::JudgeTokens(unsigned char end_status) -> Outcome {
  constexpr unsigned char kTooManyFailures = 5;
  if (end_status == 0) return Outcome::kDone;
  CKORVATrace::LogSoftwareError(kIdentifyFunction, L"IDPS failed with code %02x", end_status);
  if (end_status == kTooManyFailures) {
    session_.identity_.idps_enabled = 0;  // retrying is pointless
  } else {
    NKDbgPrintfW(L"IDPS Failed = %2x\r\n", end_status);
  }
  return Outcome::kFallBack;
}
