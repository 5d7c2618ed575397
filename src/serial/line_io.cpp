// SPDX-License-Identifier: MIT
// CIpodSerial: writing frames, and the raw byte-level operations.
#include "ipodcomm/CIpodSerial.h"
#include "platform/services.h"

using ipodcomm::LockScope;

namespace {

constexpr DWORD kRawPauseMs = 10;

bool WriteBytes(HANDLE port, const unsigned char* data, unsigned long count) {
  DWORD written = 0;
  return WriteFile(port, data, count, &written, nullptr) != FALSE;
}

unsigned long BytesWaiting(HANDLE port) {
  DWORD errors = 0;
  COMSTAT status = {};
  ClearCommError(port, &errors, &status);
  return status.cbInQue;
}

void PrintWriteError() { NKDbgPrintfW(L"Error %d writing serial port\n", GetLastError()); }

}  // namespace

// The pause is ready before it is asked for.
void CIpodSerial::ChoosePace(const tagIPOD_CONDUCT& conduct) {
  if (conduct.quiet_read_pause_ms > conduct.empty_read_pause_ms) quiet_pause_.Prepare();
  pace_.Choose(conduct);
}

long CIpodSerial::WritePacket(unsigned char* data, unsigned long length) {
  if (port_ == INVALID_HANDLE_VALUE) return ERROR_INVALID_HANDLE;
  if (length == 0) return ERROR_INSUFFICIENT_BUFFER;
  const long code = WriteFrame(data, length);
  if (pace_.pause_grows()) quiet_pause_.End();
  return code;
}

long CIpodSerial::WriteFrame(const unsigned char* data, unsigned long length) {
  const LockScope lock(port_lock_);
  pace_.FrameWritten();
  // The sync byte goes out alone and the iPod's receiver wakes up on it.
  if (const DWORD pause_ms = pace_.sync_pause_ms()) {
    if (!WriteBytes(port_, data, 1)) return static_cast<long>(GetLastError());
    Sleep(pause_ms);
    ++data;
    --length;
  }
  if (length != 0 && !WriteBytes(port_, data, length)) return static_cast<long>(GetLastError());
  return ERROR_SUCCESS;
}

bool CIpodSerial::WriteRawPacket(unsigned char* data, unsigned long length) {
  ClearCommBreak(port_);
  bool written = WriteBytes(port_, data, 1);
  if (!written) PrintWriteError();
  Sleep(kRawPauseMs);
  for (unsigned long i = 1; written && i < length; ++i) written = WriteBytes(port_, data + i, 1);
  // A failed first byte gives the line twice; readers of the debug output in the field expect it.
  if (!written) PrintWriteError();
  return written;
}

bool CIpodSerial::ReadRawPacket(unsigned char* buffer, unsigned long count,
                                unsigned long timeout_ms) {
  const DWORD start = GetTickCount();
  for (;;) {
    Sleep(kRawPauseMs);
    if (BytesWaiting(port_) >= count) break;
    if (static_cast<std::uint32_t>(GetTickCount() - start) >= timeout_ms) return false;
  }
  DWORD read = 0;
  return ReadFile(port_, buffer, count, &read, nullptr) != FALSE && read == count;
}

int CIpodSerial::WaitForData(int /*unused1*/, int /*unused2*/) {
  const unsigned long waiting = BytesWaiting(port_);
  if (waiting != 0) return static_cast<int>(waiting);
  DWORD events = 0;
  WaitCommEvent(port_, &events, nullptr);
  return (events & EV_RXCHAR) != 0 ? static_cast<int>(BytesWaiting(port_)) : 0;
}

void CIpodSerial::FlushRx() { PurgeComm(port_, PURGE_RXABORT | PURGE_RXCLEAR); }

void CIpodSerial::FlushTx() { PurgeComm(port_, PURGE_TXABORT | PURGE_TXCLEAR); }

int CIpodSerial::CheckReceiveData() { return BytesWaiting(port_) != 0 ? 1 : 0; }
