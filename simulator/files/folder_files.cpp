// SPDX-License-Identifier: MIT
// Feature files as files of the operating system.

#include "folder_files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <system_error>

namespace ipodsim {
namespace {

class FolderFeatureFiles : public FeatureFiles {
 public:
  explicit FolderFeatureFiles(std::string folder) : folder_(std::move(folder)) {}

  std::string Create(const std::string& kind, const std::string& ending) override {
    for (unsigned number = HighestNumber(kind) + 1;; ++number) {
      const std::string name = FeatureFileName(kind, number, ending);
      // Made only when nothing of this name is there, whoever put it there.
      const int file = open(Path(name).c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
      if (file >= 0) {
        close(file);
        names_.push_back(name);
        return name;
      }
      if (errno != EEXIST) return {};
    }
  }

  bool Append(const std::string& name, const Bytes& data) override {
    const int file = open(Path(name).c_str(), O_WRONLY | O_APPEND | O_CLOEXEC);
    if (file < 0) return false;
    const off_t before = lseek(file, 0, SEEK_END);
    const bool kept = write(file, data.data(), data.size()) == static_cast<ssize_t>(data.size());
    // What is not taken whole is not taken at all, as far as that can be helped.
    if (!kept) static_cast<void>(!ftruncate(file, before));
    close(file);
    return kept;
  }

  std::vector<std::string> Names() const override { return names_; }

  std::string Read(const std::string& name) const override {
    std::ifstream file(Path(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

 private:
  std::string Path(const std::string& name) const { return folder_ + "/" + name; }

  // Of the files of this kind that are there, from earlier runs too; 0 for none.
  unsigned HighestNumber(const std::string& kind) const {
    unsigned long highest = 0;
    std::error_code ignored;
    for (const auto& entry : std::filesystem::directory_iterator(folder_, ignored)) {
      const std::string name = entry.path().filename();
      if (name.compare(0, kind.size() + 1, kind + "-") != 0) continue;
      const unsigned long number = std::strtoul(name.c_str() + kind.size() + 1, nullptr, 10);
      if (number < kLargestNumber) highest = std::max(highest, number);
    }
    return static_cast<unsigned>(highest);
  }

  static constexpr unsigned long kLargestNumber = 1'000'000'000;

  const std::string folder_;
  std::vector<std::string> names_;  // of the files made here
};

FolderResult Failure(const std::string& path, int code) {
  return {nullptr, "cannot store files in '" + path + "': " + std::strerror(code)};
}

}  // namespace

FolderResult OpenFeatureFolder(const std::string& path) {
  if (mkdir(path.c_str(), 0777) != 0 && errno != EEXIST) return Failure(path, errno);
  struct stat state {};
  if (stat(path.c_str(), &state) != 0) return Failure(path, errno);
  if (!S_ISDIR(state.st_mode)) return Failure(path, ENOTDIR);
  if (access(path.c_str(), R_OK | W_OK | X_OK) != 0) return Failure(path, errno);
  return {std::make_shared<FolderFeatureFiles>(path), {}};
}

}  // namespace ipodsim
