// SPDX-License-Identifier: MIT
// Feature files as files of the operating system.

#include "folder_files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
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
    while (true) {
      const std::string name = FeatureFileName(kind, ++last_number_, ending);
      // Made only when nothing of this name is there, whoever put it there.
      const int file = open(Path(name).c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
      if (file >= 0) {
        close(file);
        return name;
      }
      if (errno != EEXIST) return {};
    }
  }

  bool Append(const std::string& name, const Bytes& data) override {
    const int file = open(Path(name).c_str(), O_WRONLY | O_APPEND | O_CLOEXEC);
    if (file < 0) return false;
    const ssize_t written = write(file, data.data(), data.size());
    close(file);
    return written == static_cast<ssize_t>(data.size());
  }

  std::vector<std::string> Names() const override {
    std::vector<std::string> names;
    std::error_code ignored;
    for (const auto& entry : std::filesystem::directory_iterator(folder_, ignored)) {
      names.push_back(entry.path().filename());
    }
    std::sort(names.begin(), names.end());
    return names;
  }

  std::string Read(const std::string& name) const override {
    std::ifstream file(Path(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

 private:
  std::string Path(const std::string& name) const { return folder_ + "/" + name; }

  const std::string folder_;
  unsigned last_number_ = 0;
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
