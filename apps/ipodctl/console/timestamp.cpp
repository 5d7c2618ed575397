// SPDX-License-Identifier: MIT
#include "console/timestamp.h"

#include <array>
#include <cstdio>
#include <ctime>

namespace ipodctl {

std::string Timestamp(std::chrono::milliseconds since_1970) {
  const auto seconds = std::chrono::floor<std::chrono::seconds>(since_1970);
  const auto second = static_cast<std::time_t>(seconds.count());
  const std::tm* const utc = std::gmtime(&second);
  std::array<char, 32> text{};
  if (utc != nullptr) std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%S", utc);
  std::array<char, 8> fraction{};
  std::snprintf(fraction.data(), fraction.size(), ".%03dZ",
                static_cast<int>((since_1970 - seconds).count()));
  return std::string(text.data()) + fraction.data();
}

}  // namespace ipodctl
