// SPDX-License-Identifier: MIT
// Keeps standard error in a file that has no name.
#include "screen/held_errors.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>

namespace ipodctl::screen {

HeldErrors::HeldErrors() {
  if (::isatty(STDERR_FILENO) == 0) return;
  kept_ = std::tmpfile();
  if (kept_ == nullptr) return;
  std::fflush(stderr);
  own_ = ::fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 3);
  ::dup2(::fileno(kept_), STDERR_FILENO);
}

HeldErrors::~HeldErrors() {
  if (own_ < 0) return;
  std::fflush(stderr);
  ::dup2(own_, STDERR_FILENO);
  ::close(own_);
  std::rewind(kept_);
  std::array<char, 4096> part{};
  while (const std::size_t read = std::fread(part.data(), 1, part.size(), kept_)) {
    std::fwrite(part.data(), 1, read, stderr);
  }
  std::fclose(kept_);
}

}  // namespace ipodctl::screen
