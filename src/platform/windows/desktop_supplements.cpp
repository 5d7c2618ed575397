// SPDX-License-Identifier: MIT
// The few services that Windows CE has and desktop Windows lacks.
#include "platform/services.h"

#if !defined(UNDER_CE)

#include <cstdarg>
#include <cstddef>
#include <cwchar>
#include <memory>
#include <new>

BOOL EventModify(HANDLE event, DWORD action) {
  switch (action) {
    case EVENT_SET:
      return SetEvent(event);
    case EVENT_RESET:
      return ResetEvent(event);
    case EVENT_PULSE:
      return PulseEvent(event);
    default:
      SetLastError(ERROR_INVALID_PARAMETER);
      return FALSE;
  }
}

// Desktop Windows loads drivers by plug and play, so there is no driver to restart and nothing to
// load. The handle only says "loaded": it is no object of the system and means nothing to any other
// service. It stays within 32 bits, because it is kept as a registry value of that size.
HANDLE ActivateDevice(const wchar_t* driver, DWORD /*client_info*/) {
  if (driver == nullptr || *driver == L'\0') {
    SetLastError(ERROR_INVALID_PARAMETER);
    return nullptr;
  }
  static LONG volatile loaded = 0;
  const auto number = static_cast<ULONG>(InterlockedIncrement(&loaded));
  return reinterpret_cast<HANDLE>(static_cast<ULONG_PTR>(number));
}

// Any handle that is not plainly invalid is taken: it may come from the registry, where another
// program, or this one before its last restart, has left it.
BOOL DeactivateDevice(HANDLE device) {
  if (device == nullptr || device == INVALID_HANDLE_VALUE) {
    SetLastError(ERROR_INVALID_HANDLE);
    return FALSE;
  }
  return TRUE;
}

// Windows keeps the first 64 KiB of every process free of anything, so no block begins there.
HLOCAL DesktopLocalFree(HLOCAL memory) {
  constexpr ULONG_PTR kFirstAddress = 0x10000;
  const auto address = reinterpret_cast<ULONG_PTR>(memory);
  if (address != 0 && address < kFirstAddress) {
    SetLastError(ERROR_INVALID_HANDLE);
    return memory;
  }
  return (LocalFree)(memory);
}

// The system's own wide formatting, not the C++ library's: there `%s` takes wide text.
void NKDbgPrintfW(const wchar_t* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  std::va_list measured;
  va_copy(measured, arguments);
  const int length = _vscwprintf(format, measured);
  va_end(measured);
  const auto size = static_cast<std::size_t>(length < 0 ? 0 : length) + 1;
  const std::unique_ptr<wchar_t[]> text(new (std::nothrow) wchar_t[size]());
  if (text != nullptr && length > 0) {
    StringCchVPrintfW(text.get(), size, format, arguments);
    OutputDebugStringW(text.get());
  }
  va_end(arguments);
}

#endif  // !UNDER_CE
