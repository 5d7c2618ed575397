// SPDX-License-Identifier: MIT
// An open serial port: a terminal in raw mode, a UART or a pseudo-terminal.
#include "platform/posix/port.h"

#include <errno.h>
#include <fcntl.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <utility>

#include "platform/posix/line_settings.h"
#include "platform/posix/terminal_recorder.h"

namespace ipodcomm::platform {
namespace {

DWORD OpenError(int error) {
  switch (error) {
    case EACCES:
    case EPERM:
    case EBUSY:
    case EWOULDBLOCK:
      return ERROR_ACCESS_DENIED;
    case ENOMEM:
    case EMFILE:
    case ENFILE:
      return ERROR_NOT_ENOUGH_MEMORY;
    default:
      return ERROR_FILE_NOT_FOUND;
  }
}

bool IsPseudoTerminal(int line) {
  constexpr unsigned kFirstMajor = 136;
  constexpr unsigned kLastMajor = 143;
  struct stat status;
  if (fstat(line, &status) != 0) return false;
  const unsigned number = major(status.st_rdev);
  return number >= kFirstMajor && number <= kLastMajor;
}

// A signal that is left on; whoever polls for it sees it.
void Raise(int event) {
  const std::uint64_t one = 1;
  [[maybe_unused]] const ssize_t ignored = write(event, &one, sizeof one);
}

void Lower(int event) {
  std::uint64_t count = 0;
  [[maybe_unused]] const ssize_t ignored = read(event, &count, sizeof count);
}

int NewEvent() { return eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK); }

bool WouldBlock(int error) { return error == EAGAIN || error == EWOULDBLOCK || error == EINTR; }

// The end of a read or write with this total time-out; none when it never times out.
Deadline TotalDeadline(DWORD multiplier, DWORD constant, DWORD count) {
  if (multiplier == 0 && constant == 0) return std::nullopt;
  return std::chrono::steady_clock::now() +
         std::chrono::milliseconds(static_cast<std::uint64_t>(multiplier) * count + constant);
}

}  // namespace

void Descriptor::Close() {
  const int descriptor = Release();
  if (descriptor >= 0) close(descriptor);
}

int Descriptor::Release() { return std::exchange(descriptor_, -1); }

// One call in progress. It keeps the line from being closed under the call, and is refused when the
// port is closed.
class Port::Use {
 public:
  explicit Use(Port& port) : port_(port) {
    const std::lock_guard lock(port_.mutex_);
    allowed_ = !port_.closed_;
    if (allowed_) ++port_.users_;
  }
  Use(const Use&) = delete;
  Use& operator=(const Use&) = delete;
  ~Use() {
    if (!allowed_) return;
    const std::lock_guard lock(port_.mutex_);
    if (--port_.users_ == 0 && port_.closed_) port_.unused_.notify_all();
  }

  bool allowed() const { return allowed_; }

 private:
  Port& port_;
  bool allowed_;
};

std::shared_ptr<Port> Port::Open(const std::string& device, DWORD* code) {
  Descriptor line(open(device.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC));
  // The lock keeps out everybody who opens ports this way, whatever their privileges.
  if (!line.is_open() || flock(line.get(), LOCK_EX | LOCK_NB) != 0) {
    *code = OpenError(errno);
    return nullptr;
  }
  // Exclusive mode keeps out other programs too. Not on a pseudo-terminal: its far end may hold the
  // terminal open, and the mode would then outlive a program that was killed.
  const bool exclusive = !IsPseudoTerminal(line.get());
  if (exclusive) ioctl(line.get(), TIOCEXCL);
  auto port = std::make_shared<Port>(std::move(line), exclusive);
  if (!port->closing_.is_open() || !port->mask_changed_.is_open()) {
    *code = ERROR_NOT_ENOUGH_MEMORY;
    return nullptr;
  }
  port->recorder_ = RecorderOfEnvironment(device, port->line_.get());
  // A device that takes no line settings is not a serial port, or one without its hardware.
  if (port->SetSettings(DefaultSettings()) != ERROR_SUCCESS) {
    *code = ERROR_FILE_NOT_FOUND;
    return nullptr;
  }
  return port;
}

