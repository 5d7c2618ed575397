// SPDX-License-Identifier: MIT
// From what was seen to why it went so.
#pragma once

#include <vector>

#include "wire/findings/evidence.h"
#include "wire/findings/finding.h"

namespace ipodwire {

/// The most important finding first: the one that explains the others, or ended the session.
/// Nothing where the evidence shows nothing that went wrong.
///
/// It depends on the evidence alone: a live session and its recording give the same findings.
std::vector<Finding> FindingsOf(const Evidence& evidence);

}  // namespace ipodwire
