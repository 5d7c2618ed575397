// SPDX-License-Identifier: MIT
// An open serial port: a terminal in raw mode, a UART or a pseudo-terminal.
#pragma once

#include <condition_variable>
#include <memory>
#include <mutex>
#include <string>

#include "platform/capture/port_recorder.h"
#include "platform/posix/objects.h"
#include "platform/posix/thread_state.h"
#include "platform/services.h"

namespace ipodcomm::platform {

/// A file descriptor that closes itself.
class Descriptor {
 public:
  explicit Descriptor(int descriptor) : descriptor_(descriptor) {}
  Descriptor(Descriptor&& other) noexcept : descriptor_(other.Release()) {}
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  ~Descriptor() { Close(); }

  int get() const { return descriptor_; }
  bool is_open() const { return descriptor_ >= 0; }
  void Close();

 private:
  int Release();

  int descriptor_;
};

/// Members other than Open and Close return a code for GetLastError, 0 for success: 6 when the port
/// has been closed before the call, 995 when it is closed during it, 31 when the line has gone
/// away. Any thread may call any of them at any time.
class Port : public Closable {
 public:
  /// Null on failure, with the code in `*code`.
  static std::shared_ptr<Port> Open(const std::string& device, DWORD* code);

  Port(Descriptor line, bool exclusive);
  ~Port() override;

  /// Ends what is in progress, waits until that has left, and frees the device for others.
  void Close() override;

  DWORD GetSettings(DCB* settings);
  DWORD SetSettings(const DCB& settings);
  DWORD GetTimeouts(COMMTIMEOUTS* timeouts);
  DWORD SetTimeouts(const COMMTIMEOUTS& timeouts);
  DWORD SetEventMask(DWORD events);
  DWORD WaitEvent(DWORD* events);
  DWORD Read(void* buffer, DWORD count, DWORD* read);
  DWORD Write(const void* data, DWORD count, DWORD* written);
  DWORD Purge(DWORD flags);
  DWORD GetQueues(COMSTAT* status);
  DWORD EndBreak();

 private:
  class Use;
  enum class Readiness { kReady, kTimeout, kClosed, kMaskChanged, kGone };

  Readiness Await(short events, const Deadline& deadline, bool until_mask_changes = false);
  DWORD ReadUntil(void* buffer, DWORD count, DWORD* read, const COMMTIMEOUTS& timeouts);
  int BytesWaiting() const;
  DWORD LineGone(int error);
  void SetControlLines(const DCB& settings);

  Descriptor line_;
  const bool exclusive_;
  std::unique_ptr<PortRecorder> recorder_;  // null unless the line is recorded
  Descriptor closing_;                      // becomes readable, for good, when the port is closed
  Descriptor mask_changed_;                 // becomes readable when a wait in progress is to end
  std::mutex mutex_;                        // guards what follows
  std::condition_variable unused_;
  int users_ = 0;
  bool closed_ = false;
  bool waiting_ = false;
  DWORD event_mask_ = 0;
  DCB settings_;
  COMMTIMEOUTS timeouts_ = {};
};

}  // namespace ipodcomm::platform
