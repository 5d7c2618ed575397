// SPDX-License-Identifier: MIT
// Version resources, read from real executable files in the PE format. A name without a place is
// looked for in the working directory, then beside the running program.
#include <fcntl.h>
#include <limits.h>
#include <unistd.h>

#include <cstring>
#include <string>

#include "platform/common/out_of_memory.h"
#include "platform/common/pe_file.h"
#include "platform/common/utf8.h"
#include "platform/common/version_block.h"
#include "platform/services.h"

namespace ipodcomm::platform {
namespace {

class File {
 public:
  explicit File(const std::string& path)
      : descriptor_(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)) {}
  File(const File&) = delete;
  File& operator=(const File&) = delete;
  ~File() {
    if (descriptor_ >= 0) close(descriptor_);
  }

  bool is_open() const { return descriptor_ >= 0; }

  bool Read(std::uint64_t offset, void* buffer, std::size_t size) const {
    return pread(descriptor_, buffer, size, static_cast<off_t>(offset)) ==
           static_cast<ssize_t>(size);
  }

 private:
  const int descriptor_;
};

std::string BesideProgram(const std::string& name) {
  char program[PATH_MAX];
  const ssize_t length = readlink("/proc/self/exe", program, sizeof program);
  if (length <= 0) return name;
  const std::string path(program, static_cast<std::size_t>(length));
  return path.substr(0, path.rfind('/') + 1) + name;
}

DWORD LoadFrom(const std::string& path, std::vector<std::uint8_t>* block) {
  const File file(path);
  if (!file.is_open()) return ERROR_FILE_NOT_FOUND;
  std::vector<std::uint8_t> resource;
  const DWORD code =
      ReadVersionResource([&file](std::uint64_t offset, void* buffer,
                                  std::size_t size) { return file.Read(offset, buffer, size); },
                          &resource);
  if (code != ERROR_SUCCESS) return code;
  *block = MakeVersionBlock(resource);
  return block->empty() ? ERROR_RESOURCE_DATA_NOT_FOUND : ERROR_SUCCESS;
}

// The block of `file`'s version resource; empty, with the code set, when there is none.
std::vector<std::uint8_t> Load(const wchar_t* file) {
  std::vector<std::uint8_t> block;
  const std::string name = WideToUtf8(file != nullptr ? file : L"");
  DWORD code = LoadFrom(name, &block);
  if (code == ERROR_FILE_NOT_FOUND && name.find('/') == std::string::npos && !name.empty()) {
    code = LoadFrom(BesideProgram(name), &block);
  }
  if (code != ERROR_SUCCESS) SetLastError(code);
  return block;
}

}  // namespace
}  // namespace ipodcomm::platform

DWORD GetFileVersionInfoSizeW(const wchar_t* file, DWORD* handle) {
  if (handle != nullptr) *handle = 0;
  return ipodcomm::platform::FailWithoutMemory(
      DWORD{0}, [file] { return static_cast<DWORD>(ipodcomm::platform::Load(file).size()); });
}

BOOL GetFileVersionInfoW(const wchar_t* file, DWORD /*handle*/, DWORD size, void* data) {
  const auto block = ipodcomm::platform::FailWithoutMemory(
      std::vector<std::uint8_t>(), [file] { return ipodcomm::platform::Load(file); });
  if (block.empty()) return FALSE;
  if (data == nullptr || size < block.size()) {
    SetLastError(data == nullptr ? ERROR_INVALID_PARAMETER : ERROR_INSUFFICIENT_BUFFER);
    return FALSE;
  }
  std::memcpy(data, block.data(), block.size());
  return TRUE;
}
