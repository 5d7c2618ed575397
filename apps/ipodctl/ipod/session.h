// SPDX-License-Identifier: MIT
// A session with the docked iPod: opened, identified, and with failures that say what to do.
#pragma once

#include <string>

#include "ipod/dock_line.h"
#include "ipodcomm/CIpodComm.h"
#include "options.h"

namespace ipodctl {

class Session {
 public:
  /// Opens the port. Throws a CommandFailure when it cannot be.
  Session(const Options& options, const DockLine& dock);
  /// Closes the port.
  ~Session();
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  /// Identifies the accessory to the iPod, which lasts some seconds. Throws a CommandFailure when
  /// no iPod answers, when it is too old, or when it refuses.
  void Identify();
  /// Lets the iPod show that it is controlled from outside; browsing and playing need it.
  void EnterRemoteUi();
  void Close() { ipod_.Close(); }

  CIpodComm& ipod() { return ipod_; }
  /// How the iPod accepted the accessory: "tokens" or "lingoes".
  std::string IdentifiedBy() const;

  /// Throws a CommandFailure unless `succeeded`.
  /// @param what the rest of "the iPod refused to ..."
  void Require(bool succeeded, const std::string& what);
  /// Throws a CommandFailure when the iPod no longer answers at all.
  void RequireAnswers();
  /// Whether there is still an iPod.
  bool Answers();

 private:
  void FailIdentification();

  const Options& options_;
  const DockLine& dock_;
  CIpodComm ipod_;
  tagIPOD_IDENTIFY_RESULT identified_ = IPOD_IDENTIFY_RESULT_NONE;
};

}  // namespace ipodctl
