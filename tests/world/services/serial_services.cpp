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
  if (object == nullptr) return call.Fails(ERROR_INVALID_HANDLE, FALSE);
  call->names.Closed(handle);
  if (const auto port = std::dynamic_pointer_cast<SerialPort>(object)) port->Close();
  return call.Succeeds(ERROR_SUCCESS);
}

BOOL GetCommState(HANDLE port, DCB* state) {
  Service call(ServiceId::kGetCommState);
  call.Arguments([&] { return call.Name(port); });
  if (call.ToldToFail()) return FALSE;
  const auto target = call->Find<SerialPort>(port);
  if (target == nullptr) return call.Fails(ERROR_INVALID_HANDLE, FALSE);
  if (state == nullptr) return call.Fails(ERROR_INVALID_PARAMETER, FALSE);
  *state = target->state;
  return call.Succeeds(ERROR_SUCCESS);
}

BOOL SetCommState(HANDLE port, DCB* state) {
  Service call(ServiceId::kSetCommState);
  call.Arguments([&] {
    if (state == nullptr) return List({call.Name(port), "null"});
    return List({call.Name(port), Number(state->BaudRate) + " baud",
                 Number(state->ByteSize) + " bits", "parity " + Number(state->Parity),
                 "stop bits code " + Number(state->StopBits)});
  });
  if (call.ToldToFail()) return FALSE;
  const auto target = call->Find<SerialPort>(port);
  if (target == nullptr) return call.Fails(ERROR_INVALID_HANDLE, FALSE);
  return call.Succeeds(state == nullptr ? ERROR_INVALID_PARAMETER : target->SetState(*state));
}

BOOL GetCommTimeouts(HANDLE port, COMMTIMEOUTS* timeouts) {
  Service call(ServiceId::kGetCommTimeouts);
  call.Arguments([&] { return call.Name(port); });
  if (call.ToldToFail()) return FALSE;
  const auto target = call->Find<SerialPort>(port);
  if (target == nullptr) return call.Fails(ERROR_INVALID_HANDLE, FALSE);
  if (timeouts == nullptr) return call.Fails(ERROR_INVALID_PARAMETER, FALSE);
  *timeouts = target->timeouts;
  return call.Succeeds(ERROR_SUCCESS);
}

BOOL SetCommTimeouts(HANDLE port, COMMTIMEOUTS* timeouts) {
  Service call(ServiceId::kSetCommTimeouts);
  call.Arguments([&] {
    if (timeouts == nullptr) return List({call.Name(port), "null"});
    return List({call.Name(port), Number(timeouts->ReadIntervalTimeout),
                 Number(timeouts->ReadTotalTimeoutMultiplier),
                 Number(timeouts->ReadTotalTimeoutConstant),
                 Number(timeouts->WriteTotalTimeoutMultiplier),
                 Number(timeouts->WriteTotalTimeoutConstant)});
  });
  if (call.ToldToFail()) return FALSE;
  const auto target = call->Find<SerialPort>(port);
  if (target == nullptr) return call.Fails(ERROR_INVALID_HANDLE, FALSE);
  if (timeouts == nullptr) return call.Fails(ERROR_INVALID_PARAMETER, FALSE);
  target->timeouts = *timeouts;
  return call.Succeeds(ERROR_SUCCESS);
}

BOOL SetCommMask(HANDLE port, DWORD events) {
  Service call(ServiceId::kSetCommMask);
  call.Arguments([&] { return List({call.Name(port), Number(events)}); });
  if (call.ToldToFail()) return FALSE;
  const auto target = call->Find<SerialPort>(port);
  if (target == nullptr) return call.Fails(ERROR_INVALID_HANDLE, FALSE);
  target->SetMask(events);
  return call.Succeeds(ERROR_SUCCESS);
}

BOOL WaitCommEvent(HANDLE port, DWORD* events, OVERLAPPED* overlapped) {
  Service call(ServiceId::kWaitCommEvent);
  call.Arguments([&] { return call.Name(port); });
  if (call.ToldToFail()) return FALSE;
  const auto target = call->Find<SerialPort>(port);
  if (target == nullptr) return call.Fails(ERROR_INVALID_HANDLE, FALSE);
  if (events == nullptr || overlapped != nullptr) {
    return call.Fails(ERROR_INVALID_PARAMETER, FALSE);
  }
  const DWORD code = target->WaitEvent(events);
  if (code != ERROR_SUCCESS) return call.Fails(code, FALSE);
  return call.Returns(TRUE, [&] { return Number(*events); });
}

BOOL ReadFile(HANDLE port, void* buffer, DWORD count, DWORD* read, OVERLAPPED* overlapped) {
  Service call(ServiceId::kReadFile);
  call.Arguments([&] { return List({call.Name(port), Number(count)}); });
  if (read != nullptr) *read = 0;
  if (call.ToldToFail()) return FALSE;
  const auto target = call->Find<SerialPort>(port);
  if (target == nullptr) return call.Fails(ERROR_INVALID_HANDLE, FALSE);
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
  Service call(ServiceId::kWriteFile);
  call.Arguments([&] {
    return List({call.Name(port), data == nullptr ? "null" : Hex(data, count)});
  });
  if (written != nullptr) *written = 0;
  if (call.ToldToFail()) return FALSE;
  const auto target = call->Find<SerialPort>(port);
  if (target == nullptr) return call.Fails(ERROR_INVALID_HANDLE, FALSE);
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
  Service call(ServiceId::kPurgeComm);
  call.Arguments([&] { return List({call.Name(port), Number(flags)}); });
  if (call.ToldToFail()) return FALSE;
  const auto target = call->Find<SerialPort>(port);
  if (target == nullptr) return call.Fails(ERROR_INVALID_HANDLE, FALSE);
  target->Purge(flags);
  return call.Succeeds(ERROR_SUCCESS);
}

BOOL ClearCommError(HANDLE port, DWORD* errors, COMSTAT* status) {
  Service call(ServiceId::kClearCommError);
  call.Arguments([&] { return call.Name(port); });
  if (errors != nullptr) *errors = 0;
  if (call.ToldToFail()) return FALSE;
  const auto target = call->Find<SerialPort>(port);
  if (target == nullptr) return call.Fails(ERROR_INVALID_HANDLE, FALSE);
  const DWORD seen = target->ReadErrors();
  const COMSTAT queues = target->Queues();
  if (errors != nullptr) *errors = seen;
  if (status != nullptr) *status = queues;
  return call.Returns(TRUE, [&] { return Number(queues.cbInQue) + " waiting"; });
}

BOOL ClearCommBreak(HANDLE port) {
  Service call(ServiceId::kClearCommBreak);
  call.Arguments([&] { return call.Name(port); });
  if (call.ToldToFail()) return FALSE;
  const auto target = call->Find<SerialPort>(port);
  return call.Succeeds(target == nullptr ? ERROR_INVALID_HANDLE : ERROR_SUCCESS);
}
