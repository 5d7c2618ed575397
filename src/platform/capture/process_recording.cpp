// SPDX-License-Identifier: MIT
// The process's recording: one file takes all that it does on its lines.
#include "platform/capture/process_recording.h"

#include <cstdio>

namespace ipodcomm::capture {

ProcessRecording::~ProcessRecording() {
  if (recording_ != nullptr) recording_->Drain();
}

std::shared_ptr<Recording> ProcessRecording::To(const std::string& file) {
  const std::lock_guard lock(mutex_);
  if (file == file_) return recording_;
  file_ = file;
  std::string error;
  recording_ = Recording::Start(file, &error);
  if (recording_ == nullptr) {
    std::fprintf(stderr, "ipodcomm: nothing is recorded, %s: %s\n", file.c_str(), error.c_str());
  }
  return recording_;
}

}  // namespace ipodcomm::capture
