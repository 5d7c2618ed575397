// SPDX-License-Identifier: MIT
// The words for an iPod's refusals.
#include "ipod/refusal.h"

#include <algorithm>

namespace ipodctl {

namespace {

struct StatusName {
  std::uint8_t status;
  const char* name;
};

constexpr StatusName kNames[] = {
    {1, "command failed"},
    {2, "out of resources"},
    {3, "bad parameter"},
    {4, "unknown to it"},
    {kNotAuthenticated, "accessory not authenticated"},
};

}  // namespace

bool SaysUnknown(std::uint8_t status) {
  constexpr std::uint8_t kBadParameter = 3;
  constexpr std::uint8_t kUnknown = 4;
  return status == kBadParameter || status == kUnknown;
}

std::string StatusText(std::uint8_t status) {
  if (status == 0) return "no status told";
  const auto* const known =
      std::find_if(std::begin(kNames), std::end(kNames),
                   [status](const StatusName& entry) { return entry.status == status; });
  const std::string number = "status " + std::to_string(status);
  return known == std::end(kNames) ? number : number + ", " + known->name;
}

std::string Refusal(const std::string& what, std::uint8_t status) {
  const std::size_t advice = std::min(what.find(';'), what.size());
  return "the iPod refused to " + what.substr(0, advice) + " (" + StatusText(status) + ")" +
         what.substr(advice);
}

}  // namespace ipodctl
