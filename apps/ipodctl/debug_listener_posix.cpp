// SPDX-License-Identifier: MIT
// Listens to standard error through a pipe.
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

#include "debug_listener.h"
#include "host.h"
#include "log.h"

namespace ipodctl {

namespace {

constexpr const char* kFailedWrite = "Failed to write xml file data!";
constexpr char kMark = '\0';  // never part of what the library tells

}  // namespace

class DebugListener::Pipe {
 public:
  Pipe();
  ~Pipe();
  Pipe(const Pipe&) = delete;
  Pipe& operator=(const Pipe&) = delete;

  /// All that was written since the last call.
  std::string Take();

 private:
  void Divert(int write_end);
  void Listen();
  void Hear(const char* bytes, std::size_t count);

  int before_ = -1;  // where standard error led
  int read_end_ = -1;
  std::mutex mutex_;
  std::condition_variable marked_;
  std::string heard_;
  unsigned marks_ = 0;
  std::thread thread_;
};

DebugListener::Pipe::Pipe() {
  int ends[2] = {-1, -1};
  before_ = ::fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 3);
  if (before_ < 0 || ::pipe2(ends, O_CLOEXEC) != 0) return;
  read_end_ = ends[0];
  Divert(ends[1]);
  thread_ = std::thread([this] { Listen(); });
}

void DebugListener::Pipe::Divert(int write_end) {
  std::FILE* const own = ::fdopen(::fcntl(before_, F_DUPFD_CLOEXEC, 3), "w");
  if (own != nullptr) std::setvbuf(own, nullptr, _IONBF, 0);
  SetMessages(own);
  ::dup2(write_end, STDERR_FILENO);
  ::close(write_end);
}

// The stream for messages stays open: a thread of the library may just be noting something.
DebugListener::Pipe::~Pipe() {
  if (thread_.joinable()) {
    ::dup2(before_, STDERR_FILENO);  // which closes the pipe's only write end
    thread_.join();
    SetMessages(nullptr);
    ::close(read_end_);
  }
  if (before_ >= 0) ::close(before_);
}

void DebugListener::Pipe::Listen() {
  char bytes[4096];
  while (true) {
    const ssize_t count = ::read(read_end_, bytes, sizeof bytes);
    if (count > 0) {
      Hear(bytes, static_cast<std::size_t>(count));
    } else if (count == 0 || errno != EINTR) {
      return;
    }
  }
}

void DebugListener::Pipe::Hear(const char* bytes, std::size_t count) {
  const std::lock_guard<std::mutex> lock(mutex_);
  for (std::size_t i = 0; i < count; ++i) {
    if (bytes[i] == kMark) {
      ++marks_;
      marked_.notify_all();
      continue;
    }
    heard_ += bytes[i];
    if (Verbose()) std::fputc(bytes[i], Messages());
  }
}

// Whatever the library has told by now lies before the mark.
std::string DebugListener::Pipe::Take() {
  if (!thread_.joinable()) return {};
  std::unique_lock<std::mutex> lock(mutex_);
  const unsigned awaited = marks_ + 1;
  lock.unlock();
  if (::write(STDERR_FILENO, &kMark, 1) != 1) return {};
  lock.lock();
  marked_.wait(lock, [&] { return marks_ >= awaited; });
  std::string heard;
  heard.swap(heard_);
  return heard;
}

DebugListener::DebugListener() {
  SetEnvironment("IPODCOMM_DEBUG", "1");
  pipe_ = std::make_unique<Pipe>();
}

DebugListener::~DebugListener() = default;

std::size_t DebugListener::TakeFailedFileWrites() {
  const std::string heard = pipe_->Take();
  std::size_t count = 0;
  std::size_t at = heard.find(kFailedWrite);
  for (; at != std::string::npos; at = heard.find(kFailedWrite, at + 1)) ++count;
  return count;
}

}  // namespace ipodctl
