// SPDX-License-Identifier: MIT
// The serial port services.
#include "platform/common/utf8.h"
#include "world/line/open_port.h"
#include "world/services/service.h"

using namespace ipodcomm::virtual_platform;

namespace {

// The line behind a port's name, unless it cannot be opened.
SerialLine* LineToOpen(WorldState& world, const wchar_t* name, DWORD* code) {
  SerialLine* line = world.lines.Find(ipodcomm::platform::WideToUtf8(name));
  *code = line == nullptr || line->vanished() ? ERROR_FILE_NOT_FOUND
          : line->open()                      ? ERROR_ACCESS_DENIED
                                              : ERROR_SUCCESS;
  return line;
}

// One call on a port, recorded with the port's name before its arguments.
class PortCall : public Service {
 public:
  PortCall(ServiceId id, HANDLE handle) : PortCall(id, handle, [] { return ""; }) {}
  template <class Render>
  PortCall(ServiceId id, HANDLE handle, Render arguments) : Service(id), handle_(handle) {
    Arguments([&] {
      const std::string rest = arguments();
      return rest.empty() ? Name(handle) : List({Name(handle), rest});
    });
  }

  // The open port; null, with the failure recorded, when the call is told to fail or the handle is
  // no open port's.
  std::shared_ptr<SerialPort> Port() {
    if (ToldToFail()) return nullptr;
    auto port = (*this)->Find<SerialPort>(handle_);
    if (port == nullptr) Fails(ERROR_INVALID_HANDLE, FALSE);
    return port;
  }

 private:
  const HANDLE handle_;
};

std::string Described(const DCB* state) {
  if (state == nullptr) return "null";
  return List({Number(state->BaudRate) + " baud", Number(state->ByteSize) + " bits",
               "parity " + Number(state->Parity), "stop bits code " + Number(state->StopBits)});
}

std::string Described(const COMMTIMEOUTS* timeouts) {
  if (timeouts == nullptr) return "null";
  return List({Number(timeouts->ReadIntervalTimeout), Number(timeouts->ReadTotalTimeoutMultiplier),
               Number(timeouts->ReadTotalTimeoutConstant),
               Number(timeouts->WriteTotalTimeoutMultiplier),
               Number(timeouts->WriteTotalTimeoutConstant)});
}

}  // namespace

HANDLE CreateFileW(const wchar_t* name, DWORD access, DWORD share, SECURITY_ATTRIBUTES* security,
                   DWORD disposition, DWORD flags, HANDLE file_template) {
  Service call(ServiceId::kCreateFileW);
  call.Arguments([&] { return Quoted(name); });
  if (call.ToldToFail()) return INVALID_HANDLE_VALUE;
  const bool usable = name != nullptr && access == (GENERIC_READ | GENERIC_WRITE) && share == 0 &&
                      security == nullptr && disposition == OPEN_EXISTING && flags == 0 &&
                      file_template == nullptr;
  if (!usable) return call.Fails(ERROR_INVALID_PARAMETER, INVALID_HANDLE_VALUE);
  DWORD code = ERROR_SUCCESS;
  SerialLine* line = LineToOpen(*call.operator->(), name, &code);
  if (code != ERROR_SUCCESS) return call.Fails(code, INVALID_HANDLE_VALUE);
  const auto port =
      std::make_shared<SerialPort>(call->names.Next("port"), *line, call->clock, call.scheduler());
  const HANDLE handle = call.Open(port);
  if (handle == nullptr) port->Close();
  return handle != nullptr ? handle : INVALID_HANDLE_VALUE;
}

BOOL CloseHandle(HANDLE handle) {
  Service call(ServiceId::kCloseHandle);
  call.Arguments([&] { return call.Name(handle); });
  if (call.ToldToFail()) return FALSE;
  const auto object = call->handles.Remove(handle);
  if (object == nullptr) return call.FailsToGiveBack(call.Name(handle), FALSE);
  call->names.Closed(handle);
  if (const auto port = std::dynamic_pointer_cast<SerialPort>(object)) port->Close();
  return call.Succeeds(ERROR_SUCCESS);
}

BOOL GetCommState(HANDLE port, DCB* state) {
  PortCall call(ServiceId::kGetCommState, port);
  const auto target = call.Port();
  if (target == nullptr) return FALSE;
  if (state == nullptr) return call.Fails(ERROR_INVALID_PARAMETER, FALSE);
  *state = target->state;
  return call.Succeeds(ERROR_SUCCESS);
}

BOOL SetCommState(HANDLE port, DCB* state) {
  PortCall call(ServiceId::kSetCommState, port, [&] { return Described(state); });
  const auto target = call.Port();
  if (target == nullptr) return FALSE;
  return call.Succeeds(state == nullptr ? ERROR_INVALID_PARAMETER : target->SetState(*state));
}

