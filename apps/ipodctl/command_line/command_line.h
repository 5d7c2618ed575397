// SPDX-License-Identifier: MIT
// What the program's arguments ask for.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "options.h"

namespace ipodctl {

/// What the arguments mean: a command to run, or a text to show and the status to end with.
struct CommandLine {
  std::optional<Options> options;
  std::string text;
  int status = 0;
  bool json = false;      // wrong arguments are told to a machine, too
  bool captures = false;  // on standard output, where nothing else may stand then
};

CommandLine ParseCommandLine(const std::vector<std::string>& arguments);

}  // namespace ipodctl
