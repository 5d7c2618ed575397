// SPDX-License-Identifier: MIT
// Which device a port's name stands for.
#include "platform/posix/port_name.h"

#include <cstdlib>
#include <string_view>

#include "platform/common/fold_case.h"

namespace ipodcomm::platform {

std::optional<std::string> DeviceOfPort(const wchar_t* name) {
  constexpr std::wstring_view kPrefix = L"com";
  constexpr std::size_t kMaxDigits = 3;
  const std::wstring folded = FoldCase(name != nullptr ? name : L"");
  std::wstring_view digits = folded;
  if (digits.substr(0, kPrefix.size()) != kPrefix) return std::nullopt;
  digits.remove_prefix(kPrefix.size());
  if (!digits.empty() && digits.back() == L':') digits.remove_suffix(1);
  if (digits.empty() || digits.size() > kMaxDigits || digits.front() == L'0') return std::nullopt;
  int number = 0;
  for (const wchar_t digit : digits) {
    if (digit < L'0' || digit > L'9') return std::nullopt;
    number = number * 10 + static_cast<int>(digit - L'0');
  }
  const std::string variable = "IPODCOMM_COM" + std::to_string(number);
  const char* const device = std::getenv(variable.c_str());
  if (device != nullptr && *device != 0) return device;
  return "/dev/ttyS" + std::to_string(number - 1);
}

}  // namespace ipodcomm::platform
