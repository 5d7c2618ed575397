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
// Frames that may still come back.
constexpr std::size_t kMostSent = 16;
// An answer that has not come for so long does not come in time.
constexpr Nanoseconds kPatience = Conversation::kLongestWait;
// Questions whose answers may still come, late.
constexpr std::size_t kMostAsked = 64;

bool Has(const Told& told, Note::Kind kind) {
  return std::any_of(told.notes.begin(), told.notes.end(),
                     [&](const Note& note) { return note.kind == kind; });
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

bool Contains(const std::deque<std::uint64_t>& packets, std::uint64_t packet) {
  return std::find(packets.begin(), packets.end(), packet) != packets.end();
}

// The last of them only.
template <class Packet>
void Remember(Packet packet, std::deque<Packet>* packets) {
  packets->push_back(packet);
  if (packets->size() > kMostAsked) packets->pop_front();
}

// Whether a General command is one of those with which an accessory identifies itself.
bool Identifies(std::optional<std::uint64_t> command) {
  switch (command.value_or(0)) {
    case general::kStartIdps:
    case general::kIdentifyDeviceLingoes:
    case general::kRequestLingoProtocolVersion:
      return true;
    default:
      return false;
  }
}

bool BeginsFrame(const std::vector<std::uint8_t>& bytes) {
  return bytes.size() >= 2 && bytes[0] == 0xFF && bytes[1] == 0x55;
}

}  // namespace

void Sightings::Add(std::uint64_t packet) {
  ++count;
  if (packets.size() < kMostPackets) packets.push_back(packet);
}

void Sightings::Remove(std::uint64_t packet) {
  const auto seen = std::find(packets.begin(), packets.end(), packet);
  if (seen == packets.end()) return;
  packets.erase(seen);
  --count;
}

void EvidenceCollector::Add(const Told& told) {
  NoticeSilence(told);
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
  if (Has(told, Note::Kind::kBadChecksum)) evidence_.damaged_sent.Add(packet);
  evidence_.sent.Add(packet);
  if (frame.identifier) asked_under_.insert(*frame.identifier);
  sent_.push_back(told.observed.bytes);
  if (sent_.size() > kMostSent) sent_.pop_front();
  if (frame.command != nullptr && frame.command->reply.kind != Reply::Kind::kNone) {
    evidence_.unanswered.Add(packet);
    Remember({packet, told.observed.time}, &asked_);
  }
  if (frame.frame.lingo != lingo::kGeneral) return;
  if (frame.frame.command == general::kStartIdps) {
    (frame.identifier ? evidence_.start_with_identifier : evidence_.start_without_identifier)
        .Add(packet);
    Remember(packet, &starts_);
  }
  if (frame.frame.command == general::kRequestLingoProtocolVersion) {
    last_version_asked_ = static_cast<std::uint8_t>(frame.Number("lingo").value_or(0));
  }
}

void EvidenceCollector::AddReceived(const Told& told) {
  const std::uint64_t packet = told.observed.number;
  evidence_.bytes_received += told.observed.bytes.size();
  if (evidence_.cut_frame) evidence_.unfinished.Add(*evidence_.cut_frame);
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
    evidence_.damage.AddDamaged(told.observed.bytes);
    return;
  }
  evidence_.received.Add(packet);
  evidence_.damage.AddGood(told.observed.bytes);
  evidence_.unanswered = {};
  NoticeAnswer(told);
  if (Has(told, Note::Kind::kLate)) evidence_.late.Add(packet);
  if (Has(told, Note::Kind::kOtherIdentifier)) {
    const bool asked = asked_under_.count(*told.frame->identifier) != 0;
    (asked ? evidence_.earlier_identifiers : evidence_.foreign_identifiers).Add(packet);
  }
  if (Has(told, Note::Kind::kNoIdentifier) && !Has(told, Note::Kind::kDamaged)) {
    (evidence_.identified_by_tokens ? evidence_.forgetful : evidence_.without_identifier)
        .Add(packet);
  }
  if (Has(told, Note::Kind::kUnasked)) evidence_.unasked.Add(packet);
  if (Has(told, Note::Kind::kOtherOrder)) evidence_.other_order.Add(packet);
  if (Has(told, Note::Kind::kDamaged) && told.frame->command != nullptr) {
    evidence_.misshapen.Add(packet);
  }
  // What does not fit its command says nothing else.
  if (Has(told, Note::Kind::kDamaged) && told.frame->command != nullptr) return;
  if (told.frame->frame.lingo == lingo::kGeneral) AddGeneral(*told.frame, packet);
  if (told.frame->frame.lingo == lingo::kStorage) AddStorageAck(*told.frame, packet);
  if (Has(told, Note::Kind::kRefused)) AddRefusal(*told.frame, packet);
}

