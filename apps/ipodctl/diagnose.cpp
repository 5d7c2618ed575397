// SPDX-License-Identifier: MIT
#include "diagnose.h"

#include <nlohmann/json.hpp>

#include "console/failure.h"
#include "console/system.h"
#include "ipod/dock_line.h"
#include "ipod/session.h"
#include "wire/findings_view.h"

namespace ipodctl {

namespace {

// Where the attempt is recorded: in the file that was asked for, or else in memory.
std::string RecordingOf(const Options& options) {
  if (!options.capture.empty()) return options.capture;
  std::string path;
  const std::string reason = CaptureLineInMemory(&path);
  if (!reason.empty()) throw CommandFailure(kCannotCreate, "cannot record the attempt: " + reason);
  return path;
}

struct Outcome {
  ExitStatus status = kSuccess;
  std::string sentence;
  std::string finding;  // its code, where it is known without the recording
};

// Identifies, and looks whether the iPod may be controlled.
Outcome Attempt(const Options& options, Output& output) {
  DockLine dock(options);
  output.Line("Identifying to what is docked on " + dock.device() + " ...");
  try {
    Session session(options, dock);
    session.Identify();
    session.EnterRemoteUi();
    return {kSuccess, "the iPod accepted the accessory by " + session.IdentifiedBy(), ""};
  } catch (const CommandFailure& failure) {
    if (failure.status() == kInterrupted) throw;
    return {failure.status(), failure.what(), failure.finding()};
  }
}

}  // namespace

int RunDiagnose(const Options& options, Output& output) {
  const std::string recording = RecordingOf(options);
  const Outcome outcome = Attempt(options, output);
  output.Line("Outcome: " + outcome.sentence + ".");
  output.Object({{"outcome", outcome.sentence}, {"status", static_cast<int>(outcome.status)}});
  output.Line("");
  if (outcome.status != kPortUnavailable) {
    ShowFindingsOf(recording, /*follow=*/true, output);
  } else if (!outcome.finding.empty()) {
    ShowPage(*ipodwire::FindFindingPage(outcome.finding), output);
  }
  return outcome.status;
}

}  // namespace ipodctl
