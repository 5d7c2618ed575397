// SPDX-License-Identifier: MIT
// Keeps what is written to standard error off the screen.
#pragma once

#include <cstdio>

namespace ipodctl::screen {

/// While it lives, what would stand on the terminal is kept; afterwards it comes there. Standard
/// error that leads elsewhere stays as it is.
class HeldErrors {
 public:
  HeldErrors();
  ~HeldErrors();
  HeldErrors(const HeldErrors&) = delete;
  HeldErrors& operator=(const HeldErrors&) = delete;

 private:
  std::FILE* kept_ = nullptr;
  int own_ = -1;
};

}  // namespace ipodctl::screen
