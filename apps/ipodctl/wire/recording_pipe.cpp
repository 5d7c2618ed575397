// SPDX-License-Identifier: MIT
// The life of the pipe and its reader, the same on every system.
#include "wire/recording_pipe.h"

#include "console/system.h"

namespace ipodctl {

namespace {

// For what has been recorded and is not in the pipe yet.
constexpr int kLongestWaitMs = 1000;
constexpr int kGraceMs = 20;

}  // namespace

RecordingPipe::RecordingPipe(const std::function<void(RecordingPipe&)>& reader)
    : ends_(MakeEnds()) {
  if (ends_ == nullptr) return;
  set_recording(false);
  SetEnvironment("IPODCOMM_CAPTURE", ends_->NameOfWriteEnd());
  reader_ = std::thread([this, reader] { reader(*this); });
}

// By now all that is recorded is in the pipe.
RecordingPipe::~RecordingPipe() {
  drained_ = true;
  End();
}

void RecordingPipe::Finish() { End(); }

void RecordingPipe::set_recording(bool recording) {
  patience_ms_ = recording ? kLongestWaitMs : kGraceMs;
}

void RecordingPipe::End() {
  if (!reader_.joinable()) return;
  ending_ = true;
  ends_->Wake();
  reader_.join();
}

}  // namespace ipodctl
