// SPDX-License-Identifier: MIT
// A session through the legacy interface: opened, identified, and with failures that say what to
// do.
#pragma once

#include <string>

#include "ipod/dock_line.h"
#include "ipodcomm/ipod.h"

namespace ipodctl {

class LegacySession {
 public:
  /// Opens the port. Throws a CommandFailure when it cannot be.
  explicit LegacySession(const DockLine& dock);
  /// Closes the port.
  ~LegacySession();
  LegacySession(const LegacySession&) = delete;
  LegacySession& operator=(const LegacySession&) = delete;

  /// Identifies the accessory to the iPod. Throws a CommandFailure when no iPod answers.
  void Identify();
  /// Lets the iPod show that it is controlled from outside; browsing and playing need it.
  void EnterRemoteUi();

  ipod& interface() { return ipod_; }

  /// Throws a CommandFailure unless `succeeded`.
  /// @param what the rest of "the iPod refused to ..."
  void Require(bool succeeded, const std::string& what);
  /// Throws a CommandFailure when the iPod no longer answers at all.
  void RequireAnswers();
  /// Whether there is still an iPod. Blocks for three seconds when there is not. Unread
  /// packets that came before are dropped.
  bool Answers();
  /// Whether the iPod accepts workouts. The interface announces the workout lingoes to some models
  /// only, by the beginning of their model number; the others are not asked.
  bool AcceptsWorkouts();

 private:
  const DockLine& dock_;
  ipod ipod_;
};

/// Whether there is still an iPod; see LegacySession::Answers.
bool Answers(ipod& docked);

}  // namespace ipodctl
