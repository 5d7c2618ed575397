// SPDX-License-Identifier: MIT
// Days and weeks of the calendar, where the program runs.
#pragma once

#include <ctime>

#include "report/wording.h"

namespace ipodctl {

Day DayOf(std::time_t time);
/// The Monday of the week that the day is in.
Day MondayOf(const Day& day);

bool operator==(const Day& left, const Day& right);
bool operator<(const Day& left, const Day& right);

/// "2026-03-01".
std::string DayCode(const Day& day);

}  // namespace ipodctl
