// SPDX-License-Identifier: MIT
// ipodserial: opening and closing, raw writes, and purging. Frames are in frame_io.cpp.
#include <cwchar>
#include <iterator>

#include "ipodcomm/ipodserial.h"
#include "platform/services.h"
#include "session/keep_going.h"

namespace {

constexpr wchar_t kDefaultName[] = L"COM2:";
constexpr DWORD kErrorTextCapacity = 256;

void ClearFlags(DCB* state) {
  state->fParity = 0;
  state->fOutxCtsFlow = 0;
  state->fOutxDsrFlow = 0;
  state->fDtrControl = 0;
  state->fDsrSensitivity = 0;
  state->fTXContinueOnXoff = 0;
  state->fOutX = 0;
  state->fInX = 0;
  state->fErrorChar = 0;
  state->fNull = 0;
  state->fRtsControl = 0;
  state->fAbortOnError = 0;
}

void ClearCharacters(DCB* state) {
  state->XonChar = 0;
  state->XoffChar = 0;
  state->ErrorChar = 0;
  state->EofChar = 0;
  state->EvtChar = 0;
}

}  // namespace

// The formatter may be out of memory, and the name has to last as long as the object.
ipodserial::ipodserial() : port_(INVALID_HANDLE_VALUE) {
  if (wsprintfW(port_name_, kDefaultName) != 0) return;
  std::wmemcpy(port_name_, kDefaultName, std::size(kDefaultName));
}

ipodserial::ipodserial(const ipodserial& other) = default;

ipodserial& ipodserial::operator=(const ipodserial& other) = default;

// A port that is open already is forgotten, not closed: copies that hosts in the field made share
// its handle. Nor is the name stored: the same hosts get back to "COM2:" by opening without one.
int ipodserial::openport(const wchar_t* name, int baud_rate) {
  baud_rate_ = baud_rate;
  port_ = CreateFileW(name, GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  if (port_ == INVALID_HANDLE_VALUE) return 0;
  if (!ConfigureLine() || !ConfigureTimeouts()) {
    closeport();
    return 0;
  }
  PurgeComm(port_, PURGE_TXCLEAR | PURGE_RXCLEAR);
  answered_ = 0;
  byte_wise_ = 0;
  return 1;
}

int ipodserial::openport() { return openport(port_name_, baud_rate_); }

bool ipodserial::ConfigureLine() {
  GetCommState(port_, &port_state_);
  ClearFlags(&port_state_);
  ClearCharacters(&port_state_);
  port_state_.fBinary = 1;
  port_state_.fParity = (parity_ & 1) != 0 ? 1 : 0;
  port_state_.BaudRate = static_cast<std::uint32_t>(baud_rate_);
  port_state_.ByteSize = static_cast<std::uint8_t>(data_bits_);
  port_state_.Parity = static_cast<std::uint8_t>(parity_);
  // The field's code 1 means one and a half stop bits, not one. Docks in the field are driven so.
  port_state_.StopBits = static_cast<std::uint8_t>(stop_bits_);
  SetCommMask(port_, EV_RXCHAR);
  return SetCommState(port_, &port_state_) != FALSE;
}

// Where the host has a say a read waits for a slice, and is repeated.
bool ipodserial::ConfigureTimeouts() {
  const bool sliced = keep_going_.asks();
  GetCommTimeouts(port_, &port_timeouts_);
  port_timeouts_.ReadIntervalTimeout = timeout_ms_;
  port_timeouts_.ReadTotalTimeoutMultiplier = sliced ? 0 : timeout_ms_;
  port_timeouts_.ReadTotalTimeoutConstant = sliced ? ipodcomm::kSliceMs : timeout_ms_;
  port_timeouts_.WriteTotalTimeoutMultiplier = 0;
  port_timeouts_.WriteTotalTimeoutConstant = 0;
  return SetCommTimeouts(port_, &port_timeouts_) != FALSE;
}

int ipodserial::SetKeepGoing(bool (*keep_going)(void* context), void* context) {
  const ipodcomm::KeepGoing before = keep_going_;
  keep_going_ = {keep_going, context};
  const bool taken = port_ == INVALID_HANDLE_VALUE || ConfigureTimeouts();
  if (!taken) keep_going_ = before;
  return taken ? 1 : 0;
}

int ipodserial::closeport() {
  if (port_ == INVALID_HANDLE_VALUE) return 1;
  SetCommMask(port_, 0);
  PurgeComm(port_, PURGE_TXCLEAR | PURGE_RXCLEAR);
  CloseHandle(port_);
  port_ = INVALID_HANDLE_VALUE;
  return 1;
}

unsigned long ipodserial::writeport(unsigned char* bytes, int count) {
  if (port_ == INVALID_HANDLE_VALUE || bytes == nullptr || count < 0) return 0;
  DWORD written = 0;
  const bool accepted =
      WriteFile(port_, bytes, static_cast<DWORD>(count), &written, nullptr) != FALSE;
  return accepted ? written : 0;
}

void ipodserial::purgerx() { PurgeComm(port_, PURGE_RXCLEAR); }

void ipodserial::purgetx() { PurgeComm(port_, PURGE_TXCLEAR); }

void ipodserial::Error() {
  const DWORD code = GetLastError();
  wchar_t text[kErrorTextCapacity] = {};
  FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM, nullptr, code, 0, text, kErrorTextCapacity, nullptr);
  NKDbgPrintfW(L"Error in Serial Read Number %d, %s\n", static_cast<int>(code), text);
}
