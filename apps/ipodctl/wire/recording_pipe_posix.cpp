// SPDX-License-Identifier: MIT
#include <fcntl.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <cerrno>
#include <string>

#include "console/system.h"
#include "wire/recording_pipe.h"

namespace ipodctl {

namespace {

constexpr int kPollMs = 50;
// For what has been recorded and is not in the pipe yet.
constexpr int kLongestWaitMs = 1000;
constexpr int kGraceMs = 20;

}  // namespace

RecordingPipe::RecordingPipe(const std::function<void(RecordingPipe&)>& reader) {
  int ends[2] = {};
  if (::pipe2(ends, O_CLOEXEC) != 0) return;
  read_end_ = ends[0];
  wake_ = ::eventfd(0, EFD_CLOEXEC);
  set_recording(false);
  SetEnvironment("IPODCOMM_CAPTURE", "/dev/fd/" + std::to_string(ends[1]));
  reader_ = std::thread([this, reader] { reader(*this); });
}

// By now all that is recorded is in the pipe.
RecordingPipe::~RecordingPipe() {
  drained_ = true;
  End();
  if (read_end_ < 0) return;
  ::close(read_end_);
  ::close(wake_);
}

void RecordingPipe::Finish() { End(); }

void RecordingPipe::set_recording(bool recording) {
  patience_ms_ = recording ? kLongestWaitMs : kGraceMs;
}

void RecordingPipe::End() {
  if (!reader_.joinable()) return;
  ending_ = true;
  const std::uint64_t one = 1;
  [[maybe_unused]] const ssize_t ignored = ::write(wake_, &one, sizeof one);
  reader_.join();
}

std::size_t RecordingPipe::Read(std::uint8_t* bytes, std::size_t count,
                                const std::function<void()>& meanwhile) {
  pollfd ends[] = {{read_end_, POLLIN, 0}, {wake_, POLLIN, 0}};
  while (true) {
    const bool ending = ending_;
    const int patience_ms = drained_ ? 0 : patience_ms_.load();
    const int ready = ::poll(ends, ending ? 1 : 2, ending ? patience_ms : kPollMs);
    if (ready > 0 && ends[0].revents != 0) {
      const ssize_t read = ::read(read_end_, bytes, count);
      return read > 0 ? static_cast<std::size_t>(read) : 0;
    }
    if (ready < 0 && errno == EINTR) continue;
    if (ending) return 0;
    if (ready == 0) meanwhile();
  }
}

}  // namespace ipodctl