Port::Port(Descriptor line, bool exclusive)
    : line_(std::move(line)),
      exclusive_(exclusive),
      closing_(NewEvent()),
      mask_changed_(NewEvent()),
      settings_(DefaultSettings()) {}

Port::~Port() { Port::Close(); }

void Port::Close() {
  std::unique_lock lock(mutex_);
  closed_ = true;
  Raise(closing_.get());
  unused_.wait(lock, [this] { return users_ == 0; });
  if (!line_.is_open()) return;
  recorder_ = nullptr;
  if (exclusive_) ioctl(line_.get(), TIOCNXCL);
  line_.Close();
}

DWORD Port::GetSettings(DCB* settings) {
  const std::lock_guard lock(mutex_);
  if (closed_) return ERROR_INVALID_HANDLE;
  *settings = settings_;
  return ERROR_SUCCESS;
}

DWORD Port::SetSettings(const DCB& settings) {
  const Use use(*this);
  if (!use.allowed()) return ERROR_INVALID_HANDLE;
  termios line;
  if (tcgetattr(line_.get(), &line) != 0) return ERROR_GEN_FAILURE;
  if (!ApplySettings(settings, &line)) return ERROR_INVALID_PARAMETER;
  if (tcsetattr(line_.get(), TCSANOW, &line) != 0) return ERROR_GEN_FAILURE;
  SetControlLines(settings);
  if (recorder_ != nullptr) recorder_->Configured(settings);
  const std::lock_guard lock(mutex_);
  settings_ = settings;
  return ERROR_SUCCESS;
}

// A pseudo-terminal has no control lines and refuses; nothing depends on them.
void Port::SetControlLines(const DCB& settings) {
  const int dtr = TIOCM_DTR;
  const int rts = TIOCM_RTS;
  ioctl(line_.get(), settings.fDtrControl != 0 ? TIOCMBIS : TIOCMBIC, &dtr);
  // Under handshake the driver moves the line itself.
  if (settings.fRtsControl < 2) {
    ioctl(line_.get(), settings.fRtsControl != 0 ? TIOCMBIS : TIOCMBIC, &rts);
  }
}

DWORD Port::GetTimeouts(COMMTIMEOUTS* timeouts) {
  const std::lock_guard lock(mutex_);
  if (closed_) return ERROR_INVALID_HANDLE;
  *timeouts = timeouts_;
  return ERROR_SUCCESS;
}

DWORD Port::SetTimeouts(const COMMTIMEOUTS& timeouts) {
  const std::lock_guard lock(mutex_);
  if (closed_) return ERROR_INVALID_HANDLE;
  timeouts_ = timeouts;
  return ERROR_SUCCESS;
}

DWORD Port::SetEventMask(DWORD events) {
  const std::lock_guard lock(mutex_);
  if (closed_) return ERROR_INVALID_HANDLE;
  event_mask_ = events;
  if (waiting_) Raise(mask_changed_.get());
  return ERROR_SUCCESS;
}

// Bytes that are waiting count as the event "byte received", whenever they came.
DWORD Port::WaitEvent(DWORD* events) {
  *events = 0;
  const Use use(*this);
  if (!use.allowed()) return ERROR_INVALID_HANDLE;
  DWORD mask = 0;
  {
    const std::lock_guard lock(mutex_);
    // Only one wait at a time, and not for nothing.
    if (waiting_ || event_mask_ == 0) return ERROR_INVALID_PARAMETER;
    waiting_ = true;
    mask = event_mask_;
    Lower(mask_changed_.get());
  }
  const bool receiving = (mask & EV_RXCHAR) != 0;
  const Readiness readiness =
      Await(receiving ? short{POLLIN} : short{0}, std::nullopt, /*until_mask_changes=*/true);
  {
    const std::lock_guard lock(mutex_);
    waiting_ = false;
  }
  if (readiness == Readiness::kClosed) return ERROR_OPERATION_ABORTED;
  if (readiness == Readiness::kGone) return ERROR_GEN_FAILURE;
  if (readiness == Readiness::kReady) *events = EV_RXCHAR;
  return ERROR_SUCCESS;
}

