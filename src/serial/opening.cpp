// SPDX-License-Identifier: MIT
// CIpodSerial: construction, copying, opening and closing "COM2:".
#include "ipodcomm/CIpodSerial.h"
#include "ipodcomm/TraceLog.h"
#include "platform/services.h"
#include "serial/line_settings.h"

using ipodcomm::LifelineHold;
using ipodcomm::LockScope;

namespace {

constexpr DWORD kTerminatedExitCode = 0xFFFFFFFF;

}  // namespace

CIpodSerial::CIpodSerial() {
  packet_event_ = CreateEventW(nullptr, FALSE, FALSE, L"IPOD_PORT_EVENT_NAME");
}

CIpodSerial::CIpodSerial(const CIpodSerial& other)
    : CIpodSerial(other, LifelineHold(*other.lifeline_)) {}

CIpodSerial::CIpodSerial(const CIpodSerial& other, const LifelineHold& /*source_held*/)
    : port_(other.port_),
      read_thread_(other.read_thread_),
      packet_event_(other.packet_event_),
      running_(other.running_),
      thread_running_(other.thread_running_),
      assembler_(other.assembler_),
      received_(other.CopyOfQueue()),
      limit_(other.limit_),
      staging_(other.staging_),
      driver_(other.driver_),
      pace_(other.pace_),
      quiet_pause_(other.quiet_pause_),
      status_(other.status_),
      window_(other.window_),
      packet_type_(other.packet_type_),
      thread_owner_(other.thread_owner_),
      departure_(other.departure_) {}

CIpodSerial& CIpodSerial::operator=(const CIpodSerial& other) {
  if (this == &other) return *this;
  const LifelineHold own_held(*lifeline_);
  const LifelineHold source_held(*other.lifeline_);
  port_ = other.port_;
  read_thread_ = other.read_thread_;
  packet_event_ = other.packet_event_;
  running_ = other.running_;
  thread_running_ = other.thread_running_;
  assembler_ = other.assembler_;
  std::list<tagSERIAL_PACKET> received = other.CopyOfQueue();
  {
    // A session's routing thread may be looking.
    const LockScope lock(state_lock_);
    received_.swap(received);
    limit_ = other.limit_;
  }
  staging_ = other.staging_;
  driver_ = other.driver_;
  quiet_pause_ = other.quiet_pause_;
  pace_ = other.pace_;
  status_ = other.status_;
  window_ = other.window_;
  packet_type_ = other.packet_type_;
  thread_owner_ = other.thread_owner_;
  departure_ = other.departure_;
  return *this;
}

CIpodSerial::~CIpodSerial() {
  lifeline_->Close();
  if (pace_.pause_grows()) quiet_pause_.End();
  lifeline_->End();
  window_ = nullptr;
  state_lock_.Delete();
  CloseHandle(packet_event_);
  packet_event_ = INVALID_HANDLE_VALUE;
  Close();
  port_lock_.Delete();
}

long CIpodSerial::Open(bool start_read_thread) {
  status_ = 0;
  Close();
  DismissReadThread();
  ClosePort();
  // A leave without an enter. It does nothing unless this very thread still holds the lock, which
  // is free afterwards; hosts that open again to recover rely on that.
  state_lock_.Leave();

  port_ =
      CreateFileW(L"COM2:", GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  if (port_ == INVALID_HANDLE_VALUE) return FailOpen(L"Error opening iPod serial port");
  DCB settings = ipodcomm::LineSettings();
  if (SetCommState(port_, &settings) == FALSE) return FailOpen(L"Error setting comm state");
  COMMTIMEOUTS timeouts = ipodcomm::LineTimeouts();
  if (SetCommTimeouts(port_, &timeouts) == FALSE) return FailOpen(L"Error setting comm timeouts");

  pace_.PortOpened();
  byte_wise_ = 0;
  running_ = 1;
  SetCommMask(port_, EV_RXCHAR | EV_RXFLAG);
  PurgeComm(port_, PURGE_TXABORT | PURGE_RXABORT | PURGE_TXCLEAR | PURGE_RXCLEAR);
  if (start_read_thread && !StartReadThread()) {
    running_ = 0;
    return FailOpen(L"Error creating port read thread");
  }
  return ERROR_SUCCESS;
}

void CIpodSerial::Close() {
  {
    const LockScope lock(state_lock_);
    running_ = 0;
  }
  ClosePort();
}

void CIpodSerial::ClosePort() {
  const HANDLE port = port_.exchange(INVALID_HANDLE_VALUE);
  if (port != INVALID_HANDLE_VALUE) CloseHandle(port);
}

long CIpodSerial::FailOpen(const wchar_t* message) {
  const DWORD code = GetLastError();
  CKORVATrace::LogSoftwareError(L"CIpodSerial::Open", message);
  return static_cast<long>(code);
}

// Two threads must never read one port. An earlier thread is first turned away from this object,
// also one that has not reached its loop yet, and is ended if it is still marked running. Claimed
// before, it is then in a sleep, holding no lock, and not on its way out. One that cannot be
// claimed has left its loop, whatever a copy of its object remembers.
void CIpodSerial::DismissReadThread() {
  const bool claimed = departure_ != nullptr && departure_->Claim();
  if (thread_owner_) thread_owner_->Dismiss();
  lifeline_->Dismiss();
  const bool ended = claimed && thread_running_ != 0 && read_thread_ != INVALID_HANDLE_VALUE &&
                     TerminateThread(read_thread_, kTerminatedExitCode) != FALSE;
  if (claimed && !ended) departure_->Release();
  departure_.reset();
  if (read_thread_ == INVALID_HANDLE_VALUE) return;
  CloseHandle(read_thread_);
  read_thread_ = INVALID_HANDLE_VALUE;
}

bool CIpodSerial::StartReadThread() {
  departure_ = ipodcomm::Departure::Make();
  if (departure_ == nullptr || lifeline_->gone()) {
    departure_.reset();
    SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    return false;
  }
  lifeline_->Begin();
  const HANDLE thread = CreateThread(nullptr, 0, PortReadThread, this, 0, nullptr);
  if (thread == nullptr) {
    lifeline_->Abandon();
    departure_.reset();
    return false;
  }
  read_thread_ = thread;
  thread_owner_ = lifeline_.shared();
  return true;
}

void CIpodSerial::SetWindowHand(HWND window) { window_ = window; }
