// SPDX-License-Identifier: MIT
// Findings on standard output.
#pragma once

#include <string>
#include <vector>

#include "console/output.h"
#include "wire/findings/finding.h"

namespace ipodctl {

/// What a finding's code stands for.
void ShowPage(const ipodwire::FindingPage& page, Output& output);
/// Each with its evidence, the first the most important.
void ShowFindings(const std::vector<ipodwire::Finding>& findings, Output& output);

/// Reads a recording to its end, or to where it is damaged: that is thrown as a CommandFailure once
/// the findings so far have been shown. The findings are those of everything in it.
/// @param follow whether to wait for what is still being written
void ShowFindingsOf(const std::string& recording, bool follow, Output& output);

}  // namespace ipodctl
