// SPDX-License-Identifier: MIT
// Standard output on Windows: a private duplicate for the program, another file for everybody else.
#include <fcntl.h>
#include <io.h>

#include "console/stdout_guard.h"

namespace ipodctl {

StdoutGuard::StdoutGuard(Others others) {
  std::fflush(stdout);
  const int standard_output = _fileno(stdout);
  const int own = _dup(standard_output);
  if (own >= 0) stream_ = _fdopen(own, "w");
  if (stream_ == nullptr) stream_ = stderr;  // standard output was closed by the caller
  if (others == Others::kToStandardError) {
    _dup2(_fileno(stderr), standard_output);
    return;
  }
  const int nowhere = _open("NUL", _O_WRONLY);
  if (nowhere < 0) return;
  _dup2(nowhere, standard_output);
  _close(nowhere);
}

// Others stay diverted: the library's worker threads may print until the process ends.
StdoutGuard::~StdoutGuard() {
  std::fflush(stream_);
  if (stream_ != stderr) std::fclose(stream_);
}

}  // namespace ipodctl
