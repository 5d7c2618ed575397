// SPDX-License-Identifier: MIT
// The program's few needs of a POSIX system; watched memory needs Linux.
#include <fcntl.h>
#include <signal.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <new>
#include <optional>
#include <string_view>

#include "console/system.h"

namespace ipodctl {

namespace {

constexpr const char* kPortVariable = "IPODCOMM_COM2";
constexpr const char* kDefaultDevice = "/dev/ttyS1";

void* Map(int file, std::size_t bytes, int access) {
  void* const view = ::mmap(nullptr, bytes, access, MAP_SHARED, file, 0);
  return view == MAP_FAILED ? nullptr : view;
}

// None for a speed that serial lines do not have.
std::optional<speed_t> SpeedOf(std::uint32_t baud) {
  switch (baud) {
    case 9600:
      return B9600;
    case 19200:
      return B19200;
    case 38400:
      return B38400;
    case 57600:
      return B57600;
    case 115200:
      return B115200;
    default:
      return std::nullopt;
  }
}

const char* said_once = "";
std::atomic<bool> was_said = false;

ssize_t WriteUnlessSaid(void* /*cookie*/, const char* text, std::size_t size) {
  const std::string_view whole(text, size);
  if (whole.rfind(said_once, 0) == 0 && was_said.exchange(true)) {
    return static_cast<ssize_t>(size);
  }
  std::string_view rest = whole;
  while (!rest.empty()) {
    const ssize_t written = ::write(STDERR_FILENO, rest.data(), rest.size());
    if (written > 0) rest.remove_prefix(static_cast<std::size_t>(written));
    if (written < 0 && errno != EINTR) return 0;
  }
  return static_cast<ssize_t>(size);
}

void Unmap(void* view, std::size_t bytes) {
  if (view != nullptr) ::munmap(view, bytes);
}

constexpr const char* kInUse = "it is in use; close the other program that has it open";

// Looks at a device as the library does that opened it in vain and does not say why.
PortProblem WhyNotOpenedNow(const std::string& device) {
  const int line = ::open(device.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
  const bool in_use = line < 0 ? errno == EBUSY : ::flock(line, LOCK_EX | LOCK_NB) != 0;
  const bool is_terminal = line >= 0 && ::isatty(line) != 0;
  if (line >= 0) ::close(line);
  if (in_use) return {"E102", kInUse};
  if (line >= 0 && !is_terminal) {
    return {"E104", "it does not work as a serial line; name the dock's with --port"};
  }
  return {"",
          "it is in use, or does not work as a serial line; close the other program that has it "
          "open, or name the dock's with --port"};
}

}  // namespace

std::vector<std::string> Utf8Arguments(int argc, char** argv) {
  return argc > 0 ? std::vector<std::string>(argv + 1, argv + argc) : std::vector<std::string>();
}

void PrepareConsole() {}

bool IsTerminal(std::FILE* stream) { return ::isatty(::fileno(stream)) != 0; }

void ReadInputAsBytes() {}

int TerminalColumns(std::FILE* stream) {
  winsize size = {};
  const bool known = ::ioctl(::fileno(stream), TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
  return known ? size.ws_col : 80;
}

// Who runs the program under nohup has the closing of a terminal ignored already.
void CatchHangUp(void (*note)(int signal)) {
  struct sigaction before = {};
  ::sigaction(SIGHUP, nullptr, &before);
  if (before.sa_handler != SIG_IGN) ::signal(SIGHUP, note);
  ::signal(SIGPIPE, SIG_IGN);
}

void SetEnvironment(const char* name, const std::string& value) {
  ::setenv(name, value.c_str(), 1);
}

std::string Environment(const char* name) {
  const char* const value = std::getenv(name);
  return value == nullptr ? "" : value;
}

std::string PortDevice() {
  const char* device = std::getenv(kPortVariable);
  return device != nullptr && *device != '\0' ? device : kDefaultDevice;
}

bool ChoosePortDevice(const std::string& device) {
  SetEnvironment(kPortVariable, device);
  return true;
}

PortProblem WhyNotOpened(const std::string& device, long code) {
  struct stat status = {};
  if (::stat(device.c_str(), &status) != 0) {
    if (errno == EACCES) {
      return {"E103", "its folder may not be searched; run as a user who may use it"};
    }
    return {
        "E101",
        "there is no such device; check its name and the cable, or name another one with --port"};
  }
  if (!S_ISCHR(status.st_mode)) {
    return {"E104", "it is not a serial line; name the dock's with --port"};
  }
  if (::access(device.c_str(), R_OK | W_OK) != 0) {
    return {"E103",
            "permission denied; join the group that owns it (often 'dialout') or run as its owner"};
  }
  if (code == kUnknownReason) return WhyNotOpenedNow(device);
  constexpr long kAccessDenied = 5;
  if (code == kAccessDenied) return {"E102", kInUse};
  return {"E104", "it does not work as a serial line (code " + std::to_string(code) +
                      "); name the dock's with --port"};
}

// Reached through the descriptor's own name, standard output may be anything that can be written.
std::string CaptureLine(const std::string& file, std::FILE* output) {
  const std::string path = file == "-" ? "/dev/fd/" + std::to_string(::fileno(output)) : file;
  const int made = ::open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0666);
  if (made < 0) return std::strerror(errno);
  // The reader of a pipe is to see no end before the library writes: its end stays open.
  struct stat status = {};
  const bool is_pipe = ::fstat(made, &status) == 0 && S_ISFIFO(status.st_mode);
  if (!is_pipe) ::close(made);
  SetEnvironment("IPODCOMM_CAPTURE", path);
  return {};
}

LineSpeed::LineSpeed(const std::string& device)
    : line_(::open(device.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC)) {}

LineSpeed::~LineSpeed() {
  if (line_ >= 0) ::close(line_);
}

bool LineSpeed::Set(std::uint32_t baud) {
  termios settings = {};
  const auto speed = SpeedOf(baud);
  return speed && ::tcgetattr(line_, &settings) == 0 && ::cfsetspeed(&settings, *speed) == 0 &&
         ::tcsetattr(line_, TCSANOW, &settings) == 0;
}

// The C library lets a program set another stream as its standard error, which the library's log
// then goes through too. The descriptor stays what it is.
void SayOnce(const char* beginning) {
  said_once = beginning;
  std::FILE* const stream =
      ::fopencookie(nullptr, "w", {nullptr, WriteUnlessSaid, nullptr, nullptr});
  if (stream == nullptr) return;
  std::setvbuf(stream, nullptr, _IONBF, 0);
  stderr = stream;
}

void DropStandardOutput() {
  const int nowhere = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
  if (nowhere < 0) return;
  ::dup2(nowhere, STDOUT_FILENO);
  if (nowhere != STDOUT_FILENO) ::close(nowhere);
}

StdoutGuard::StdoutGuard(Others others) {
  std::fflush(stdout);
  const int own = ::fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 3);
  if (own >= 0) stream_ = ::fdopen(own, "w");
  if (stream_ == nullptr) stream_ = stderr;  // standard output was closed by the caller
  if (others == Others::kToStandardError) {
    ::dup2(STDERR_FILENO, STDOUT_FILENO);
    return;
  }
  DropStandardOutput();
}

// Others stay diverted: the library's worker threads may print until the process ends.
StdoutGuard::~StdoutGuard() {
  std::fflush(stream_);
  if (stream_ != stderr) std::fclose(stream_);
}

WatchedMemory::WatchedMemory(std::size_t bytes) : bytes_(bytes) {
  const int file = ::memfd_create("watched", MFD_CLOEXEC);
  if (file < 0) throw std::bad_alloc();
  if (::ftruncate(file, static_cast<off_t>(bytes)) == 0) {
    written_ = Map(file, bytes, PROT_READ | PROT_WRITE);
    watched_ = Map(file, bytes, PROT_READ);
  }
  ::close(file);
  if (written_ != nullptr && watched_ != nullptr) return;
  Unmap(written_, bytes);
  Unmap(watched_, bytes);
  throw std::bad_alloc();
}

WatchedMemory::~WatchedMemory() {
  Unmap(written_, bytes_);
  Unmap(watched_, bytes_);
}

}  // namespace ipodctl
