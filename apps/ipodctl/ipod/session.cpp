// SPDX-License-Identifier: MIT
// Opens, identifies, and explains what failed.
#include "ipod/session.h"

#include "console/clock.h"
#include "console/failure.h"
#include "console/interrupt.h"
#include "console/progress.h"
#include "console/verbose_log.h"
#include "ipod/conduct.h"
#include "ipod/identify_evidence.h"
#include "ipod/refusal.h"

namespace ipodctl {

namespace {

constexpr unsigned char kGeneralLingo = 0x00;
constexpr int kLowPower = 0;
constexpr std::size_t kLongestAnswer = 1024;

struct Patience {
  CIpodComm& ipod;
  std::chrono::microseconds until;  // while nothing has answered
};

bool KeepGoing(void* context) {
  const Patience& patience = *static_cast<const Patience*>(context);
  if (Interrupted()) return false;
  return SteadyTime() < patience.until || IdentifyEvidence(patience.ipod).AnyAnswer();
}

}  // namespace

Session::Session(const Options& options, const DockLine& dock) : options_(options), dock_(dock) {
  const tagIPOD_CONDUCT conduct = ConductOf(options);
  ipod_.SetConduct(&conduct);
  ipod_.SetKeepGoing(CtrlC::MayGoOn, &ctrl_c_);
  Note("opening " + dock.device());
  const long code = ipod_.Open();
  if (code != 0) dock.FailToOpen(code);
}

Session::~Session() { Close(); }

void Session::Identify(std::chrono::microseconds until) {
  StatusLine status;
  status.Show("Waking and identifying the iPod ...");
  Note(options_.idps ? "identifying, by tokens first" : "identifying without tokens");
  ipod_.SetModel(options_.model);
  ipod_.SetIDPSEnable(options_.idps ? 1 : 0);
  Patience patience = {ipod_, until};
  if (ipod_.Command_IdentifyDeviceLingos(kLowPower, &identified_, KeepGoing, &patience) == 0) {
    FailIdentification();
  }
  NoteVersions();
  Note("identified by " + IdentifiedBy());
}

// What identification has asked is not asked again.
void Session::NoteVersions() {
  const IdentifyEvidence evidence(ipod_);
  for (const unsigned char lingo : evidence.AskedLingoes()) {
    versions_[lingo] = {evidence.Version(lingo), evidence.Refusal(lingo)};
  }
}

void Session::FailIdentification() {
  StopIfInterrupted();
  const IdentifyEvidence evidence(ipod_);
  if (identified_ == IPOD_IDENTIFY_RESULT_TOOOLD && !evidence.AnyTooOld()) {
    throw CommandFailure(kFailed,
                         "the iPod refused to tell versions without which it cannot be "
                         "controlled (" +
                             evidence.WhatIsTooOld() + ")");
  }
  if (identified_ == IPOD_IDENTIFY_RESULT_TOOOLD) {
    throw CommandFailure(kIpodTooOld,
                         "this iPod is too old to be controlled (" + evidence.WhatIsTooOld() +
                             "); update its software or dock a newer one",
                         "E306");
  }
  if (identified_ == IPOD_IDENTIFY_RESULT_ECHO) dock_.FailForEcho();
  if (!evidence.AnyAnswer()) dock_.FailToFindIpod(evidence.WhatCame());
  throw CommandFailure(kNothingDocked, "could not introduce the accessory to the iPod on " +
                                           dock_.device() + " (" + evidence.WhatCame() +
                                           "); take it out of the dock, put it back and try again");
}

const Session::ToldVersion& Session::Told(unsigned char lingo) {
  const auto known = versions_.find(lingo);
  if (known != versions_.end()) return known->second;
  tagIPOD_VERSION version = {};
  if (ipod_.Command_RequestLingoProtocolVersion(lingo, &version) != 0) {
    return versions_[lingo] = {version, {}};
  }
  // An iPod that started anew takes the question's identifier for data, and refuses that without
  // one.
  const tagIPOD_EXCHANGE refusal = Last();
  if (!WasRefused() || refusal.carried_id != refusal.answer_carried_id) {
    Fail(refusal, "tell the version of a lingo");
  }
  return versions_[lingo] = {{}, refusal.status};
}

bool Session::LacksLingo(unsigned char lingo) {
  const std::optional<std::uint8_t> refusal = LingoRefusal(lingo);
  return refusal && SaysUnknown(*refusal);
}

void Session::EnterRemoteUi() {
  Note("entering remote user-interface mode");
  Require(ipod_.Command_EnterRemoteUIMode() != 0, "be controlled from outside");
}

std::string Session::IdentifiedBy() const {
  return identified_ == IPOD_IDENTIFY_RESULT_IDPS ? "tokens" : "lingoes";
}

std::optional<std::vector<unsigned char>> Session::Exchange(const tagIPOD_WRITE_PARAMS& command,
                                                            std::uint16_t answer, int attempts) {
  std::vector<unsigned char> data(kLongestAnswer);
  tagIPOD_WRITE_PARAMS request = command;
  tagIPOD_READ_PARAMS read = {};
  read.expected_command = answer;
  read.buffer = data.data();
  read.size = static_cast<std::int32_t>(data.size());
  read.retries = attempts;
  ipod_.WriteReadCommand(&request, &read);
  if (Last().result != IPOD_EXCHANGE_ANSWERED) return std::nullopt;
  data.resize(read.stored);
  return data;
}

std::optional<std::vector<unsigned char>> Session::ExchangeWhole(
    const tagIPOD_WRITE_PARAMS& question, std::uint16_t answer,
    bool (*whole)(const std::vector<unsigned char>& data), const std::string& about) {
  constexpr int kCutShort = 3;  // answers
  for (int answers = 0; answers < kCutShort; ++answers) {
    const auto data = Exchange(question, answer);
    if (!data && WasRefused()) return std::nullopt;
    Require(data.has_value(), "tell " + about);
    if (whole(*data)) return data;
  }
  throw CommandFailure(kFailed, "the iPod's answers about " + about + " are cut short");
}

tagIPOD_EXCHANGE Session::Last() {
  tagIPOD_EXCHANGE last = {};
  ipod_.GetLastExchange(&last);
  return last;
}

void Session::Require(bool succeeded, const std::string& what) {
  if (!succeeded) Fail(Last(), what);
}

void Session::Fail(const tagIPOD_EXCHANGE& exchange, const std::string& what) {
  StopIfInterrupted();
  if (exchange.result == IPOD_EXCHANGE_REFUSED) {
    throw CommandFailure(kFailed, Refusal(what, exchange.status));
  }
  RequireAnswers();
  const bool nothing = exchange.result == IPOD_EXCHANGE_UNANSWERED;
  throw CommandFailure(kFailed, nothing ? "the iPod did not answer when asked to " + what
                                        : "the iPod's answer was of no use when asked to " + what);
}

void Session::RequireAnswers() {
  StopIfInterrupted();
  if (!Answers()) dock_.FailToReachIpod();
}

// An iPod that does not know the question refuses it, and so is there.
bool Session::Answers() {
  return ipod_.Command_RequestLingoProtocolVersion(kGeneralLingo, nullptr, nullptr) != 0 ||
         WasRefused();
}

}  // namespace ipodctl
