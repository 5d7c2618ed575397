// SPDX-License-Identifier: MIT
// The program's commands. Each returns the program's status.
#pragma once

#include "options.h"

namespace reliability {

int RunSchedules(const Options& options);
int RunTraces(const Options& options);
int RunFaults(const Options& options);
int RunDestroy(const Options& options);
int RunUnplug(const Options& options);
int RunCycles(const Options& options);

}  // namespace reliability
