// SPDX-License-Identifier: MIT
// The library records into a pipe, whose other end is read here.
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <thread>
#include <utility>

#include "console/output.h"
#include "console/system.h"
#include "wire/live_lines.h"
#include "wire/transcript.h"
#include "wire/wire_lines.h"

namespace ipodctl {

namespace {

constexpr const char* kVariable = "IPODCOMM_CAPTURE";
constexpr int kPollMs = 50;

class LiveLines {
 public:
  /// @param copy file that takes the recording too; empty for none
  LiveLines(int read_end, std::string copy)
      : read_end_(read_end), copy_name_(std::move(copy)), reader_([this] { Run(); }) {}

  // By now all that is recorded is in the pipe.
  ~LiveLines() {
    ending_ = true;
    reader_.join();
    ::close(read_end_);
  }

  LiveLines(const LiveLines&) = delete;
  LiveLines& operator=(const LiveLines&) = delete;

 private:
  struct Closer {
    void operator()(std::FILE* file) const { std::fclose(file); }
  };

  void Run() {
    if (!copy_name_.empty()) copy_.reset(std::fopen(copy_name_.c_str(), "wbe"));
    Output output(stderr, false);
    WireLines lines(output);
    ipodwire::Transcript transcript([&](const ipodwire::Told& told) { lines.Print(told); });
    ipodwire::RecordingReader reader(
        [this](std::uint8_t* bytes, std::size_t count) { return Read(bytes, count); });
    ipodwire::Packet packet;
    while (reader.Next(&packet)) transcript.Add(packet);
    lines.PrintEnd(transcript.End());
  }

  // Waits for more until the process ends.
  std::size_t Read(std::uint8_t* bytes, std::size_t count) {
    while (true) {
      const bool last_look = ending_;
      pollfd readable = {read_end_, POLLIN, 0};
      if (::poll(&readable, 1, kPollMs) > 0) {
        const ssize_t read = ::read(read_end_, bytes, count);
        if (read <= 0) return 0;
        Copy(bytes, static_cast<std::size_t>(read));
        return static_cast<std::size_t>(read);
      }
      if (last_look) return 0;
    }
  }

  // A full disk ends the recording, not the session.
  void Copy(const std::uint8_t* bytes, std::size_t count) {
    if (copy_ == nullptr) return;
    errno = 0;
    if (std::fwrite(bytes, 1, count, copy_.get()) == count && std::fflush(copy_.get()) == 0) return;
    std::fprintf(stderr, "ipodctl: the recording %s ends here: %s.\n", copy_name_.c_str(),
                 std::strerror(errno));
    copy_.reset();
  }

  const int read_end_;
  const std::string copy_name_;
  std::unique_ptr<std::FILE, Closer> copy_;
  std::atomic<bool> ending_ = false;
  std::thread reader_;  // the last member: it uses the others
};

}  // namespace

void ShowLineLive() {
  int ends[2] = {};
  if (::pipe2(ends, O_CLOEXEC) != 0) return;
  const char* const file = std::getenv(kVariable);
  const std::string copy = file == nullptr ? "" : file;
  SetEnvironment(kVariable, "/dev/fd/" + std::to_string(ends[1]));
  // Begun before the library's recording, it ends after it.
  static const LiveLines lines(ends[0], copy);
}

}  // namespace ipodctl
