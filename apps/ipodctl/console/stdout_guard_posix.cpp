// SPDX-License-Identifier: MIT
// Standard output on POSIX: a private duplicate for the program, another file for everybody else.
#include <fcntl.h>
#include <unistd.h>

#include "console/stdout_guard.h"

namespace ipodctl {

StdoutGuard::StdoutGuard(Others others) {
  std::fflush(stdout);
  const int own = ::fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 3);
  if (own >= 0) stream_ = ::fdopen(own, "w");
  if (stream_ == nullptr) stream_ = stderr;  // standard output was closed by the caller
  if (others == Others::kToStandardError) {
    ::dup2(STDERR_FILENO, STDOUT_FILENO);
    return;
  }
  const int nowhere = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
  if (nowhere < 0) return;
  ::dup2(nowhere, STDOUT_FILENO);
  if (nowhere != STDOUT_FILENO) ::close(nowhere);
}

// Others stay diverted: the library's worker threads may print until the process ends.
StdoutGuard::~StdoutGuard() {
  std::fflush(stream_);
  if (stream_ != stderr) std::fclose(stream_);
}

}  // namespace ipodctl
