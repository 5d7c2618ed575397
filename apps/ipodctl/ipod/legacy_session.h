// SPDX-License-Identifier: MIT
// A session through the legacy interface: opened, identified, and with failures that say what to
// do.
#pragma once

#include <optional>
#include <string>

#include "ipod/ctrl_c.h"
#include "ipod/dock_line.h"
#include "ipod/legacy_exchange.h"
#include "ipodcomm/ipod.h"

namespace ipodctl {

/// Whether an iPod accepts workouts, as far as it tells.
struct WorkoutSupport {
  bool accepted = false;
  std::optional<std::uint8_t> refusal;  // status of the ACK with which it refused to tell
};

class LegacySession {
 public:
  /// Opens the port. Throws a CommandFailure when it cannot be.
  LegacySession(const Options& options, const DockLine& dock);
  /// Closes the port.
  ~LegacySession();
  LegacySession(const LegacySession&) = delete;
  LegacySession& operator=(const LegacySession&) = delete;

  /// Identifies the accessory to the iPod. Throws a CommandFailure when no iPod answers.
  void Identify();
  /// Lets the iPod show that it is controlled from outside; browsing and playing need it.
  void EnterRemoteUi();

  ipod& interface() { return ipod_; }
  /// Ctrl-C's say in what is asked.
  CtrlC& ctrl_c() { return ctrl_c_; }
  /// The answer to ModelQuestion, as far as there was one.
  const LegacyAnswer& model() const { return model_; }
  /// "0014|0000", as the interface shows it; empty when the iPod does not tell it.
  const std::string& model_number() const { return model_number_; }
  /// Whether selections are to be sorted by name, as the interface does for some models.
  bool SortsByName() const { return model_number_.substr(0, 4) == "0010"; }

  /// Asks what an operation of the interface would misread on a bad line.
  LegacyAnswer Ask(const LegacyQuestion& question) { return AskLegacy(ipod_, question); }
  LegacyAnswer AskShort(const LegacyQuestion& question) { return AskLegacyShort(ipod_, question); }
  /// Throws a CommandFailure unless the question was answered.
  /// @param what the rest of "the iPod refused to ..."; what follows a ';' is advice
  void Require(const LegacyAnswer& answer, const std::string& what);
  /// Throws a CommandFailure unless `succeeded`.
  void Require(bool succeeded, const std::string& what);
  /// Throws a CommandFailure when the iPod no longer answers at all.
  void RequireAnswers();
  /// Whether there is still an iPod. Blocks for some seconds when there is not. Unread packets that
  /// came before are dropped.
  bool Answers();
  /// Whether the iPod accepts workouts. The interface announces the workout lingoes to some models
  /// only, by the beginning of their model number; the others are not asked. Throws a
  /// CommandFailure when the iPod does not answer.
  WorkoutSupport AcceptsWorkouts();

 private:
  const DockLine& dock_;
  ipod ipod_;
  CtrlC ctrl_c_;
  LegacyAnswer model_;
  std::string model_number_;
};

/// Whether there is still an iPod; see LegacySession::Answers.
bool Answers(ipod& docked);
/// Whether a frame with a good checksum comes, be it one that the interface takes for no answer.
bool SendsFrames(ipod& docked);
/// Throws the CommandFailure of a dock in which no iPod answers: nothing that the interface takes
/// for an answer came. @param evidence what was tried
[[noreturn]] void FailToFindIpod(ipod& docked, const DockLine& dock, const std::string& evidence);
/// Whether the accessory's own bytes come back.
bool Echoes(ipod& docked);

}  // namespace ipodctl
