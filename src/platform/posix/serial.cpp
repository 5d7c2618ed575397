// SPDX-License-Identifier: MIT
// The serial port services, over the port behind each handle.
#include "platform/common/out_of_memory.h"
#include "platform/posix/port.h"
#include "platform/posix/port_name.h"
#include "platform/services.h"

using namespace ipodcomm::platform;

namespace {

BOOL Succeeded(DWORD code) {
  if (code != ERROR_SUCCESS) SetLastError(code);
  return code == ERROR_SUCCESS ? TRUE : FALSE;
}

BOOL InvalidParameter() { return Succeeded(ERROR_INVALID_PARAMETER); }

}  // namespace

HANDLE CreateFileW(const wchar_t* name, DWORD access, DWORD share, SECURITY_ATTRIBUTES* security,
                   DWORD disposition, DWORD flags, HANDLE file_template) {
  const bool usable = access == (GENERIC_READ | GENERIC_WRITE) && share == 0 &&
                      security == nullptr && disposition == OPEN_EXISTING && flags == 0 &&
                      file_template == nullptr;
  DWORD code = usable ? ERROR_FILE_NOT_FOUND : ERROR_INVALID_PARAMETER;
  return FailWithoutMemory(INVALID_HANDLE_VALUE, [&] {
    std::shared_ptr<Port> port;
    const auto device = DeviceOfPort(name);
    if (usable && device) port = Port::Open(*device, &code);
    if (port == nullptr) {
      SetLastError(code);
      return INVALID_HANDLE_VALUE;
    }
    const HANDLE handle = NewHandle(port);
    return handle != nullptr ? handle : INVALID_HANDLE_VALUE;
  });
}

BOOL GetCommState(HANDLE port, DCB* state) {
  const auto target = OpenObject<Port>(port);
  if (target == nullptr) return FALSE;
  if (state == nullptr) return InvalidParameter();
  return Succeeded(target->GetSettings(state));
}

BOOL SetCommState(HANDLE port, DCB* state) {
  const auto target = OpenObject<Port>(port);
  if (target == nullptr) return FALSE;
  if (state == nullptr) return InvalidParameter();
  return Succeeded(target->SetSettings(*state));
}

BOOL GetCommTimeouts(HANDLE port, COMMTIMEOUTS* timeouts) {
  const auto target = OpenObject<Port>(port);
  if (target == nullptr) return FALSE;
  if (timeouts == nullptr) return InvalidParameter();
  return Succeeded(target->GetTimeouts(timeouts));
}

BOOL SetCommTimeouts(HANDLE port, COMMTIMEOUTS* timeouts) {
  const auto target = OpenObject<Port>(port);
  if (target == nullptr) return FALSE;
  if (timeouts == nullptr) return InvalidParameter();
  return Succeeded(target->SetTimeouts(*timeouts));
}

BOOL SetCommMask(HANDLE port, DWORD events) {
  const auto target = OpenObject<Port>(port);
  return target != nullptr && Succeeded(target->SetEventMask(events));
}

BOOL WaitCommEvent(HANDLE port, DWORD* events, OVERLAPPED* overlapped) {
  const auto target = OpenObject<Port>(port);
  if (target == nullptr) return FALSE;
  if (events == nullptr || overlapped != nullptr) return InvalidParameter();
  return Succeeded(target->WaitEvent(events));
}

BOOL ReadFile(HANDLE port, void* buffer, DWORD count, DWORD* read, OVERLAPPED* overlapped) {
  if (read != nullptr) *read = 0;
  const auto target = OpenObject<Port>(port);
  if (target == nullptr) return FALSE;
  if ((buffer == nullptr && count != 0) || read == nullptr || overlapped != nullptr) {
    return InvalidParameter();
  }
  return Succeeded(target->Read(buffer, count, read));
}

BOOL WriteFile(HANDLE port, const void* data, DWORD count, DWORD* written, OVERLAPPED* overlapped) {
  if (written != nullptr) *written = 0;
  const auto target = OpenObject<Port>(port);
  if (target == nullptr) return FALSE;
  if ((data == nullptr && count != 0) || written == nullptr || overlapped != nullptr) {
    return InvalidParameter();
  }
  return Succeeded(target->Write(data, count, written));
}

BOOL PurgeComm(HANDLE port, DWORD flags) {
  const auto target = OpenObject<Port>(port);
  return target != nullptr && Succeeded(target->Purge(flags));
}

BOOL ClearCommError(HANDLE port, DWORD* errors, COMSTAT* status) {
  if (errors != nullptr) *errors = 0;
  const auto target = OpenObject<Port>(port);
  if (target == nullptr) return FALSE;
  COMSTAT ignored;
  return Succeeded(target->GetQueues(status != nullptr ? status : &ignored));
}

BOOL ClearCommBreak(HANDLE port) {
  const auto target = OpenObject<Port>(port);
  return target != nullptr && Succeeded(target->EndBreak());
}
