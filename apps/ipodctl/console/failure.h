// SPDX-License-Identifier: MIT
// How a command ends when it cannot do what was asked.
#pragma once

#include <stdexcept>
#include <string>

#include "console/exit_status.h"

namespace ipodctl {

/// One plain sentence that says what went wrong and what to do, and the exit status.
class CommandFailure : public std::runtime_error {
 public:
  CommandFailure(ExitStatus status, const std::string& sentence)
      : std::runtime_error(sentence), status_(status) {}

  ExitStatus status() const { return status_; }

 private:
  ExitStatus status_;
};

}  // namespace ipodctl
