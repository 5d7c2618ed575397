// SPDX-License-Identifier: MIT
// By which findings a trouble is known, a row for each.
#include "finding_judge.h"

#include <algorithm>

#include "simulator/protocol/command_table.h"

namespace truth {

namespace {

using Codes = std::vector<std::string>;
using ipodwire::Finding;

struct Row {
  Codes names;  // any of these says what went wrong
  Codes also;   // these follow from it
};

constexpr std::uint8_t kOutOfResources = 2;
constexpr std::uint8_t kUnknownId = 4;
constexpr std::uint8_t kNotAuthenticated = 7;

// What comes of an answer that is lost, or comes when nobody waits for it any more.
const Codes kAfterLoss = {"E304", "E402", "E406", "E407", "E408"};
const Codes kDamage = {"E204", "E206", "E207", "E501"};

Codes operator+(Codes left, const Codes& right) {
  left.insert(left.end(), right.begin(), right.end());
  return left;
}

Row RowOf(Meddling meddling) {
  switch (meddling) {
    case Meddling::kNone:
    case Meddling::kNotification:
    case Meddling::kStateChange:
    case Meddling::kSlow:
    case Meddling::kInterrupt:
      return {};
    case Meddling::kPending:
      return {{}, {"E408"}};
    case Meddling::kQuestion:
      return {{}, kAfterLoss};
    case Meddling::kLate:
    case Meddling::kHeldUp:
      return {{"E402", "E406", "E407", "E408"}, {"E304"}};
    case Meddling::kDoubled:
    case Meddling::kRepeated:
      return {{"E407", "E408"}, {"E402"}};
    case Meddling::kSwapped:
      return {{"E402", "E406", "E407", "E408"}, {"E304"}};
    case Meddling::kMissing:
    case Meddling::kLost:
      return {{"E406", "E408"}, kAfterLoss};
    case Meddling::kCut:
      return {{"E409"}, kAfterLoss};
    case Meddling::kBroken:
    case Meddling::kDroppedByte:
    case Meddling::kDoubledByte:
    case Meddling::kFlippedBit:
      return {kDamage, kAfterLoss};
    case Meddling::kJunk:
      return {{"E207"}, {}};
    case Meddling::kRefused:
    case Meddling::kRefusedAlways:
      return {{"E302", "E304", "E307", "E308", "E403", "E404", "E405"}, {}};
    case Meddling::kRestart:
      return {{"E406", "E503", "E504"}, {"E401", "E408"}};
    case Meddling::kHangUp:
      return {{"E201", "E501", "E503"}, {"E406"}};
    case Meddling::kLoopback:
      return {{"E202"}, {}};
  }
  return {};
}

// The simulated iPod's own faults and habits.
const std::vector<std::pair<std::string, Row>> kOwnTroubles = {
    {"sim-junk", {{"E207"}, {}}},
    {"sim-late-bytes", {kDamage, kAfterLoss}},
    {"sim-refused-commands", RowOf(Meddling::kRefused)},
    {"sim-short-replies", {{"E409"}, kAfterLoss}},
    {"sim-long-replies", {{"E409"}, kAfterLoss}},
    {"sim-unplug", {{"E406", "E501", "E503", "E504"}, {"E206", "E401", "E408"}}},
    {"sim-restart", {{"E406", "E503", "E504"}, {"E206", "E401", "E408"}}},
    {"sim-unasked-requests", RowOf(Meddling::kQuestion)},
    {"sim-hang-up", RowOf(Meddling::kHangUp)},
    {"sim-late-answers", RowOf(Meddling::kLate)},
    {"sim-doubled-answers", RowOf(Meddling::kDoubled)},
    {"sim-shuffled-answers", RowOf(Meddling::kSwapped)},
    {"sim-missing-answers", RowOf(Meddling::kMissing)},
    {"sim-pending-acks", RowOf(Meddling::kPending)},
    {"start-with-id", {{"E301"}, {}}},
    {"no-name", {{"E405"}, {}}},
    {"few-facts", {{"E405"}, {}}},
    {"no-track-info", {{"E405"}, {}}},
    {"no-select", {{"E405"}, {}}},
    {"authentication", {{"E404"}, {}}},
};

Row RowFor(const Trouble& trouble) {
  const auto own = std::find_if(kOwnTroubles.begin(), kOwnTroubles.end(),
                                [&](const auto& row) { return row.first == trouble.name; });
  return own != kOwnTroubles.end() ? own->second : RowOf(trouble.meddling);
}

// What is true of an iPod of that kind without any trouble.
Codes CodesOf(const Case& run) {
  switch (run.profile) {
    case ipodsim::Profile::kClassic:
      return {"E302"};
    case ipodsim::Profile::kOld:
      return {"E302", "E306", "E307"};
    case ipodsim::Profile::kNoSports:
      return {"E307"};
    case ipodsim::Profile::kSilent:
      return {"E201"};
    case ipodsim::Profile::kStrict:
      // It leaves some questions without an identifier alone.
      return {"E301", "E406"};
    case ipodsim::Profile::kEcho:
      return {"E202"};
    case ipodsim::Profile::kNano:
      break;
  }
  return {};
}

bool Holds(const Codes& codes, const std::string& code) {
  return std::find(codes.begin(), codes.end(), code) != codes.end();
}

// What the refusals that came make true, whoever made them.
Codes CodesOf(const std::vector<Refusal>& refusals) {
  Codes codes;
  for (const Refusal& refusal : refusals) {
    const bool is_general = refusal.lingo == ipodsim::kGeneral;
    if (is_general && refusal.command == ipodsim::general::kStartIdps) {
      if (refusal.status == kUnknownId) codes.emplace_back("E302");
    } else if (is_general && refusal.command == ipodsim::general::kIdentifyDeviceLingoes) {
      codes.emplace_back("E308");
    } else if (is_general && refusal.command == ipodsim::general::kRequestLingoProtocolVersion) {
      codes.emplace_back("E307");
    } else if (refusal.status == kNotAuthenticated) {
      codes.emplace_back("E404");
    } else if (refusal.lingo == ipodsim::kStorage && refusal.status == kOutOfResources) {
      codes.emplace_back("E403");
    } else {
      codes.emplace_back("E405");
    }
  }
  return codes;
}

// Nobody is there who could have a trouble, or hear of one.
bool IsNobody(ipodsim::Profile profile) {
  return profile == ipodsim::Profile::kSilent || profile == ipodsim::Profile::kEcho;
}

}  // namespace

bool HasAName(const Case& run, const Account& account) {
  const Trouble& trouble = *run.trouble;
  const Codes names = RowFor(trouble).names;
  if (IsNobody(run.profile) || names.empty()) return false;
  switch (trouble.meddling) {
    case Meddling::kNone:
      break;
    case Meddling::kLate:
    case Meddling::kHeldUp:
      // So long accessories wait, and nobody notices.
      return account.noticeable && account.longest_delay_us > ipodsim::kSecond;
    case Meddling::kRefused:
    case Meddling::kRefusedAlways:
    case Meddling::kRestart:
    case Meddling::kHangUp:
    case Meddling::kLoopback:
      return account.struck;
    default:
      return account.noticeable;
  }
  // The simulated iPod's own: some show in what passes the dock, others in every session.
  for (const char* absence : {"sim-unplug", "sim-restart", "sim-hang-up"}) {
    if (trouble.name == absence) return account.cut_off;
  }
  if (trouble.name == "start-with-id") {
    return !run.legacy() && ipodsim::TraitsOf(run.profile).identifies_by_tokens;
  }
  const bool refuses = Holds(names, "E404") || Holds(names, "E405");
  const Codes refused = CodesOf(account.refusals);
  return !refuses || std::any_of(refused.begin(), refused.end(),
                                 [&](const std::string& code) { return Holds(names, code); });
}

bool IsNamed(const Case& run, const std::vector<Finding>& findings) {
  const Codes names = RowFor(*run.trouble).names;
  return std::any_of(findings.begin(), findings.end(),
                     [&](const Finding& finding) { return Holds(names, finding.code); });
}

std::string WhatIsNotProved(const Case& run, const Account& account,
                            const std::vector<Finding>& findings) {
  if (account.checksum_held || (IsNobody(run.profile) && account.struck)) return {};
  const Row row = RowFor(*run.trouble);
  const Codes possible = row.names + row.also + CodesOf(run) + CodesOf(account.refusals);
  for (const Finding& finding : findings) {
    const bool wrong =
        finding.certainty == ipodwire::Certainty::kProved && !Holds(possible, finding.code);
    if (wrong) return finding.code + " is said to be proved: " + finding.seen;
  }
  return {};
}

}  // namespace truth
