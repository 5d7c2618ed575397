// SPDX-License-Identifier: MIT
// How a command ends when it cannot do what was asked: the exit status, and a sentence.
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <stdexcept>
#include <string>
#include <utility>

namespace ipodctl {

/// What the program's exit status tells a script.
enum ExitStatus : int {
  kSuccess = 0,
  kFailed = 1,           // the iPod refused, or the operation failed
  kPortUnavailable = 2,  // the port cannot be opened
  kNothingDocked = 3,    // no iPod answered, or it did not accept the accessory
  kIpodTooOld = 4,       // its lingo versions are below what the library needs
  kUsage = 64,           // wrong arguments
  kDamaged = 65,         // a document ends early or is malformed; what it holds was shown
  kInputFile = 66,       // a named file is missing or malformed
  kCannotCreate = 73,    // the file of a recording cannot be made
  kInterrupted = 130,    // stopped by Ctrl-C before the command was done
};

/// One plain sentence that says what went wrong and what to do, and the exit status.
class CommandFailure : public std::runtime_error {
 public:
  /// @param finding the code of the finding that explains it, where that is known already
  CommandFailure(ExitStatus status, const std::string& sentence, std::string finding = {})
      : std::runtime_error(sentence), status_(status), finding_(std::move(finding)) {}

  ExitStatus status() const { return status_; }
  const std::string& finding() const { return finding_; }

 private:
  ExitStatus status_;
  std::string finding_;
};

/// It as a JSON object: "error" is one word for the exit status, which stays the same whatever the
/// sentence in "message" says.
nlohmann::ordered_json ToJson(const CommandFailure& failure);

/// The iPod was there and is no longer, so that nothing more can be done with the session.
class SessionLost : public CommandFailure {
 public:
  using CommandFailure::CommandFailure;
};

}  // namespace ipodctl
