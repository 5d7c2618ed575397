// SPDX-License-Identifier: MIT
#include "wire/extcap_arguments.h"

namespace ipodctl {

namespace {

bool IsName(const std::string& argument) { return argument.compare(0, 2, "--") == 0; }

}  // namespace

// "--name value" and "--name=value" are the same.
ExtcapArguments::ExtcapArguments(const std::vector<std::string>& arguments) {
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    if (!IsName(arguments[i])) continue;
    const std::size_t equals = arguments[i].find('=');
    const std::string name =
        arguments[i].substr(2, equals == std::string::npos ? equals : equals - 2);
    std::string value = equals == std::string::npos ? "" : arguments[i].substr(equals + 1);
    const bool value_follows =
        equals == std::string::npos && i + 1 < arguments.size() && !IsName(arguments[i + 1]);
    if (value_follows) value = arguments[++i];
    values_[name] = value;
  }
}

std::string ExtcapArguments::Value(const std::string& name) const {
  const auto found = values_.find(name);
  return found == values_.end() ? std::string() : found->second;
}

std::vector<std::string> ExtcapArguments::Choices() const {
  std::vector<std::string> names;
  for (const auto& entry : values_) {
    const std::string& name = entry.first;
    const bool common = name == "capture" || name == "fifo" || name.compare(0, 7, "extcap-") == 0;
    if (!common) names.push_back(name);
  }
  return names;
}

}  // namespace ipodctl
