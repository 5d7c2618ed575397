// SPDX-License-Identifier: MIT
// The names of a category's records, read in portions.
#pragma once

#include <functional>
#include <string>

#include "ipod/session.h"

namespace ipodctl {

/// Reads `count` names from `from` on and hands each out as soon as it is known. The line is slow
/// (some 30 names a second), so the names come in portions and a reader that has found what it
/// wants stops after the current one.
/// @param take gets a record's index and name; false ends the reading
void ReadNames(Session& session, unsigned char category, unsigned long from, unsigned long count,
               const std::function<bool(unsigned long, const std::string&)>& take);

}  // namespace ipodctl
