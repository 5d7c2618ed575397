// SPDX-License-Identifier: MIT
// An open serial port: settings, receive queue, and the calls that wait on it.
#pragma once

#include <deque>
#include <string>

#include "platform/services.h"
#include "world/line/serial_line.h"
#include "world/threads/object.h"
#include "world/threads/scheduler.h"

namespace ipodcomm::virtual_platform {

/// Operations return 0 or the system's code.
class SerialPort : public Object {
 public:
  SerialPort(std::string name, SerialLine& line, const Clock& clock, Scheduler& scheduler);
  /// Ends what is in progress; the line is free for another port.
  void Close();

  DWORD SetState(const DCB& wanted);
  void SetMask(DWORD events);
  DWORD WaitEvent(DWORD* events);
  DWORD Read(std::uint8_t* buffer, std::size_t count, std::size_t* read);
  DWORD Write(const std::uint8_t* data, std::size_t count, std::size_t* written);
  void Purge(DWORD flags);
  COMSTAT Queues() const;
  /// Error flags since the last call.
  DWORD ReadErrors();

  /// For the line.
  void ByteArrived(std::uint8_t byte);
  void LineChanged();

  DCB state = {};
  COMMTIMEOUTS timeouts = {};

 private:
  DWORD Condition() const;
  DWORD AwaitEvent();
  std::int64_t ReadDeadline(std::int64_t start_us, std::int64_t last_byte_us, std::size_t count,
                            bool any_byte) const;
  std::int64_t WriteDeadline(std::int64_t start_us, std::size_t count) const;

  SerialLine& line_;
  const Clock& clock_;
  Scheduler& scheduler_;
  std::deque<std::uint8_t> received_;
  DWORD mask_ = 0;
  DWORD events_ = 0;  // seen since they were last reported
  DWORD errors_ = 0;
  unsigned masks_set_ = 0;
  unsigned reads_aborted_ = 0;
  unsigned writes_aborted_ = 0;
  bool waiting_ = false;  // in WaitEvent
  bool closed_ = false;
};

}  // namespace ipodcomm::virtual_platform
