// SPDX-License-Identifier: MIT
// The file that takes a recording, on Windows.
#include <windows.h>
// The order matters: these headers need the one above.
#include <fcntl.h>
#include <io.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdint>
#include <vector>

#include "platform/capture/recording_stream.h"

namespace ipodcomm::capture {
namespace {

// The system's, which a program may have kept for the recording when it sent its own prints
// elsewhere. A recording is no text, whose ends of lines would change on the way.
std::FILE* StandardOutput() {
  HANDLE copy = nullptr;
  const HANDLE self = GetCurrentProcess();
  if (DuplicateHandle(self, GetStdHandle(STD_OUTPUT_HANDLE), self, &copy, 0, FALSE,
                      DUPLICATE_SAME_ACCESS) == FALSE) {
    errno = EBADF;
    return nullptr;
  }
  const int descriptor = _open_osfhandle(reinterpret_cast<std::intptr_t>(copy), _O_BINARY);
  return descriptor < 0 ? nullptr : _fdopen(descriptor, "wb");
}

}  // namespace

std::FILE* OpenRecordingStream(const std::string& file) {
  if (file == "-") return StandardOutput();
  std::vector<wchar_t> path(file.size() + 1);  // never more characters than bytes
  MultiByteToWideChar(CP_UTF8, 0, file.c_str(), -1, path.data(), static_cast<int>(path.size()));
  constexpr int kHow = _O_WRONLY | _O_CREAT | _O_TRUNC | _O_BINARY | _O_NOINHERIT;
  const int descriptor = _wopen(path.data(), kHow, _S_IREAD | _S_IWRITE);
  return descriptor < 0 ? nullptr : _fdopen(descriptor, "wb");
}

// Who writes to a pipe that nobody reads gets an error, and no signal.
void SurviveLeavingReaders() {}

}  // namespace ipodcomm::capture
