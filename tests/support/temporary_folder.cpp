// SPDX-License-Identifier: MIT
#include "support/temporary_folder.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace test {

TemporaryFolder::TemporaryFolder() {
  std::string pattern = (std::filesystem::temp_directory_path() / "ipodctl-XXXXXX").string();
  if (::mkdtemp(pattern.data()) == nullptr) std::abort();
  folder_ = pattern;
}

TemporaryFolder::~TemporaryFolder() { std::filesystem::remove_all(folder_); }

std::string TemporaryFolder::Write(const std::string& name, const std::string& content) const {
  std::ofstream(path(name), std::ios::binary) << content;
  return path(name);
}

}  // namespace test
