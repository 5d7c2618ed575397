// SPDX-License-Identifier: MIT
// Opens, identifies, and explains what failed.
#include "ipod/legacy_session.h"

#include "console/failure.h"
#include "console/interrupt.h"
#include "console/progress.h"
#include "console/verbose_log.h"
#include "ipod/display_text.h"

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
  // The acknowledgements of the identification itself are not read; an iPod that answers the
  // request after them is there.
  const bool announced = ipod_.command_identifydevicelingos(kLowPower) != 0;
  StopIfInterrupted();
  if (!announced || !Answers()) dock_.FailToFindIpod();
}

void LegacySession::EnterRemoteUi() {
  Note("entering remote user-interface mode");
  Require(ipod_.command_enterremoteuimode() != 0, "be controlled from outside");
}

void LegacySession::Require(bool succeeded, const std::string& what) {
  if (succeeded) return;
  RequireAnswers();
  throw CommandFailure(kFailed, "the iPod refused to " + what);
}

void LegacySession::RequireAnswers() {
  StopIfInterrupted();
  if (!Answers()) dock_.FailToReachIpod();
}

bool LegacySession::Answers() { return ipodctl::Answers(ipod_); }

bool LegacySession::AcceptsWorkouts() {
  DisplayText number;
  if (ipod_.getipodmodelnum(number.buffer()) == 0) return false;
  const std::string family = number.text().substr(0, 4);
  if (family != "0014" && family != "0017") return false;
  int supported = 0;
  unsigned char extra = 0;
  return ipod_.issports(&supported, &extra) != 0 && supported != 0;
}

// Any iPod has a name. Waiting for it drops the packets that came before.
bool Answers(ipod& docked) {
  DisplayText name;
  return docked.getipodname(name.buffer()) != 0;
}

}  // namespace ipodctl
