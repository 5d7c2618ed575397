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

class RecordingPipe::Ends {
 public:
  /// Null where the system has none to give.
  static std::unique_ptr<Ends> Make() {
    int ends[2] = {};
    if (::pipe2(ends, O_CLOEXEC) != 0) return nullptr;
    return std::unique_ptr<Ends>(new Ends(ends[0], ends[1]));
  }
  Ends(const Ends&) = delete;
  Ends& operator=(const Ends&) = delete;
  ~Ends() {
    ::close(read_end_);
    ::close(wake_);
  }

  int read_end() const { return read_end_; }
  int wake() const { return wake_; }
  std::string NameOfWriteEnd() const { return "/dev/fd/" + std::to_string(write_end_); }

 private:
  Ends(int read_end, int write_end)
      : read_end_(read_end), write_end_(write_end), wake_(::eventfd(0, EFD_CLOEXEC)) {}

  const int read_end_;
  const int write_end_;  // stays open: the reader is to see no end before the library writes
  const int wake_;       // readable once the end is asked for
};

RecordingPipe::RecordingPipe(const std::function<void(RecordingPipe&)>& reader)
    : ends_(Ends::Make()) {
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
  const std::uint64_t one = 1;
  [[maybe_unused]] const ssize_t ignored = ::write(ends_->wake(), &one, sizeof one);
  reader_.join();
}

std::size_t RecordingPipe::Read(std::uint8_t* bytes, std::size_t count,
                                const std::function<void()>& meanwhile) {
  pollfd ends[] = {{ends_->read_end(), POLLIN, 0}, {ends_->wake(), POLLIN, 0}};
  while (true) {
    const bool ending = ending_;
    const int patience_ms = drained_ ? 0 : patience_ms_.load();
    const int ready = ::poll(ends, ending ? 1 : 2, ending ? patience_ms : kPollMs);
    if (ready > 0 && ends[0].revents != 0) {
      const ssize_t read = ::read(ends_->read_end(), bytes, count);
      return read > 0 ? static_cast<std::size_t>(read) : 0;
    }
    if (ready < 0 && errno == EINTR) continue;
    if (ending) return 0;
    if (ready == 0) meanwhile();
  }
}

}  // namespace ipodctl
