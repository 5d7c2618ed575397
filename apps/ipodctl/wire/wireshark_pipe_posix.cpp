// SPDX-License-Identifier: MIT
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstring>

#include "console/failure.h"
#include "console/interrupt.h"
#include "wire/wireshark_pipe.h"

namespace ipodctl {

namespace {

constexpr unsigned kReaderLookMs = 20;

// Opening a pipe that is not read fails rather than waits, so that the waiting can be interrupted.
int OpenForReader(const std::string& path) {
  for (;;) {
    const int pipe = ::open(path.c_str(), O_WRONLY | O_CREAT | O_NONBLOCK | O_CLOEXEC, 0666);
    if (pipe >= 0) {
      ::fcntl(pipe, F_SETFL, O_WRONLY);
      return pipe;
    }
    if (errno != ENXIO) {
      throw CommandFailure(kCannotCreate, "cannot record to " + path + ": " + std::strerror(errno));
    }
    PauseMs(kReaderLookMs);
    StopIfInterrupted();
  }
}

}  // namespace

class WiresharkPipe::Stream {
 public:
  explicit Stream(const std::string& path) : pipe_(OpenForReader(path)) {
    // A reader that leaves is noticed when writing fails.
    std::signal(SIGPIPE, SIG_IGN);
  }
  ~Stream() { ::close(pipe_); }
  Stream(const Stream&) = delete;
  Stream& operator=(const Stream&) = delete;

  int get() const { return pipe_; }

 private:
  const int pipe_;
};

WiresharkPipe::WiresharkPipe(const std::string& path) : stream_(std::make_unique<Stream>(path)) {}

WiresharkPipe::~WiresharkPipe() = default;

bool WiresharkPipe::Write(const std::uint8_t* bytes, std::size_t count) {
  while (count > 0) {
    const ssize_t written = ::write(stream_->get(), bytes, count);
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    bytes += written;
    count -= static_cast<std::size_t>(written);
  }
  return true;
}

bool WiresharkPipe::IsRead() const {
  pollfd pipe = {stream_->get(), 0, 0};
  return ::poll(&pipe, 1, 0) <= 0 || (pipe.revents & (POLLERR | POLLNVAL)) == 0;
}

}  // namespace ipodctl
