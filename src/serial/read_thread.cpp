// SPDX-License-Identifier: MIT
// CIpodSerial: the port read thread. The restart of the driver at its end is in driver_restart.cpp.
#include "ipodcomm/CIpodSerial.h"
#include "platform/services.h"

using ipodcomm::Departure;
using ipodcomm::LockScope;

namespace {

// One byte at a time with a pause after each: deliberate, though it limits the read rate.
constexpr DWORD kTurnPauseMs = 2;
constexpr DWORD kFailedReadPauseMs = 50;
constexpr DWORD kExitCode = 1;

}  // namespace

unsigned long WINAPI CIpodSerial::PortReadThread(void* object) {
  auto* serial = static_cast<CIpodSerial*>(object);
  // Open entered the lifeline for this thread, so the object is still there.
  const std::shared_ptr<Lifeline> lifeline = serial->lifeline_.shared();
  unsigned generation = 0;
  if (!lifeline->Inherit(&generation)) return kExitCode;
  // Null in a thread of the host's own.
  const std::shared_ptr<Departure> departure = serial->departure_;
  const auto leave = [&departure] {
    if (departure) departure->Leave();
  };

  bool reading = serial->BeginReading();
  while (reading) {
    const unsigned long pause_ms = serial->ReadTurn();
    const HANDLE driver = serial->driver_;
    lifeline->Leave();
    Sleep(pause_ms);
    if (!lifeline->Enter(generation)) {
      leave();
      // A thread that a later Open turned away leaves port and driver to that one's thread.
      if (lifeline->gone()) RestartDriver(serial, *lifeline, driver);
      return kExitCode;
    }
    reading = serial->KeepReading();
  }
  serial->EndReading();
  const HANDLE driver = serial->driver_;
  lifeline->Leave();
  leave();
  RestartDriver(serial, *lifeline, driver);
  return kExitCode;
}

bool CIpodSerial::BeginReading() {
  assembler_.Reset();
  bool running = false;
  {
    const LockScope lock(state_lock_);
    running = running_ != 0;
    thread_running_ = 1;
  }
  if (port_ == INVALID_HANDLE_VALUE) return false;
  SetCommMask(port_, EV_RXCHAR | EV_RXFLAG);
  return running && port_ != INVALID_HANDLE_VALUE;
}

// Reads at most one byte. Returns the pause that follows, in milliseconds.
unsigned long CIpodSerial::ReadTurn() {
  unsigned char byte = 0;
  DWORD read = 0;
  {
    const LockScope lock(port_lock_);
    if (ReadFile(port_, &byte, 1, &read, nullptr) == FALSE) return kFailedReadPauseMs;
  }
  if (read == 0) return kTurnPauseMs;
  const bool complete = assembler_.Feed(byte);
  packet_type_ = assembler_.type();
  if (complete) QueueAssembledFrame();
  return kTurnPauseMs;
}

bool CIpodSerial::KeepReading() {
  bool running = false;
  {
    const LockScope lock(state_lock_);
    running = running_ != 0;
  }
  return running && port_ != INVALID_HANDLE_VALUE;
}

void CIpodSerial::EndReading() {
  const LockScope lock(state_lock_);
  received_.clear();
  thread_running_ = 0;
}
