// SPDX-License-Identifier: MIT
// Opens, identifies, and explains what failed.
#include "ipod/session.h"

#include "console/clock.h"
#include "console/failure.h"
#include "console/interrupt.h"
#include "console/progress.h"
#include "console/verbose_log.h"
#include "ipod/refusal.h"

namespace ipodctl {

namespace {

constexpr unsigned char kGeneralLingo = 0x00;
constexpr int kLowPower = 0;
constexpr std::size_t kLongestAnswer = 1024;

tagIPOD_CONDUCT ConductOf(const Options& options) {
  if (options.conduct == "field") return IPOD_CONDUCT_FIELD;
  if (options.conduct == "robust") return IPOD_CONDUCT_ROBUST;
  if (options.conduct == "fast") return IPOD_CONDUCT_FAST;
  // Whether a dock bears the fast one is for whoever owns it to find out.
  return options.simulation ? IPOD_CONDUCT_FAST : IPOD_CONDUCT_ROBUST;
}

}  // namespace

Session::Session(const Options& options, const DockLine& dock) : options_(options), dock_(dock) {
  const tagIPOD_CONDUCT conduct = ConductOf(options);
  ipod_.SetConduct(&conduct);
  Note("opening " + dock.device());
  const long code = ipod_.Open();
  if (code != 0) dock.FailToOpen(code);
}

Session::~Session() { Close(); }

void Session::Identify() {
  StatusLine status;
  status.Show("Waking and identifying the iPod ...");
  Note(options_.idps ? "identifying, by tokens first" : "identifying without tokens");
  ipod_.SetModel(options_.model);
  ipod_.SetIDPSEnable(options_.idps ? 1 : 0);
  const auto keep_going = [](void*) { return !Interrupted(); };
  if (ipod_.Command_IdentifyDeviceLingos(kLowPower, &identified_, keep_going, nullptr) == 0) {
    FailIdentification();
  }
  // Token identification does not read the General lingo's version, and without it the library
  // treats the iPod as too old for preferences.
  ipod_.Command_RequestLingoProtocolVersion(kGeneralLingo, nullptr, nullptr);
  Note("identified by " + IdentifiedBy());
}

void Session::FailIdentification() {
  StopIfInterrupted();
  if (identified_ == IPOD_IDENTIFY_RESULT_TOOOLD) {
    throw CommandFailure(
        kIpodTooOld,
        "this iPod is too old to be controlled; update its software or dock a newer one");
  }
  if (Answers()) {
    throw CommandFailure(kNothingDocked, "the iPod on " + dock_.device() +
                                             " did not accept the accessory; take it out of the "
                                             "dock, put it back and try again");
  }
  dock_.FailToFindIpod();
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

// A command that is answered within a second was sent once. The answers to one that was sent again
// come before that to another question asked now.
bool Session::Do(const std::function<int()>& operation) {
  constexpr std::chrono::seconds kOneAttempt(1);
  const auto start = SteadyTime();
  const bool succeeded = operation() != 0;
  const bool numbered = identified_ == IPOD_IDENTIFY_RESULT_IDPS;
  if (succeeded && !numbered && SteadyTime() - start >= kOneAttempt) {
    Note("letting late answers go by");
    RequireAnswers();
  }
  return succeeded;
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
  throw CommandFailure(kFailed, exchange.result == IPOD_EXCHANGE_UNANSWERED
                                    ? "the iPod did not answer when asked to " + what
                                    : "the iPod answered, but did not " + what);
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