BOOL GetCommTimeouts(HANDLE port, COMMTIMEOUTS* timeouts) {
  PortCall call(ServiceId::kGetCommTimeouts, port);
  const auto target = call.Port();
  if (target == nullptr) return FALSE;
  if (timeouts == nullptr) return call.Fails(ERROR_INVALID_PARAMETER, FALSE);
  *timeouts = target->timeouts;
  return call.Succeeds(ERROR_SUCCESS);
}

BOOL SetCommTimeouts(HANDLE port, COMMTIMEOUTS* timeouts) {
  PortCall call(ServiceId::kSetCommTimeouts, port, [&] { return Described(timeouts); });
  const auto target = call.Port();
  if (target == nullptr) return FALSE;
  if (timeouts == nullptr) return call.Fails(ERROR_INVALID_PARAMETER, FALSE);
  target->timeouts = *timeouts;
  return call.Succeeds(ERROR_SUCCESS);
}

BOOL SetCommMask(HANDLE port, DWORD events) {
  PortCall call(ServiceId::kSetCommMask, port, [&] { return Number(events); });
  const auto target = call.Port();
  if (target == nullptr) return FALSE;
  target->SetMask(events);
  return call.Succeeds(ERROR_SUCCESS);
}

BOOL WaitCommEvent(HANDLE port, DWORD* events, OVERLAPPED* overlapped) {
  PortCall call(ServiceId::kWaitCommEvent, port);
  const auto target = call.Port();
  if (target == nullptr) return FALSE;
  if (events == nullptr || overlapped != nullptr) {
    return call.Fails(ERROR_INVALID_PARAMETER, FALSE);
  }
  const DWORD code = target->WaitEvent(events);
  if (code != ERROR_SUCCESS) return call.Fails(code, FALSE);
  return call.Returns(TRUE, [&] { return Number(*events); });
}

BOOL ReadFile(HANDLE port, void* buffer, DWORD count, DWORD* read, OVERLAPPED* overlapped) {
  PortCall call(ServiceId::kReadFile, port, [&] { return Number(count); });
  if (read != nullptr) *read = 0;
  const auto target = call.Port();
  if (target == nullptr) return FALSE;
  if ((buffer == nullptr && count != 0) || read == nullptr || overlapped != nullptr) {
    return call.Fails(ERROR_INVALID_PARAMETER, FALSE);
  }
  std::size_t taken = 0;
  const DWORD code = target->Read(static_cast<std::uint8_t*>(buffer), count, &taken);
  *read = taken;
  CallerMemoryWritten(buffer, taken);
  CallerMemoryWritten(read, sizeof *read);
  if (code != ERROR_SUCCESS) return call.Fails(code, FALSE);
  return call.Returns(TRUE, [&] { return Hex(buffer, taken); });
}

BOOL WriteFile(HANDLE port, const void* data, DWORD count, DWORD* written, OVERLAPPED* overlapped) {
  PortCall call(ServiceId::kWriteFile, port,
                [&] { return data == nullptr ? "null" : Hex(data, count); });
  if (written != nullptr) *written = 0;
  const auto target = call.Port();
  if (target == nullptr) return FALSE;
  if ((data == nullptr && count != 0) || written == nullptr || overlapped != nullptr) {
    return call.Fails(ERROR_INVALID_PARAMETER, FALSE);
  }
  CallerMemoryRead(data, count);
  std::size_t sent = 0;
  const DWORD code = target->Write(static_cast<const std::uint8_t*>(data), count, &sent);
  *written = sent;
  CallerMemoryWritten(written, sizeof *written);
  if (code != ERROR_SUCCESS) return call.Fails(code, FALSE);
  return call.Returns(TRUE, [&] { return Number(sent); });
}

BOOL PurgeComm(HANDLE port, DWORD flags) {
  PortCall call(ServiceId::kPurgeComm, port, [&] { return Number(flags); });
  const auto target = call.Port();
  if (target == nullptr) return FALSE;
  target->Purge(flags);
  return call.Succeeds(ERROR_SUCCESS);
}

BOOL ClearCommError(HANDLE port, DWORD* errors, COMSTAT* status) {
  PortCall call(ServiceId::kClearCommError, port);
  if (errors != nullptr) *errors = 0;
  const auto target = call.Port();
  if (target == nullptr) return FALSE;
  const DWORD seen = target->ReadErrors();
  const COMSTAT queues = target->Queues();
  if (errors != nullptr) *errors = seen;
  if (status != nullptr) *status = queues;
  return call.Returns(TRUE, [&] { return Number(queues.cbInQue) + " waiting"; });
}

BOOL ClearCommBreak(HANDLE port) {
  PortCall call(ServiceId::kClearCommBreak, port);
  const auto target = call.Port();
  return target != nullptr ? call.Succeeds(ERROR_SUCCESS) : FALSE;
}
