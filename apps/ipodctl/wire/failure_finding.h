// SPDX-License-Identifier: MIT
// Why a command found no iPod to work with, in two lines on standard error.
#pragma once

#include <string>

#include "console/failure.h"
#include "options.h"

namespace ipodctl {

/// To be called when the command's own sentence has been printed and its port is closed. Says
/// nothing of failures that are no matter of the line, and where nothing was found.
/// @return the finding's code, if there is one
std::string ExplainFailure(const CommandFailure& failure, const Options& options);

/// The options that name the iPod, as a user typed them, each behind a space.
std::string IpodArguments(const Options& options);

}  // namespace ipodctl
