// SPDX-License-Identifier: MIT
// The file that takes a recording, where there are signals.
#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include "platform/capture/recording_stream.h"

namespace ipodcomm::capture {

// Opening a pipe that nobody reads fails rather than waits, with the session, for a reader.
std::FILE* OpenRecordingStream(const std::string& file) {
  if (file == "-") return stdout;
  constexpr int kHow = O_WRONLY | O_CREAT | O_TRUNC | O_NONBLOCK | O_CLOEXEC;
  const int descriptor = ::open(file.c_str(), kHow, 0666);
  if (descriptor < 0) return nullptr;
  // The writing itself is a thread's own affair, and may wait.
  ::fcntl(descriptor, F_SETFL, O_WRONLY);
  return ::fdopen(descriptor, "wb");
}

void SurviveLeavingReaders() {
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGPIPE);
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);
}

}  // namespace ipodcomm::capture
