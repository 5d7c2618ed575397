// SPDX-License-Identifier: MIT
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <string>

#include "console/system.h"
#include "wire/recording_pipe.h"

namespace ipodctl {

namespace {

constexpr int kPollMs = 50;

}  // namespace

RecordingPipe::RecordingPipe(const std::function<void(RecordingPipe&)>& reader) {
  int ends[2] = {};
  if (::pipe2(ends, O_CLOEXEC) != 0) return;
  read_end_ = ends[0];
  SetEnvironment("IPODCOMM_CAPTURE", "/dev/fd/" + std::to_string(ends[1]));
  reader_ = std::thread([this, reader] { reader(*this); });
}

// By now all that is recorded is in the pipe.
RecordingPipe::~RecordingPipe() {
  if (read_end_ < 0) return;
  ending_ = true;
  reader_.join();
  ::close(read_end_);
}

std::size_t RecordingPipe::Read(std::uint8_t* bytes, std::size_t count,
                                const std::function<void()>& meanwhile) {
  while (true) {
    const bool last_look = ending_;
    pollfd readable = {read_end_, POLLIN, 0};
    if (::poll(&readable, 1, kPollMs) > 0) {
      const ssize_t read = ::read(read_end_, bytes, count);
      return read > 0 ? static_cast<std::size_t>(read) : 0;
    }
    if (last_look) return 0;
    meanwhile();
  }
}

}  // namespace ipodctl
