// SPDX-License-Identifier: MIT
// Keeps what the library prints on standard output away from the program's own data.
#pragma once

#include <cstdio>

namespace ipodctl {

/// Takes standard output over: the program writes to stream(), and whatever else writes to standard
/// output (the library's trace lines) is dropped or, on request, sent to standard error.
class StdoutGuard {
 public:
  enum class Others { kDropped, kToStandardError };

  explicit StdoutGuard(Others others);
  ~StdoutGuard();
  StdoutGuard(const StdoutGuard&) = delete;
  StdoutGuard& operator=(const StdoutGuard&) = delete;

  std::FILE* stream() const { return stream_; }

 private:
  std::FILE* stream_ = nullptr;
};

}  // namespace ipodctl