DWORD Port::Read(void* buffer, DWORD count, DWORD* read) {
  *read = 0;
  const Use use(*this);
  if (!use.allowed()) return ERROR_INVALID_HANDLE;
  COMMTIMEOUTS timeouts;
  {
    const std::lock_guard lock(mutex_);
    timeouts = timeouts_;
  }
  const DWORD code = ReadUntil(buffer, count, read, timeouts);
  // Bytes that came before the line went away are delivered; the next read reports the loss.
  return *read > 0 ? ERROR_SUCCESS : code;
}

DWORD Port::ReadUntil(void* buffer, DWORD count, DWORD* read, const COMMTIMEOUTS& timeouts) {
  constexpr DWORD kMaximum = 0xFFFFFFFF;
  // The longest interval asks for what is there already. With the largest multiplier too, the first
  // byte is waited for, for the constant; the multiplier then multiplies nothing.
  const bool take_what_is_there = timeouts.ReadIntervalTimeout == kMaximum;
  const DWORD multiplier = timeouts.ReadTotalTimeoutMultiplier;
  Deadline total = TotalDeadline(take_what_is_there && multiplier == kMaximum ? 0 : multiplier,
                                 timeouts.ReadTotalTimeoutConstant, count);
  if (take_what_is_there && !total) total = std::chrono::steady_clock::now();
  auto* const bytes = static_cast<char*>(buffer);
  while (*read < count) {
    Deadline deadline = total;
    if (*read > 0 && timeouts.ReadIntervalTimeout != 0) {
      const Deadline gap = DeadlineIn(take_what_is_there ? 0 : timeouts.ReadIntervalTimeout);
      deadline = deadline ? std::min(*deadline, *gap) : gap;
    }
    switch (Await(POLLIN, deadline)) {
      case Readiness::kClosed:
        return ERROR_OPERATION_ABORTED;
      case Readiness::kGone:
        return LineGone(0);
      case Readiness::kReady:
        break;
      default:
        return ERROR_SUCCESS;
    }
    const ssize_t received = ::read(line_.get(), bytes + *read, count - *read);
    if (received > 0) {
      if (recorder_ != nullptr) {
        recorder_->Received(bytes + *read, static_cast<std::size_t>(received));
      }
      *read += static_cast<DWORD>(received);
    }
    // A terminal that has been hung up reads as empty for ever.
    if (received == 0) return LineGone(0);
    if (received < 0 && !WouldBlock(errno)) return LineGone(errno);
  }
  return ERROR_SUCCESS;
}

DWORD Port::Write(const void* data, DWORD count, DWORD* written) {
  *written = 0;
  const Use use(*this);
  if (!use.allowed()) return ERROR_INVALID_HANDLE;
  Deadline deadline;
  {
    const std::lock_guard lock(mutex_);
    deadline = TotalDeadline(timeouts_.WriteTotalTimeoutMultiplier,
                             timeouts_.WriteTotalTimeoutConstant, count);
  }
  const auto* const bytes = static_cast<const char*>(data);
  while (*written < count) {
    const capture::Nanoseconds began = recorder_ != nullptr ? capture::WallClock() : 0;
    const ssize_t sent = ::write(line_.get(), bytes + *written, count - *written);
    if (sent >= 0) {
      if (recorder_ != nullptr) {
        recorder_->Sent(bytes + *written, static_cast<std::size_t>(sent), began);
      }
      *written += static_cast<DWORD>(sent);
      continue;
    }
    if (!WouldBlock(errno)) return LineGone(errno);
    switch (Await(POLLOUT, deadline)) {
      case Readiness::kClosed:
        return ERROR_OPERATION_ABORTED;
      case Readiness::kGone:
        return LineGone(0);
      case Readiness::kReady:
        break;
      default:
        return ERROR_SUCCESS;  // timed out: fewer bytes than asked for
    }
  }
  return ERROR_SUCCESS;
}

