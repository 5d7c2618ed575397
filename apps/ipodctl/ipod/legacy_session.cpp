// SPDX-License-Identifier: MIT
// Opens, identifies, and explains what failed.
#include "ipod/legacy_session.h"

#include "console/failure.h"
#include "console/host.h"
#include "console/interrupt.h"
#include "console/progress.h"
#include "console/verbose_log.h"
#include "ipod/display_text.h"

namespace ipodctl {

namespace {

constexpr int kLowPower = 0;

}  // namespace

void FailToOpen(const std::string& device) {
  throw CommandFailure(kPortUnavailable,
                       "cannot open " + device + ": " + WhyNotOpened(device, kUnknownReason));
}

void FailToFindIpod(const std::string& device) {
  throw CommandFailure(
      kNothingDocked, "no iPod answers on " + device + "; check that it is docked and switched on");
}

LegacySession::LegacySession(const Dock& dock) : dock_(dock) {
  Note("opening " + dock.device());
  if (ipod_.openport() == 0) FailToOpen(dock.device());
}

LegacySession::~LegacySession() { ipod_.closeport(); }

void LegacySession::Identify() {
  StatusLine status;
  status.Show("Identifying the iPod ...");
  Note("identifying through the legacy interface");
  // Nobody reads the acknowledgements of the identification itself: whoever answers the question
  // after them is there.
  const bool announced = ipod_.command_identifydevicelingos(kLowPower) != 0;
  StopIfInterrupted();
  if (!announced || !Answers()) FailToFindIpod(dock_.device());
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
  if (Answers()) return;
  throw CommandFailure(kFailed, "the iPod on " + dock_.device() +
                                    " no longer answers; check that it is docked and the cable is "
                                    "plugged in");
}

// Any iPod has a name. Waiting for it passes over whatever else was said before.
bool LegacySession::Answers() {
  DisplayText name;
  return ipod_.getipodname(name.buffer()) != 0;
}

}  // namespace ipodctl
