// SPDX-License-Identifier: MIT
// The services by name, in the order of services.h.
#pragma once

#include <string>

namespace ipodcomm::virtual_platform {

// GetLastError, SetLastError and GetCurrentThreadId are missing: they concern nobody but the thread
// itself and cannot fail.
// One to a line, which the formatter would not leave alone.
// clang-format off
#define IPODCOMM_VIRTUAL_SERVICES(X) \
  X(CreateFileW)                     \
  X(CloseHandle)                     \
  X(GetCommState)                    \
  X(SetCommState)                    \
  X(GetCommTimeouts)                 \
  X(SetCommTimeouts)                 \
  X(SetCommMask)                     \
  X(WaitCommEvent)                   \
  X(ReadFile)                        \
  X(WriteFile)                       \
  X(PurgeComm)                       \
  X(ClearCommError)                  \
  X(ClearCommBreak)                  \
  X(CreateThread)                    \
  X(TerminateThread)                 \
  X(InitializeCriticalSection)       \
  X(EnterCriticalSection)            \
  X(LeaveCriticalSection)            \
  X(DeleteCriticalSection)           \
  X(CreateEventW)                    \
  X(EventModify)                     \
  X(WaitForSingleObject)             \
  X(Sleep)                           \
  X(GetTickCount)                    \
  X(ActivateDevice)                  \
  X(DeactivateDevice)                \
  X(RegCreateKeyExW)                 \
  X(RegQueryValueExW)                \
  X(RegSetValueExW)                  \
  X(RegCloseKey)                     \
  X(GetFileVersionInfoSizeW)         \
  X(GetFileVersionInfoW)             \
  X(VerQueryValueW)                  \
  X(VirtualAlloc)                    \
  X(VirtualFree)                     \
  X(LocalAlloc)                      \
  X(LocalFree)                       \
  X(MultiByteToWideChar)             \
  X(WideCharToMultiByte)             \
  X(wsprintfW)                       \
  X(StringCchCopyW)                  \
  X(StringCchPrintfW)                \
  X(lstrcmpW)                        \
  X(FormatMessageW)                  \
  X(NKDbgPrintfW)
// clang-format on

enum class ServiceId {
#define IPODCOMM_VIRTUAL_SERVICE(name) k##name,
  IPODCOMM_VIRTUAL_SERVICES(IPODCOMM_VIRTUAL_SERVICE)
#undef IPODCOMM_VIRTUAL_SERVICE
      kCount
};

constexpr std::size_t kServiceCount = static_cast<std::size_t>(ServiceId::kCount);

const char* ServiceName(ServiceId service);

/// Throws std::invalid_argument for a name that is not in the list, so that a test which names
/// nothing cannot pass.
ServiceId ServiceNamed(const std::string& name);

}  // namespace ipodcomm::virtual_platform
