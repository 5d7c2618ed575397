// SPDX-License-Identifier: MIT
// Verdicts.
#include "judge.h"

#include <algorithm>
#include <cstdlib>

#include "simulator/protocol/commands.h"

namespace truth {

namespace {

constexpr double kLongestSeconds = 600;

bool Says(const std::string& message, const char* part) {
  return message.find(part) != std::string::npos;
}

// A refusal is a cause when its status was told, or when it came near the end: a command that was
// refused something asks at most a few questions more.
bool WasRefused(const std::string& message, const Account& account) {
  constexpr unsigned kQuestionsAfter = 16;
  if (account.refusals.empty()) return false;
  const std::size_t told = message.rfind("status ");
  if (told == std::string::npos) {
    return account.refusals.back().after + kQuestionsAfter >= account.requests;
  }
  const int status = std::atoi(message.c_str() + told + 7);
  return std::any_of(account.refusals.begin(), account.refusals.end(),
                     [status](const Refusal& refusal) { return refusal.status == status; });
}

}  // namespace

bool KnowsNoSuchLingo(const Account& account) {
  return std::any_of(account.refusals.begin(), account.refusals.end(), [](const Refusal& refusal) {
    return refusal.lingo == ipodsim::kGeneral &&
           refusal.command == ipodsim::general::kRequestLingoProtocolVersion &&
           (refusal.status == static_cast<std::uint8_t>(ipodsim::AckStatus::kUnknown) ||
            refusal.status == static_cast<std::uint8_t>(ipodsim::AckStatus::kBadParameter));
  });
}

const char* NameOf(Verdict verdict) {
  switch (verdict) {
    case Verdict::kRight:
      return "right";
    case Verdict::kHonest:
      return "honest failure";
    case Verdict::kLie:
      return "LIE";
    case Verdict::kFalseCause:
      return "FALSE CAUSE";
    case Verdict::kHang:
      return "HANG";
    case Verdict::kCollision:
      return "checksum collision";
  }
  return "";
}

Judgement Judge(const Case& run, const Finished& finished, const ipodsim::SimulatedIpod& ipod,
                std::int64_t now_us) {
  const Outcome& outcome = finished.outcome;
  const Account& account = finished.account;
  if (outcome.deadlocked) return {Verdict::kHang, "deadlock: " + outcome.message};
  if (outcome.seconds > kLongestSeconds) {
    return {Verdict::kHang, "took " + std::to_string(static_cast<int>(outcome.seconds)) + " s"};
  }
  constexpr int kInterrupted = 130;
  const bool succeeded = outcome.status == 0;
  const bool interrupted = outcome.status == kInterrupted &&
                           run.trouble->meddling == Meddling::kInterrupt && account.struck;
  const std::string untrue = succeeded ? WhatIsUntrue(run, outcome.out, account, ipod, now_us)
                             : interrupted
                                 ? WhatIsUntrueSoFar(run, outcome.out, account, ipod, now_us)
                                 : WhatIsNotTheCause(run, outcome, account, ipod);
  if (untrue.empty()) {
    return succeeded ? Judgement{Verdict::kRight, ""}
                     : Judgement{Verdict::kHonest, outcome.message};
  }
  if (account.checksum_held) return {Verdict::kCollision, untrue};
  return {succeeded || interrupted ? Verdict::kLie : Verdict::kFalseCause, untrue};
}

std::string WhatIsNotTheCause(const Case& run, const Outcome& outcome, const Account& account,
                              const ipodsim::SimulatedIpod& ipod) {
  const std::string& message = outcome.message;
  const ipodsim::Traits& traits = ipodsim::TraitsOf(run.profile);
  const std::string said = "exit " + std::to_string(outcome.status) + ": " + message;
  if (outcome.status == 64 || outcome.status == 2) return said + " [the run itself is wrong]";
  if (Says(message, "interrupted")) return said + " [nobody did]";
  if (Says(message, "too old") && run.profile != ipodsim::Profile::kOld &&
      !KnowsNoSuchLingo(account)) {
    return said + " [it is not]";
  }
  const bool nobody = account.cut_off || !traits.answers;
  if (Says(message, "no iPod answers") && account.answers != 0 && !nobody) {
    return said + " [it gave " + std::to_string(account.answers) + " answers]";
  }
  if (Says(message, "no longer answers") && !nobody &&
      account.last_answer_us > account.last_request_us) {
    return said + " [it answered the last question]";
  }
  if (Says(message, "did not accept") && ipod.identified() && !nobody &&
      !WasRefused(message, account)) {
    return said + " [it did]";
  }
  if (Says(message, " refused") && !WasRefused(message, account)) {
    return said + " [it refused nothing]";
  }
  if (Says(message, "there is no ") || Says(message, "there are no ")) {
    return said + " [there is]";
  }
  if (Says(message, "has no Sports service") && traits.Lingo(ipodsim::kSports) != nullptr &&
      !KnowsNoSuchLingo(account)) {
    return said + " [it has one]";
  }
  if (Says(message, "Storage service") && traits.Lingo(ipodsim::kStorage) != nullptr) {
    return said + " [it has a good one]";
  }
  if (Says(message, "does not take workouts from the legacy") && traits.model_id >> 16 == 0x0014) {
    return said + " [it does]";
  }
  if (Says(message, "of free space")) return said + " [it has more]";
  return "";
}

}  // namespace truth
