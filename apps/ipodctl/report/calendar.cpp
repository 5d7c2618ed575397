// SPDX-License-Identifier: MIT
// Has the system's own calendar do it.
#include "report/calendar.h"

#include <cstdio>
#include <tuple>

namespace ipodctl {

namespace {

Day DayIn(const std::tm& time) { return {time.tm_year + 1900, time.tm_mon + 1, time.tm_mday}; }

}  // namespace

Day DayOf(std::time_t time) {
  const std::tm* const local = std::localtime(&time);
  return local == nullptr ? Day() : DayIn(*local);
}

Day MondayOf(const Day& day) {
  std::tm time = {};
  time.tm_year = day.year - 1900;
  time.tm_mon = day.month - 1;
  time.tm_mday = day.day;
  time.tm_hour = 12;  // far from where summer time shifts a day
  time.tm_isdst = -1;
  std::mktime(&time);
  time.tm_mday -= (time.tm_wday + 6) % 7;
  std::mktime(&time);
  return DayIn(time);
}

bool operator==(const Day& left, const Day& right) {
  return std::tie(left.year, left.month, left.day) == std::tie(right.year, right.month, right.day);
}

bool operator<(const Day& left, const Day& right) {
  return std::tie(left.year, left.month, left.day) < std::tie(right.year, right.month, right.day);
}

std::string DayCode(const Day& day) {
  char text[48];
  std::snprintf(text, sizeof text, "%04d-%02d-%02d", day.year, day.month, day.day);
  return text;
}

}  // namespace ipodctl
