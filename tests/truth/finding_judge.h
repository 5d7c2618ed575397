// SPDX-License-Identifier: MIT
// Holds the findings of a run against what really went wrong in it.
#pragma once

#include <string>
#include <vector>

#include "dock.h"
#include "scenes.h"
#include "wire/findings/finding.h"

namespace truth {

/// Whether there is something to name: a trouble that is one, and that struck.
bool HasAName(const Case& run, const Account& account);

/// Whether one of the findings names what went wrong.
bool IsNamed(const Case& run, const std::vector<ipodwire::Finding>& findings);

/// The first proved finding that is not the case, in words; empty when all are.
std::string WhatIsNotProved(const Case& run, const Account& account,
                            const std::vector<ipodwire::Finding>& findings);

}  // namespace truth
