// SPDX-License-Identifier: MIT
#include "services.h"

namespace reliability {

const std::vector<FailingService>& FailingServices() {
  constexpr DWORD kNoMemory = ERROR_NOT_ENOUGH_MEMORY;
  constexpr DWORD kNotOpen = ERROR_INVALID_HANDLE;
  constexpr DWORD kUnusable = ERROR_INVALID_PARAMETER;
  constexpr DWORD kGone = ERROR_GEN_FAILURE;
  static const std::vector<FailingService> all = {
      {"CreateFileW", {ERROR_FILE_NOT_FOUND, ERROR_ACCESS_DENIED, kUnusable, kNoMemory}},
      {"CloseHandle", {kNotOpen}, true},
      {"GetCommState", {kNotOpen, kGone}},
      {"SetCommState", {kNotOpen, kUnusable, kGone}},
      {"GetCommTimeouts", {kNotOpen, kGone}},
      {"SetCommTimeouts", {kNotOpen, kGone}},
      {"SetCommMask", {kNotOpen, kGone}},
      {"WaitCommEvent", {kNotOpen, kUnusable, kGone}},
      {"ReadFile", {kNotOpen, kGone}},
      {"WriteFile", {kNotOpen, kGone}},
      {"PurgeComm", {kNotOpen, kGone}},
      {"ClearCommError", {kNotOpen, kGone}},
      {"ClearCommBreak", {kNotOpen, kGone}},
      {"CreateThread", {kNoMemory}, false, true},
      {"TerminateThread", {kNotOpen}, true},
      {"CreateEventW", {kNoMemory}, false, true},
      {"EventModify", {kNotOpen}},
      {"WaitForSingleObject", {kNotOpen}},
      {"ActivateDevice", {ERROR_FILE_NOT_FOUND, kNoMemory}},
      {"DeactivateDevice", {kNotOpen}, true},
      {"RegCreateKeyExW", {ERROR_FILE_NOT_FOUND, ERROR_ACCESS_DENIED, kNoMemory}},
      {"RegQueryValueExW", {ERROR_FILE_NOT_FOUND, kNotOpen}},
      {"RegSetValueExW", {ERROR_ACCESS_DENIED, kNotOpen}},
      {"RegCloseKey", {kNotOpen}, true},
      {"GetFileVersionInfoSizeW", {ERROR_FILE_NOT_FOUND, ERROR_RESOURCE_DATA_NOT_FOUND}},
      {"GetFileVersionInfoW", {ERROR_FILE_NOT_FOUND, kNoMemory}},
      {"VerQueryValueW", {ERROR_RESOURCE_TYPE_NOT_FOUND}},
      {"VirtualAlloc", {kNoMemory}},
      {"VirtualFree", {kUnusable}, true},
      {"LocalAlloc", {kNoMemory}},
      {"LocalFree", {kNotOpen}, true},
      {"MultiByteToWideChar", {ERROR_INSUFFICIENT_BUFFER, ERROR_NO_UNICODE_TRANSLATION}},
      {"WideCharToMultiByte", {ERROR_INSUFFICIENT_BUFFER, ERROR_NO_UNICODE_TRANSLATION}},
      {"wsprintfW", {kUnusable}},
      {"StringCchCopyW", {ERROR_INSUFFICIENT_BUFFER}},
      {"StringCchPrintfW", {ERROR_INSUFFICIENT_BUFFER}},
      {"FormatMessageW", {ERROR_MORE_DATA}},
      {kMemory, {kNoMemory}, false, true},
  };
  return all;
}

}  // namespace reliability
