// SPDX-License-Identifier: MIT
// From what was seen to why it went so: a rule for each code.
#include "wire/findings/findings.h"

#include <array>
#include <cstdio>
#include <optional>
#include <utility>

#include "wire/findings/baud_rate.h"

namespace ipodwire {
namespace {

using Packets = std::vector<std::uint64_t>;
using Found = std::optional<Finding>;

std::string Count(std::uint64_t count, const char* singular, const char* plural) {
  return std::to_string(count) + " " + (count == 1 ? singular : plural);
}

std::string Frames(std::uint64_t count) { return Count(count, "frame", "frames"); }

std::string Version(std::pair<unsigned, unsigned> version) {
  std::array<char, 24> text{};
  std::snprintf(text.data(), text.size(), "%u.%02u", version.first, version.second);
  return text.data();
}

Finding Proved(const char* code, std::string seen, Packets packets) {
  return {code, Certainty::kProved, std::move(seen), std::move(packets)};
}

Finding Likely(const char* code, std::string seen, Packets packets) {
  return {code, Certainty::kLikely, std::move(seen), std::move(packets)};
}

// ---- The end of the line ----------------------------------------------------------------------

Found PortGone(const Evidence& evidence) {
  if (!evidence.line_gone) return {};
  return Proved("E502", "the system reported that the line is gone", {*evidence.line_gone});
}

Found CutFrame(const Evidence& evidence) {
  if (!evidence.cut_frame) return {};
  // A frame may also lose its end on the line, just before a session ends by itself.
  return Likely("E501", "the last that came is the beginning of a frame", {*evidence.cut_frame});
}

Found Restarted(const Evidence& evidence) {
  if (evidence.identify_requests) {
    return Likely("E504", "an iPod that had accepted the accessory asked it to identify itself",
                  evidence.identify_requests.packets);
  }
  if (!evidence.forgetful) return {};
  return Likely("E504",
                "an iPod that had accepted the accessory by tokens answers without identifiers",
                evidence.forgetful.packets);
}

Found FellSilent(const Evidence& evidence) {
  constexpr std::uint64_t kSuspicious = 3;
  const bool answered_before = static_cast<bool>(evidence.received);
  if (!answered_before || evidence.unanswered.count < kSuspicious) return {};
  return Likely("E503",
                "the last " + Count(evidence.unanswered.count, "question", "questions") +
                    " stayed unanswered, after " + Frames(evidence.received.count) + " had come",
                evidence.unanswered.packets);
}

// ---- Bytes on the line ------------------------------------------------------------------------

Found NothingCame(const Evidence& evidence) {
  if (!evidence.sent || evidence.bytes_received > 0) return {};
  const std::string seen = Frames(evidence.sent.count) + " went out and not one byte came";
  // A session that was given up behind its first frame has hardly listened.
  if (evidence.sent.count == 1) return Likely("E201", seen, evidence.sent.packets);
  return Proved("E201", seen, evidence.sent.packets);
}

Found OnlyEchoes(const Evidence& evidence) {
  if (!evidence.echoes || evidence.received) return {};
  return Proved("E202",
                "all that came, " + Frames(evidence.echoes.count) +
                    ", are the accessory's own, byte for byte",
                evidence.echoes.packets);
}

Found OnlyNoise(const Evidence& evidence) {
  const bool any_frame = evidence.received || evidence.damaged || evidence.echoes;
  if (any_frame || evidence.cut_frame || evidence.bytes_received == 0) return {};
  const auto rate = SendingRate(evidence.noise_runs, evidence.baud);
  std::string seen = std::to_string(evidence.bytes_received) + " bytes came and no whole frame";
  if (!rate)
    return Finding{"E203", Certainty::kNotExcluded,
                   seen + "; the rate at which they were sent is unknown", evidence.noise.packets};
  Finding found = Proved("E203",
                         seen + "; they are frames sent at " + std::to_string(*rate) +
                             " baud and heard at " + std::to_string(evidence.baud),
                         evidence.noise.packets);
  found.rate = *rate;
  return found;
}

std::string DamagedFrames(const Sightings& damaged, const char* direction) {
  return Frames(damaged.count) + direction +
         (damaged.count == 1 ? " has a bad checksum" : " have bad checksums");
}

Found Damaged(const Evidence& evidence) {
  if (!evidence.damaged) {
    if (!evidence.damaged_sent) return {};
    return Proved("E204", DamagedFrames(evidence.damaged_sent, " to the iPod"),
                  evidence.damaged_sent.packets);
  }
  std::string seen = DamagedFrames(evidence.damaged, " from the iPod") + ", " +
                     std::to_string(evidence.received.count) + " good ones came";
  const std::string pattern = evidence.damage.Pattern();
  if (!pattern.empty()) seen += "; " + pattern;
  return Proved("E204", seen, evidence.damaged.packets);
}

Found Unfinished(const Evidence& evidence) {
  if (!evidence.unfinished) return {};
  return Proved("E206",
                Count(evidence.unfinished.count, "frame was", "frames were") +
                    " begun and not ended before others came",
                evidence.unfinished.packets);
}

Found NoiseBetweenFrames(const Evidence& evidence) {
  if (!evidence.noise || !evidence.received) return {};
  return Proved("E207",
                Count(evidence.noise.count, "run", "runs") + " of bytes belonged to no frame, " +
                    std::to_string(evidence.received.count) + " good frames came",
                evidence.noise.packets);
}

Found LineErrors(const Evidence& evidence) {
  if (!evidence.line_errors) return {};
  return Proved("E205",
                "the driver reported " + Count(evidence.line_errors.count, "error", "errors") +
                    " of the line",
                evidence.line_errors.packets);
}

// ---- Identification ---------------------------------------------------------------------------

// A lingo, and the version from which on the library can use it.
struct Need {
  std::uint8_t lingo;
  const char* name;
  std::pair<unsigned, unsigned> least;
};

// Whether a version was told that is below what is needed.
Found BelowNeed(const char* code, const Need& need, const Evidence& evidence) {
  const auto told = evidence.versions.find(need.lingo);
  if (told == evidence.versions.end() || told->second.first >= need.least) return {};
  return Proved(code,
                std::string(need.name) + " has version " + Version(told->second.first) +
                    " and needs " + Version(need.least),
                {told->second.second});
}

Found TooOld(const Evidence& evidence) {
  constexpr Need kNeeds[] = {{0x00, "General", {1, 2}},
                             {0x03, "Display Remote", {1, 1}},
                             {0x04, "Extended Interface", {1, 8}}};
  for (const Need& need : kNeeds) {
    if (Found found = BelowNeed("E306", need, evidence)) return found;
  }
  return {};
}

Found NoWorkouts(const Evidence& evidence) {
  constexpr Need kNeeds[] = {{0x09, "Sports", {1, 1}}, {0x0C, "Storage", {1, 2}}};
  for (const Need& need : kNeeds) {
    const auto refused = evidence.lingoes_without_version.find(need.lingo);
    if (refused != evidence.lingoes_without_version.end()) {
      return Proved("E307", std::string("the iPod knows no lingo ") + need.name, {refused->second});
    }
    if (Found found = BelowNeed("E307", need, evidence)) return found;
  }
  return {};
}

Found WantsAuthentication(const Evidence& evidence) {
  if (!evidence.authentication) return {};
  return Proved("E305", "the iPod asked for the accessory's certificate",
                evidence.authentication.packets);
}

Found WantsIdentifier(const Evidence& evidence) {
  if (!evidence.start_without_identifier || !evidence.start_accepted_with_identifier) return {};
  const std::string seen =
      "StartIDPS was accepted with an identifier, after it stayed unanswered without";
  const Packets packets = {evidence.start_without_identifier.packets.front(),
                           *evidence.start_accepted};
  if (evidence.start_disturbed) {
    return Finding{"E301", Certainty::kNotExcluded, seen + "; what came between was damaged",
                   packets};
  }
  // The answer to the one without may have been lost.
  return Likely("E301", seen, packets);
}

// Nobody tried what such an iPod wants, so it may be one.
Found MayWantIdentifier(const Evidence& evidence) {
  const bool ignored = evidence.start_without_identifier && !evidence.start_with_identifier &&
                       !evidence.start_accepted && !evidence.start_refused;
  if (!ignored || !evidence.received) return {};
  return Finding{"E301", Certainty::kNotExcluded,
                 "StartIDPS stayed unanswered, and was never sent with an identifier",
                 evidence.start_without_identifier.packets};
}

Found TokensUnknown(const Evidence& evidence) {
  if (evidence.start_accepted ||
      (!evidence.start_without_identifier && !evidence.start_with_identifier)) {
    return {};
  }
  if (evidence.start_refused) {
    return Finding{"E302",
                   evidence.start_refused->unknown ? Certainty::kProved : Certainty::kLikely,
                   "StartIDPS was refused: " + evidence.start_refused->status,
                   {evidence.start_refused->packet}};
  }
  // Silence alone may have any cause; an iPod that answers other questions ignores this one.
  if (!evidence.received) return {};
  const Sightings& asked = evidence.start_without_identifier ? evidence.start_without_identifier
                                                             : evidence.start_with_identifier;
  return Likely("E302", "StartIDPS stayed unanswered, other questions did not", asked.packets);
}

Found LingoesRefused(const Evidence& evidence) {
  if (!evidence.lingoes_refused || evidence.identified) return {};
  return Proved("E308", "IdentifyDeviceLingoes was refused: " + evidence.lingoes_refused->status,
                {evidence.lingoes_refused->packet});
}

Found TokensFailed(const Evidence& evidence) {
  if (!evidence.tokens_failed || evidence.identified) return {};
  return Proved("E304", "EndIDPS was answered by: " + evidence.tokens_failed->status,
                {evidence.tokens_failed->packet});
}

Found TokenRefused(const Evidence& evidence) {
  if (evidence.refused_tokens.empty()) return {};
  std::string seen;
  Packets packets;
  for (const Refusal& refusal : evidence.refused_tokens) {
    seen += (seen.empty() ? "" : "; ") + refusal.what + ": " + refusal.status;
    if (packets.empty() || packets.back() != refusal.packet) packets.push_back(refusal.packet);
  }
  return Proved("E303", seen, std::move(packets));
}

// ---- Answers ----------------------------------------------------------------------------------

Found NoRoom(const Evidence& evidence) {
  if (!evidence.no_room) return {};
  return Proved("E403", "the Storage lingo answered: out of resources", evidence.no_room.packets);
}

Found NotAuthenticated(const Evidence& evidence) {
  if (!evidence.not_authenticated) return {};
  return Proved("E404",
                Count(evidence.not_authenticated.count, "question was", "questions were") +
                    " refused for want of authentication",
                evidence.not_authenticated.packets);
}

Found Refused(const Evidence& evidence) {
  if (!evidence.refused) return {};
  const Refusal& first = *evidence.first_refusal;
  std::string seen = first.what + " was refused: " + first.status;
  if (evidence.refused.count > 1) {
    seen += "; " + Count(evidence.refused.count - 1, "other refusal", "other refusals") + " came";
  }
  return Proved("E405", seen, evidence.refused.packets);
}

Found LeftOut(const Evidence& evidence) {
  if (!evidence.left_out || !evidence.received) return {};
  const std::string seen = Count(evidence.left_out.count, "question", "questions") +
                           " stayed unanswered, others did not";
  if (evidence.left_out_in_haste) return Likely("E406", seen, evidence.left_out.packets);
  return Proved("E406", seen, evidence.left_out.packets);
}

Found Unasked(const Evidence& evidence) {
  if (!evidence.unasked) return {};
  return Proved("E407",
                Count(evidence.unasked.count, "answer", "answers") +
                    " came that no open question had asked for",
                evidence.unasked.packets);
}

Found OtherOrder(const Evidence& evidence) {
  if (!evidence.other_order) return {};
  return Proved(
      "E408",
      Count(evidence.other_order.count, "record", "records") + " did not follow the one before",
      evidence.other_order.packets);
}

Found Misshapen(const Evidence& evidence) {
  if (!evidence.misshapen) return {};
  return Proved("E409",
                Count(evidence.misshapen.count, "good frame does", "good frames do") +
                    " not hold what its command is made of",
                evidence.misshapen.packets);
}

Found Slow(const Evidence& evidence) {
  if (!evidence.late) return {};
  return Proved("E402",
                Count(evidence.late.count, "answer", "answers") + " came after more than a second",
                evidence.late.packets);
}

Found ForeignIdentifiers(const Evidence& evidence) {
  if (evidence.foreign_identifiers) {
    return Proved("E401",
                  Count(evidence.foreign_identifiers.count, "answer", "answers") +
                      " came not under the question's identifier",
                  evidence.foreign_identifiers.packets);
  }
  if (evidence.earlier_identifiers) {
    return Likely("E401",
                  Count(evidence.earlier_identifiers.count, "answer", "answers") +
                      " came under the identifier of an earlier question",
                  evidence.earlier_identifiers.packets);
  }
  if (!evidence.without_identifier) return {};
  return Likely("E401",
                Count(evidence.without_identifier.count, "answer", "answers") +
                    " came without an identifier, the questions have one",
                evidence.without_identifier.packets);
}

// What ended a session before what hampered it, and what explains others before those.
constexpr Found (*kRules[])(const Evidence&) = {
    PortGone,
    OnlyEchoes,
    NothingCame,
    OnlyNoise,
    TooOld,
    LingoesRefused,
    TokensFailed,
    WantsAuthentication,
    TokenRefused,
    Restarted,
    CutFrame,
    FellSilent,
    NoRoom,
    NotAuthenticated,
    Damaged,
    Unfinished,
    NoiseBetweenFrames,
    LineErrors,
    Misshapen,
    Refused,
    Slow,
    LeftOut,
    Unasked,
    OtherOrder,
    WantsIdentifier,
    ForeignIdentifiers,
    TokensUnknown,
    MayWantIdentifier,
    NoWorkouts,
};

}  // namespace

std::vector<Finding> FindingsOf(const Evidence& evidence) {
  std::vector<Finding> findings;
  for (const auto& rule : kRules) {
    if (Found found = rule(evidence)) findings.push_back(std::move(*found));
  }
  return findings;
}

}  // namespace ipodwire
