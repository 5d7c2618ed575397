// SPDX-License-Identifier: MIT
// CIpodSerial: the port read thread. The restart of the driver at its end is in driver_restart.cpp.
#include <algorithm>
#include <cstring>

#include "ipodcomm/CIpodSerial.h"
#include "ipodcomm/TraceLog.h"
#include "platform/services.h"

using ipodcomm::Departure;
using ipodcomm::LockScope;

namespace {

constexpr DWORD kExitCode = 1;
constexpr DWORD kMostBytesPerRead = 1024;
// Within a frame bytes follow each other; a slow adapter holds them back for some ten milliseconds.
constexpr std::uint32_t kLongestGapMs = 500;

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
    if (pause_ms != 0) Sleep(pause_ms);
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

// By default one byte at a time with a pause after each: deliberate, though it limits the read
// rate. Returns the pause that follows, in milliseconds. A pause that grows is taken here, inside
// the lifeline: its event is the object's.
unsigned long CIpodSerial::ReadTurn() {
  unsigned char bytes[kMostBytesPerRead];
  DWORD read = 0;
  DWORD quiet_ms = 0;
  bool told = true;
  {
    const LockScope lock(port_lock_);
    const DWORD wanted = BytesToRead(&told);
    if (wanted != 0 && ReadFile(port_, bytes, wanted, &read, nullptr) == FALSE) {
      return pace_.PauseAfterFailure();
    }
    if (read == 0) quiet_ms = pace_.PauseAfterNothing();
  }
  if (!told) ReadByteWise();
  if (read == 0) {
    GiveUpStalledFrame();
    if (!pace_.pause_grows()) return quiet_ms;
    quiet_pause_.Take(quiet_ms);
    return 0;
  }
  bytes_read_.fetch_add(static_cast<std::uint32_t>(read));
  if (pace_.rereads_damaged()) last_byte_ms_ = static_cast<std::uint32_t>(GetTickCount());
  FeedAssembler(bytes, read);
  return pace_.PauseAfterBytes();
}

// A read of several bytes asks for no more than the driver holds: it then never waits, and neither
// does whoever wants to write. Where the driver does not tell, one byte is asked for; when even
// that fails, the port is gone.
unsigned long CIpodSerial::BytesToRead(bool* told) const {
  if (pace_.bytes_per_read() == 1 || byte_wise_ != 0) return 1;
  DWORD errors = 0;
  COMSTAT status = {};
  *told = ClearCommError(port_, &errors, &status) != FALSE;
  return *told ? std::min<DWORD>({status.cbInQue, pace_.bytes_per_read(), kMostBytesPerRead}) : 1;
}

// The driver can be read, but does not tell what it holds.
void CIpodSerial::ReadByteWise() {
  byte_wise_ = 1;
  CKORVATrace::LogSoftwareError(L"CIpodSerial::PortReadThread",
                                L"Driver does not tell what it holds, reading byte by byte");
}

void CIpodSerial::FeedAssembler(const unsigned char* bytes, unsigned long count) {
  const unsigned char* const end = bytes + count;
  while (bytes != end) {
    const bool complete = assembler_.FeedRun(&bytes, end);
    packet_type_ = assembler_.type();
    if (complete) {
      QueueAssembledFrame();
    } else if (assembler_.given_up() != 0 && pace_.rereads_damaged()) {
      ReadGivenUpAgain();
    }
  }
}

// A byte that is lost or wrong can make a frame longer than it is; without a limit in time it would
// swallow answer after answer.
void CIpodSerial::GiveUpStalledFrame() {
  if (!pace_.rereads_damaged() || !assembler_.begun()) return;
  if (static_cast<std::uint32_t>(GetTickCount() - last_byte_ms_) < kLongestGapMs) return;
  assembler_.GiveUp();
  ReadGivenUpAgain();
}

// Each frame that is given up is no frame at its beginning, and perhaps one behind it. Each turn
// begins behind the beginning of the one before, so that this ends.
void CIpodSerial::ReadGivenUpAgain() {
  unsigned char bytes[kMostBytesPerRead];
  const std::uint32_t count = assembler_.given_up();
  std::memcpy(bytes, assembler_.data(), count);
  for (std::uint32_t next = 1; next < count;) {
    if (assembler_.Feed(bytes[next++])) QueueAssembledFrame();
    if (assembler_.given_up() != 0) next -= assembler_.given_up() - 1;
  }
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
