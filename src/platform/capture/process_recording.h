// SPDX-License-Identifier: MIT
// The process's recording: one file takes all that it does on its lines.
#pragma once

#include <memory>
#include <mutex>
#include <string>

#include "platform/capture/recording.h"

namespace ipodcomm::capture {

/// The environment variable that asks for a recording and names its file.
inline constexpr char kVariable[] = "IPODCOMM_CAPTURE";

/// Its end writes out what waits.
class ProcessRecording {
 public:
  ProcessRecording() = default;
  ProcessRecording(const ProcessRecording&) = delete;
  ProcessRecording& operator=(const ProcessRecording&) = delete;
  ~ProcessRecording();

  /// The recording in `file`, the one so far if that is its file. Null when it cannot be made,
  /// which standard error says once.
  std::shared_ptr<Recording> To(const std::string& file);

 private:
  std::mutex mutex_;  // guards what follows
  std::string file_;
  std::shared_ptr<Recording> recording_;
};

}  // namespace ipodcomm::capture
