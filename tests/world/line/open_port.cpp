// SPDX-License-Identifier: MIT
// Reads, writes and waits in virtual time.
#include "world/line/open_port.h"

#include <utility>

namespace ipodcomm::virtual_platform {
namespace {

constexpr DWORD kNoLimit = 0xFFFFFFFF;  // the time-out fields' special value
constexpr DWORD kReceiveOverflow = 0x0001;

std::int64_t After(std::int64_t start_us, DWORD duration_ms) {
  return start_us + static_cast<std::int64_t>(duration_ms) * kMillisecond;
}

}  // namespace

SerialPort::SerialPort(std::string port_name, SerialLine& line, const Clock& clock,
                       Scheduler& scheduler)
    : Object(std::move(port_name)), line_(line), clock_(clock), scheduler_(scheduler) {
  state.DCBlength = sizeof state;
  state.BaudRate = 9600;
  state.fBinary = 1;
  state.ByteSize = 8;
  line_.port_ = this;
  line_.NoteSettings(state);
}

void SerialPort::Close() {
  closed_ = true;
  line_.port_ = nullptr;
  scheduler_.WakeAll(*this);
}

DWORD SerialPort::SetState(const DCB& wanted) {
  const bool possible = wanted.DCBlength == sizeof wanted && wanted.BaudRate > 0 &&
                        wanted.ByteSize >= 5 && wanted.ByteSize <= 8 && wanted.Parity <= 4 &&
                        wanted.StopBits <= TWOSTOPBITS;
  if (!possible) return ERROR_INVALID_PARAMETER;
  state = wanted;
  line_.NoteSettings(state);
  return ERROR_SUCCESS;
}

void SerialPort::SetMask(DWORD events) {
  mask_ = events;
  events_ = 0;
  ++masks_set_;
  scheduler_.WakeAll(*this);
}

DWORD SerialPort::WaitEvent(DWORD* events) {
  *events = 0;
  if (mask_ == 0 || waiting_) return ERROR_INVALID_PARAMETER;
  struct Waiting {
    explicit Waiting(bool& port_waiting) : waiting(port_waiting) { waiting = true; }
    ~Waiting() { waiting = false; }
    bool& waiting;
  };
  DWORD code = ERROR_SUCCESS;
  {
    const Waiting waiting(waiting_);
    code = AwaitEvent();
  }
  if (code == ERROR_SUCCESS) *events = std::exchange(events_, 0);
  return code;
}

DWORD SerialPort::AwaitEvent() {
  const unsigned masks_set = masks_set_;
  while (events_ == 0) {
    if (const DWORD code = Condition()) return code;
    if (!scheduler_.Block({"WaitCommEvent", this, kNever, false})) return ERROR_OPERATION_ABORTED;
    if (masks_set != masks_set_) return ERROR_SUCCESS;
  }
  return ERROR_SUCCESS;
}

DWORD SerialPort::Read(std::uint8_t* buffer, std::size_t count, std::size_t* read) {
  const std::int64_t start_us = clock_.now_us();
  const unsigned aborted = reads_aborted_;
  std::int64_t last_byte_us = start_us;
  *read = 0;
  for (;;) {
    DWORD code = Condition();
    if (code == ERROR_SUCCESS && aborted != reads_aborted_) code = ERROR_OPERATION_ABORTED;
    // Bytes taken before the trouble are not lost.
    if (code != ERROR_SUCCESS) return *read > 0 ? ERROR_SUCCESS : code;
    while (*read < count && !received_.empty()) {
      buffer[(*read)++] = received_.front();
      received_.pop_front();
      last_byte_us = clock_.now_us();
    }
    if (*read == count) return ERROR_SUCCESS;
    const std::int64_t deadline_us = ReadDeadline(start_us, last_byte_us, count, *read > 0);
    if (deadline_us <= clock_.now_us()) return ERROR_SUCCESS;
    const bool woken = scheduler_.Block({"ReadFile", this, deadline_us, false});
    if (!woken && deadline_us == kNever) return ERROR_OPERATION_ABORTED;
  }
}

std::int64_t SerialPort::ReadDeadline(std::int64_t start_us, std::int64_t last_byte_us,
                                      std::size_t count, bool any_byte) const {
  const DWORD interval_ms = timeouts.ReadIntervalTimeout;
  const DWORD multiplier_ms = timeouts.ReadTotalTimeoutMultiplier;
  const DWORD constant_ms = timeouts.ReadTotalTimeoutConstant;
  if (interval_ms == kNoLimit) {
    // Take what is there; with a multiplier of no limit, wait for a first byte.
    const bool waits = multiplier_ms == kNoLimit && !any_byte;
    return waits ? After(start_us, constant_ms) : start_us;
  }
  std::int64_t deadline_us = kNever;
  if (multiplier_ms != 0 || constant_ms != 0) {
    deadline_us = After(start_us, multiplier_ms * count + constant_ms);
  }
  if (interval_ms != 0 && any_byte) {
    deadline_us = std::min(deadline_us, After(last_byte_us, interval_ms));
  }
  return deadline_us;
}

DWORD SerialPort::Write(const std::uint8_t* data, std::size_t count, std::size_t* written) {
  const std::int64_t deadline_us = WriteDeadline(clock_.now_us(), count);
  const unsigned aborted = writes_aborted_;
  *written = 0;
  for (;;) {
    if (const DWORD code = Condition()) return code;
    if (aborted != writes_aborted_) return ERROR_OPERATION_ABORTED;
    while (*written < count && line_.to_device_.on_the_way() < SerialLine::kTransmitQueueBytes) {
      line_.NoteByte(capture::Direction::kSent, data[*written]);
      line_.to_device_.Send(data[(*written)++], clock_.now_us());
    }
    if (*written == count || deadline_us <= clock_.now_us()) return ERROR_SUCCESS;
    const bool woken = scheduler_.Block({"WriteFile", this, deadline_us, false});
    if (!woken && deadline_us == kNever) return ERROR_OPERATION_ABORTED;
  }
}

std::int64_t SerialPort::WriteDeadline(std::int64_t start_us, std::size_t count) const {
  const DWORD multiplier_ms = timeouts.WriteTotalTimeoutMultiplier;
  const DWORD constant_ms = timeouts.WriteTotalTimeoutConstant;
  if (multiplier_ms == 0 && constant_ms == 0) return kNever;
  return After(start_us, multiplier_ms * count + constant_ms);
}

void SerialPort::Purge(DWORD flags) {
  if ((flags & PURGE_RXCLEAR) != 0) received_.clear();
  if ((flags & PURGE_TXCLEAR) != 0) line_.to_device_.ForgetWaiting(clock_.now_us());
  if ((flags & PURGE_RXABORT) != 0) ++reads_aborted_;
  if ((flags & PURGE_TXABORT) != 0) ++writes_aborted_;
  scheduler_.WakeAll(*this);
}

COMSTAT SerialPort::Queues() const { return {0, received_.size(), line_.to_device_.on_the_way()}; }

DWORD SerialPort::ReadErrors() { return std::exchange(errors_, 0); }

void SerialPort::ByteArrived(std::uint8_t byte) {
  if (received_.size() == SerialLine::kReceiveQueueBytes) {
    errors_ |= kReceiveOverflow;
    return;
  }
  line_.NoteByte(capture::Direction::kReceived, byte);
  received_.push_back(byte);
  events_ |= mask_ & EV_RXCHAR;
  if (byte == static_cast<std::uint8_t>(state.EvtChar)) events_ |= mask_ & EV_RXFLAG;
  scheduler_.WakeAll(*this);
}

void SerialPort::LineChanged() { scheduler_.WakeAll(*this); }

DWORD SerialPort::Condition() const {
  if (closed_) return ERROR_OPERATION_ABORTED;  // it was open when the call began
  return line_.vanished_ ? ERROR_GEN_FAILURE : ERROR_SUCCESS;
}

}  // namespace ipodcomm::virtual_platform
