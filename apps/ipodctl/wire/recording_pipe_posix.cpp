// SPDX-License-Identifier: MIT
#include <fcntl.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <cerrno>
#include <string>

#include "wire/recording_pipe.h"

namespace ipodctl {

namespace {

constexpr int kPollMs = 50;

}  // namespace

class RecordingPipe::SystemEnds : public Ends {
 public:
  static std::unique_ptr<Ends> Make() {
    int ends[2] = {};
    if (::pipe2(ends, O_CLOEXEC) != 0) return nullptr;
    return std::unique_ptr<Ends>(new SystemEnds(ends[0], ends[1]));
  }
  ~SystemEnds() override {
    ::close(read_end_);
    ::close(wake_);
  }

  int read_end() const { return read_end_; }
  int wake() const { return wake_; }
  void Wake() override {
    const std::uint64_t one = 1;
    [[maybe_unused]] const ssize_t ignored = ::write(wake_, &one, sizeof one);
  }
  std::string NameOfWriteEnd() const override { return "/dev/fd/" + std::to_string(write_end_); }

 private:
  SystemEnds(int read_end, int write_end)
      : read_end_(read_end), write_end_(write_end), wake_(::eventfd(0, EFD_CLOEXEC)) {}

  const int read_end_;
  const int write_end_;  // stays open: the reader is to see no end before the library writes
  const int wake_;       // readable once the end is asked for
};

std::unique_ptr<RecordingPipe::Ends> RecordingPipe::MakeEnds() { return SystemEnds::Make(); }

RecordingPipe::SystemEnds& RecordingPipe::ends() const { return static_cast<SystemEnds&>(*ends_); }

std::size_t RecordingPipe::Read(std::uint8_t* bytes, std::size_t count,
                                const std::function<void()>& meanwhile) {
  pollfd polled[] = {{ends().read_end(), POLLIN, 0}, {ends().wake(), POLLIN, 0}};
  while (true) {
    const bool ending = ending_;
    const int patience_ms = drained_ ? 0 : patience_ms_.load();
    const int ready = ::poll(polled, ending ? 1 : 2, ending ? patience_ms : kPollMs);
    if (ready > 0 && polled[0].revents != 0) {
      const ssize_t read = ::read(ends().read_end(), bytes, count);
      return read > 0 ? static_cast<std::size_t>(read) : 0;
    }
    if (ready < 0 && errno == EINTR) continue;
    if (ending) return 0;
    if (ready == 0) meanwhile();
  }
}

}  // namespace ipodctl
