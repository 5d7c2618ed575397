// SPDX-License-Identifier: MIT
// "@17": a record by its number, where a name could stand.
#pragma once

#include <optional>
#include <string>

namespace ipodctl {

/// None when it is a name.
std::optional<unsigned long> RecordNumber(const std::string& step);

/// Whether it names a record, by number or by name. "@", "@-1" and "@1x" do not: who writes an @
/// and something like a number means no name.
bool NamesRecord(const std::string& step);

}  // namespace ipodctl
