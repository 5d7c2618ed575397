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
/// A finding in one line, without a full stop.
std::string HeadlineOf(const ipodwire::Finding& finding);
/// Each with its evidence, the first the most important.
void ShowFindings(const std::vector<ipodwire::Finding>& findings, Output& output);

/// Reads a recording to its end, or to where it is damaged: that is thrown as a CommandFailure once
/// the findings so far have been shown. The findings are those of everything in it.
void ShowFindingsOf(const std::string& recording, Output& output);

/// The same without showing them, of a recording that this process makes. Waits until it is closed,
/// some seconds at most.
std::vector<ipodwire::Finding> FindingsOfRecording(const std::string& recording);

}  // namespace ipodctl