// Those that have a finding of their own are not counted here.
void EvidenceCollector::AddRefusal(const DecodedFrame& frame, std::uint64_t packet) {
  const auto status = frame.Number("status");
  const auto command = frame.Number("command");
  if (status == status::kNotAuthenticated) {
    evidence_.not_authenticated.Add(packet);
    return;
  }
  const bool is_full = frame.frame.lingo == lingo::kStorage && status == status::kOutOfResources;
  if (is_full || (frame.frame.lingo == lingo::kGeneral && Identifies(command))) return;
  if (!evidence_.refused) {
    evidence_.first_refusal = {ValueOf(frame.fields, "command"), ValueOf(frame.fields, "status"),
                               packet, status == status::kUnknownId};
  }
  evidence_.refused.Add(packet);
}

// A question that was asked again, or followed by others, may still be answered late.
void EvidenceCollector::NoticeSilence(const Told& told) {
  for (const Note& note : told.notes) {
    const bool silent = note.kind == Note::Kind::kRetry || note.kind == Note::Kind::kUnanswered;
    const auto asked = std::find_if(asked_.begin(), asked_.end(), [&](const Asked& candidate) {
      return candidate.question == note.question;
    });
    if (!silent || asked == asked_.end()) continue;
    if (Contains(starts_, note.question)) {
      evidence_.silent_starts.Add(note.question);
      continue;
    }
    silent_.push_back({note.question, asked->at});
    if (silent_.size() <= kMostAsked) continue;
    LeaveOut(silent_.front(), &evidence_);
    silent_.pop_front();
  }
}

void EvidenceCollector::NoticeAnswer(const Told& told) {
  const auto is_answered = [&](const Silent& silent) { return silent.question == told.question; };
  silent_.erase(std::remove_if(silent_.begin(), silent_.end(), is_answered), silent_.end());
  for (Silent& silent : silent_) {
    silent.passed_over = true;
    silent.in_time = told.observed.time - silent.asked_at < kPatience;
  }
  if (told.question) evidence_.silent_starts.Remove(*told.question);
}

void EvidenceCollector::LeaveOut(const Silent& silent, Evidence* evidence) {
  if (!silent.passed_over) return;
  evidence->left_out.Add(silent.question);
  evidence->left_out_in_haste = evidence->left_out_in_haste || silent.in_time;
}

// Where StartIDPS went unanswered for good, that is told by itself.
Evidence EvidenceCollector::evidence() const {
  Evidence all = evidence_;
  for (const Silent& silent : silent_) LeaveOut(silent, &all);
  if (all.start_accepted && !all.start_accepted_with_identifier) {
    for (const std::uint64_t start : all.silent_starts.packets) all.left_out.Add(start);
  }
  return all;
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

// Each frame comes back once.
bool EvidenceCollector::IsEcho(const Told& told) {
  const auto sent = std::find(sent_.begin(), sent_.end(), told.observed.bytes);
  if (sent == sent_.end()) return false;
  sent_.erase(sent);
  return true;
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
      evidence_.identified_by_tokens = evidence_.identified;
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
        evidence_.identified_by_tokens = false;
        AddAcceptedStart(frame, packet);
      } else {
        evidence_.start_refused = refusal;
      }
      break;
    case general::kIdentifyDeviceLingoes:
      if (status == status::kOk) {
        evidence_.identified = true;
        evidence_.identified_by_tokens = false;
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

// An iPod that accepted one without an identifier, however late, does not want any.
void EvidenceCollector::AddAcceptedStart(const DecodedFrame& frame, std::uint64_t packet) {
  const bool is_first = !evidence_.start_accepted;
  if (is_first) {
    evidence_.start_disturbed = evidence_.damaged || evidence_.noise || evidence_.unfinished;
  }
  evidence_.start_accepted_with_identifier =
      frame.identifier.has_value() && (is_first || evidence_.start_accepted_with_identifier);
  evidence_.start_accepted = packet;
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
