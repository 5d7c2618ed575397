// SPDX-License-Identifier: MIT
// Feature files in memory.

#include "feature_files.h"

#include <array>
#include <cstdio>

namespace ipodsim {

std::string FeatureFileName(const std::string& kind, unsigned number, const std::string& ending) {
  std::array<char, 16> digits{};
  std::snprintf(digits.data(), digits.size(), "-%04u", number);
  return kind + digits.data() + ending;
}

std::string MemoryFeatureFiles::Create(const std::string& kind, const std::string& ending) {
  const auto number = static_cast<unsigned>(files_.size() + 1);
  files_.emplace_back(FeatureFileName(kind, number, ending), "");
  return files_.back().first;
}

bool MemoryFeatureFiles::Append(const std::string& name, const Bytes& data) {
  for (auto& [known, content] : files_) {
    if (known != name) continue;
    content.append(data.begin(), data.end());
    return true;
  }
  return false;
}

std::vector<std::string> MemoryFeatureFiles::Names() const {
  std::vector<std::string> names;
  for (const auto& file : files_) names.push_back(file.first);
  return names;
}

std::string MemoryFeatureFiles::Read(const std::string& name) const {
  for (const auto& [known, content] : files_) {
    if (known == name) return content;
  }
  return {};
}

}  // namespace ipodsim
