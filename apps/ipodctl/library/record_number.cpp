// SPDX-License-Identifier: MIT
#include "library/record_number.h"

#include <charconv>

namespace ipodctl {

std::optional<unsigned long> RecordNumber(const std::string& step) {
  unsigned long number = 0;
  const char* end = step.data() + step.size();
  if (step.size() < 2 || step.front() != '@') return std::nullopt;
  const auto result = std::from_chars(step.data() + 1, end, number);
  if (result.ec != std::errc() || result.ptr != end) return std::nullopt;
  return number;
}

bool NamesRecord(const std::string& step) {
  if (step.empty() || step == "@") return false;
  const bool like_a_number =
      step.front() == '@' && std::string("+-0123456789").find(step[1]) != std::string::npos;
  return !like_a_number || RecordNumber(step);
}

}  // namespace ipodctl
