// SPDX-License-Identifier: MIT
// Opens, identifies, and explains what failed.
#include "ipod/session.h"

#include "console/failure.h"
#include "console/interrupt.h"
#include "console/progress.h"
#include "console/verbose_log.h"

namespace ipodctl {

namespace {

constexpr unsigned char kGeneralLingo = 0x00;
constexpr int kLowPower = 0;

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

void Session::Require(bool succeeded, const std::string& what) {
  if (succeeded) return;
  RequireAnswers();
  throw CommandFailure(kFailed, "the iPod refused to " + what);
}

void Session::RequireAnswers() {
  StopIfInterrupted();
  if (!Answers()) dock_.FailToReachIpod();
}

// Any iPod answers this request; one that does not is gone.
bool Session::Answers() {
  return ipod_.Command_RequestLingoProtocolVersion(kGeneralLingo, nullptr, nullptr) != 0;
}

}  // namespace ipodctl
