// SPDX-License-Identifier: MIT
// Opens, identifies, and explains what failed.
#include "ipod/legacy_session.h"

#include "console/failure.h"
#include "console/interrupt.h"
#include "console/progress.h"
#include "console/verbose_log.h"
#include "ipod/display_text.h"
#include "ipod/refusal.h"

namespace ipodctl {

namespace {

constexpr int kLowPower = 0;

}  // namespace

LegacySession::LegacySession(const DockLine& dock) : dock_(dock) {
  Note("opening " + dock.device());
  if (ipod_.openport() == 0) dock.FailToOpen();
}

LegacySession::~LegacySession() { ipod_.closeport(); }

void LegacySession::Identify() {
  StatusLine status;
  status.Show("Identifying the iPod ...");
  Note("identifying through the legacy interface");
  const bool announced = ipod_.command_identifydevicelingos(kLowPower) != 0;
  StopIfInterrupted();
  // The acknowledgements of the identification itself are not read. What answers after them is an
  // iPod, and nearly every iPod has a model.
  DisplayText model;
  if (announced && ipod_.getipodmodelnum(model.buffer()) != 0) {
    model_number_ = model.text();
  } else if (!announced || !Answers()) {
    if (Echoes(ipod_)) dock_.FailForEcho();
    dock_.FailToFindIpod("no answer to the requests for its name and its model");
  }
}

// Many iPods acknowledge the request twice, first as pending, of which the interface reads the
// first only. The rest has come when another question is answered.
void LegacySession::EnterRemoteUi() {
  Note("entering remote user-interface mode");
  ipod_.command_enterremoteuimode();
  Require(Ask(StatusQuestion()), "be controlled from outside");
}

void LegacySession::Require(const LegacyAnswer& answer, const std::string& what) {
  if (answer.answered()) return;
  StopIfInterrupted();
  if (answer.refused()) throw CommandFailure(kFailed, Refusal(what, answer.status));
  RequireAnswers();
  throw CommandFailure(kFailed, "the iPod did not answer when asked to " + what);
}

void LegacySession::Require(bool succeeded, const std::string& what) {
  if (!succeeded) Require(LegacyAnswer(), what);
}

void LegacySession::RequireAnswers() {
  StopIfInterrupted();
  if (!Answers()) dock_.FailToReachIpod();
}

// Asks first what it has told before.
bool LegacySession::Answers() {
  DisplayText model;
  if (!model_number_.empty() && ipod_.getipodmodelnum(model.buffer()) != 0) return true;
  return ipodctl::Answers(ipod_);
}

bool LegacySession::AcceptsWorkouts() {
  const std::string family = model_number_.substr(0, 4);
  if (family != "0014" && family != "0017") return false;
  int supported = 0;
  unsigned char extra = 0;
  return ipod_.issports(&supported, &extra) != 0 && supported != 0;
}

// An iPod that does not know the question refuses it, and so is there. Waiting for the answer drops
// the packets that came before.
bool Answers(ipod& docked) {
  DisplayText name;
  return docked.getipodname(name.buffer()) != 0 ||
         AskForAck(
             docked, [](ipod& to) { return to.command_requestipodname(); },
             ipod::IPOD_COMMAND_REQUESTIPODNAME)
                 .result != LegacyAnswer::Result::kUnanswered;
}

bool Echoes(ipod& docked) {
  constexpr unsigned char kCapacity = 2;
  wchar_t text[kCapacity] = {};
  return docked.command_requestipodname() != 0 &&
         docked.extractdatafrompacket(ipod::IPOD_COMMAND_REQUESTIPODNAME, text, kCapacity, 0, 0) !=
             0;
}

}  // namespace ipodctl
