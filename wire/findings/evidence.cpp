// SPDX-License-Identifier: MIT
// Gathers what explains how a session went.
#include "wire/findings/evidence.h"

#include <algorithm>
#include <string_view>

#include "wire/numbers.h"

namespace ipodwire {
namespace {

// How a recording tells, in a comment, that the port has gone.
constexpr std::string_view kLineGone = "the line is gone";

constexpr std::size_t kMostNoiseRuns = 64;
constexpr std::size_t kMostRefusedTokens = 16;

bool Has(const Told& told, Note::Kind kind) {
  return std::any_of(told.notes.begin(), told.notes.end(),
                     [&](const Note& note) { return note.kind == kind; });
}

const DecodedField* FindField(const std::vector<DecodedField>& fields, const char* name) {
  const auto field = std::find_if(fields.begin(), fields.end(),
                                  [&](const DecodedField& each) { return each.name == name; });
  return field != fields.end() ? &*field : nullptr;
}

std::string ValueOf(const std::vector<DecodedField>& fields, const char* name) {
  const DecodedField* field = FindField(fields, name);
  return field != nullptr ? field->value : std::string();
}

// "accessory information, type model number".
std::string NameOfToken(const std::vector<DecodedField>& token) {
  std::string name = ValueOf(token, "token");
  for (const char* part : {"type", "class", "protocol index"}) {
    const std::string value = ValueOf(token, part);
    if (!value.empty()) name += std::string(", ") + part + " " + value;
  }
  return name;
}

bool BeginsFrame(const std::vector<std::uint8_t>& bytes) {
  return bytes.size() >= 2 && bytes[0] == 0xFF && bytes[1] == 0x55;
}

}  // namespace

void Sightings::Add(std::uint64_t packet) {
  ++count;
  if (packets.size() < kMostPackets) packets.push_back(packet);
}

void EvidenceCollector::Add(const Told& told) {
  if (told.is_event) {
    AddEvent(told);
  } else if (told.observed.sender == Sender::kIpod) {
    AddReceived(told);
  } else {
    AddSent(told);
  }
}

void EvidenceCollector::AddEvent(const Told& told) {
  if (!Has(told, Note::Kind::kLine)) return;
  const std::string& text = told.notes.front().text;
  if (text.compare(0, kLineGone.size(), kLineGone) == 0) {
    evidence_.line_gone = told.observed.number;
  } else {
    evidence_.line_errors.Add(told.observed.number);
  }
}

void EvidenceCollector::AddSent(const Told& told) {
  if (!told.frame) return;
  const std::uint64_t packet = told.observed.number;
  const DecodedFrame& frame = *told.frame;
  evidence_.sent.Add(packet);
  last_sent_ = told.observed.bytes;
  if (frame.command != nullptr && frame.command->reply.kind != Reply::Kind::kNone) {
    evidence_.unanswered.Add(packet);
  }
  if (frame.frame.lingo != lingo::kGeneral) return;
  if (frame.frame.command == general::kStartIdps) {
    (frame.identifier ? evidence_.start_with_identifier : evidence_.start_without_identifier)
        .Add(packet);
  }
  if (frame.frame.command == general::kRequestLingoProtocolVersion) {
    last_version_asked_ = static_cast<std::uint8_t>(frame.Number("lingo").value_or(0));
  }
}

void EvidenceCollector::AddReceived(const Told& told) {
  const std::uint64_t packet = told.observed.number;
  evidence_.bytes_received += told.observed.bytes.size();
  evidence_.cut_frame.reset();
  if (IsEcho(told)) {
    evidence_.echoes.Add(packet);
    return;
  }
  if (!told.frame) {
    AddNoFrame(told);
    return;
  }
  if (Has(told, Note::Kind::kBadChecksum)) {
    evidence_.damaged.Add(packet);
    return;
  }
  evidence_.received.Add(packet);
  evidence_.unanswered = {};
  if (Has(told, Note::Kind::kLate)) evidence_.late.Add(packet);
  if (Has(told, Note::Kind::kOtherIdentifier)) evidence_.foreign_identifiers.Add(packet);
  if (told.frame->frame.lingo == lingo::kGeneral) AddGeneral(*told.frame, packet);
  if (told.frame->frame.lingo == lingo::kStorage) AddStorageAck(*told.frame, packet);
  const bool is_ack = told.frame->command != nullptr && FindField(told.frame->fields, "command");
  if (is_ack && told.frame->Number("status") == status::kNotAuthenticated) {
    evidence_.not_authenticated.Add(packet);
  }
}

// The line was cut if nothing follows the beginning of a frame.
void EvidenceCollector::AddNoFrame(const Told& told) {
  if (!Has(told, Note::Kind::kNoFrame)) return;
  const std::uint64_t packet = told.observed.number;
  if (BeginsFrame(told.observed.bytes)) {
    evidence_.cut_frame = packet;
    return;
  }
  evidence_.noise.Add(packet);
  if (evidence_.noise_runs.size() < kMostNoiseRuns) {
    evidence_.noise_runs.push_back(told.observed.bytes);
  }
}

bool EvidenceCollector::IsEcho(const Told& told) const {
  return !last_sent_.empty() && told.observed.bytes == last_sent_;
}

void EvidenceCollector::AddGeneral(const DecodedFrame& frame, std::uint64_t packet) {
  switch (frame.frame.command) {
    case general::kAck:
      AddGeneralAck(frame, packet);
      break;
    case general::kRequestIdentify:
      if (evidence_.identified) evidence_.identify_requests.Add(packet);
      break;
    case general::kReturnLingoProtocolVersion: {
      const auto lingo = static_cast<std::uint8_t>(frame.Number("lingo").value_or(0));
      const std::vector<std::uint8_t>& data = frame.frame.data;
      if (data.size() < 2) break;
      const unsigned major = data[data.size() - 2];
      const unsigned minor = data[data.size() - 1];
      evidence_.versions[lingo] = {{major, minor}, packet};
      break;
    }
    case general::kGetDevAuthenticationInfo:
    case general::kGetDevAuthenticationSignature:
      evidence_.authentication.Add(packet);
      break;
    case general::kRetFidTokenValueAcks:
      AddTokenAcks(frame, packet);
      break;
    case general::kIdpsStatus:
      evidence_.identified = frame.Number("status") == status::kOk;
      if (!evidence_.identified) {
        evidence_.tokens_failed = {"EndIDPS", ValueOf(frame.fields, "status"), packet, false};
      }
      break;
    default:
      break;
  }
}

void EvidenceCollector::AddGeneralAck(const DecodedFrame& frame, std::uint64_t packet) {
  const auto status = frame.Number("status");
  if (!status || status == status::kPending) return;
  const Refusal refusal = {ValueOf(frame.fields, "command"), ValueOf(frame.fields, "status"),
                           packet, status == status::kUnknownId};
  switch (frame.Number("command").value_or(0xFFFF)) {
    case general::kStartIdps:
      if (status == status::kOk) {
        evidence_.start_accepted = packet;
        evidence_.start_accepted_with_identifier =
            static_cast<bool>(evidence_.start_with_identifier);
      } else {
        evidence_.start_refused = refusal;
      }
      break;
    case general::kIdentifyDeviceLingoes:
      if (status == status::kOk) {
        evidence_.identified = true;
      } else {
        evidence_.lingoes_refused = refusal;
      }
      break;
    case general::kRequestLingoProtocolVersion:
      if (status != status::kOk) evidence_.lingoes_without_version[last_version_asked_] = packet;
      break;
    default:
      break;
  }
}

void EvidenceCollector::AddTokenAcks(const DecodedFrame& frame, std::uint64_t packet) {
  const DecodedField* tokens = FindField(frame.fields, "tokens");
  if (tokens == nullptr) return;
  for (const std::vector<DecodedField>& token : tokens->items) {
    const DecodedField* status = FindField(token, "status");
    if (status == nullptr || status->number == status::kOk) continue;
    if (evidence_.refused_tokens.size() == kMostRefusedTokens) return;
    evidence_.refused_tokens.push_back({NameOfToken(token), status->value, packet, false});
  }
}

void EvidenceCollector::AddStorageAck(const DecodedFrame& frame, std::uint64_t packet) {
  const bool is_ack = frame.command != nullptr && FindField(frame.fields, "command") != nullptr;
  if (is_ack && frame.Number("status") == status::kOutOfResources) evidence_.no_room.Add(packet);
}

}  // namespace ipodwire