DWORD Port::LineGone(int error) {
  if (recorder_ != nullptr) recorder_->Gone(error == 0 ? "hung up" : std::strerror(error));
  return ERROR_GEN_FAILURE;
}

DWORD Port::Purge(DWORD flags) {
  const Use use(*this);
  if (!use.allowed()) return ERROR_INVALID_HANDLE;
  // The abort flags have nothing to do: they are for requests left behind by calls that returned.
  if ((flags & PURGE_RXCLEAR) != 0 && tcflush(line_.get(), TCIFLUSH) != 0) return ERROR_GEN_FAILURE;
  if ((flags & PURGE_TXCLEAR) != 0 && tcflush(line_.get(), TCOFLUSH) != 0) return ERROR_GEN_FAILURE;
  return ERROR_SUCCESS;
}

// Less than nothing when the line has gone.
int Port::BytesWaiting() const {
  int count = 0;
  return ioctl(line_.get(), FIONREAD, &count) == 0 ? count : -1;
}

DWORD Port::GetQueues(COMSTAT* status) {
  *status = {};
  const Use use(*this);
  if (!use.allowed()) return ERROR_INVALID_HANDLE;
  const int received = BytesWaiting();
  if (received < 0) return ERROR_GEN_FAILURE;
  int unsent = 0;
  ioctl(line_.get(), TIOCOUTQ, &unsent);  // not every terminal knows
  status->cbInQue = static_cast<DWORD>(received);
  status->cbOutQue = static_cast<DWORD>(unsent);
  return ERROR_SUCCESS;
}

DWORD Port::EndBreak() {
  const Use use(*this);
  if (!use.allowed()) return ERROR_INVALID_HANDLE;
  const bool gone = ioctl(line_.get(), TIOCCBRK) != 0 && errno == EIO;
  return gone ? ERROR_GEN_FAILURE : ERROR_SUCCESS;
}

// Blocks until the line is ready for `events`, exactly to the deadline: terminal drivers' own
// time-outs only know tenths of a second.
Port::Readiness Port::Await(short events, const Deadline& deadline, bool until_mask_changes) {
  using std::chrono::nanoseconds;
  pollfd watched[] = {
      {line_.get(), events, 0}, {closing_.get(), POLLIN, 0}, {mask_changed_.get(), POLLIN, 0}};
  const nfds_t count = until_mask_changes ? 3 : 2;
  for (;;) {
    timespec left = {};
    if (deadline) {
      const auto rest =
          std::max(nanoseconds(*deadline - std::chrono::steady_clock::now()), nanoseconds::zero());
      left.tv_sec = static_cast<time_t>(rest.count() / 1000000000);
      left.tv_nsec = static_cast<long>(rest.count() % 1000000000);
    }
    const int ready = ppoll(watched, count, deadline ? &left : nullptr, nullptr);
    if (ready < 0 && errno != EINTR) return Readiness::kGone;
    if (ready == 0) return Readiness::kTimeout;
    if (ready < 0) continue;
    if (watched[1].revents != 0) return Readiness::kClosed;
    const short happened = watched[0].revents;
    const bool hung_up = (happened & (POLLERR | POLLHUP | POLLNVAL)) != 0;
    // Bytes that are still there come before the news that the line has gone.
    if (hung_up && ((events & POLLIN) == 0 || BytesWaiting() <= 0)) return Readiness::kGone;
    if (happened != 0) return Readiness::kReady;
    return Readiness::kMaskChanged;
  }
}

}  // namespace ipodcomm::platform
