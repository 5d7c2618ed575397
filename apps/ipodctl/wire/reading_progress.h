// SPDX-License-Identifier: MIT
// How far a large recording has been read.
#pragma once

#include <cstdint>

#include "console/progress.h"

namespace ipodctl {

/// A bar in megabytes, for files of at least one. Smaller ones are read at once.
class ReadingProgress {
 public:
  explicit ReadingProgress(std::uint64_t size_bytes)
      : bar_("Reading", Megabytes(size_bytes)), shown_(Megabytes(size_bytes) > 0) {}

  void Update(std::uint64_t position) {
    if (!shown_ || Megabytes(position) == done_) return;
    done_ = Megabytes(position);
    bar_.Update(done_);
  }
  void Hide() { bar_.Hide(); }

 private:
  static std::uint64_t Megabytes(std::uint64_t bytes) { return bytes >> 20; }

  ProgressBar bar_;
  bool shown_;
  std::uint64_t done_ = 0;
};

}  // namespace ipodctl
