// SPDX-License-Identifier: MIT
// What the iPod's lists hold.
#pragma once

#include <string>
#include <vector>

#include "simulator/media/database.h"
#include "untrue/question.h"

namespace truth {

/// By the name that a path of ipodctl begins with.
ipodsim::Category CategoryOf(const std::string& name);
/// The category that a record of this one is opened to.
ipodsim::Category Below(ipodsim::Category category);
std::vector<std::string> NamesIn(ipodsim::Database& database, ipodsim::Category category);
/// @param step a record's name, or its index behind an '@'
std::uint32_t IndexOf(ipodsim::Database& database, ipodsim::Category category,
                      const std::string& step);
/// The sorted selection, which is fallen back on, lists by name.
bool ListsByName(const Question& question);

}  // namespace truth
