// SPDX-License-Identifier: MIT
// The system's texts for the error codes that the services report.
#include <cwchar>

#include "platform/services.h"

namespace {

// Codes that the services report without being asked for by name.
constexpr DWORD kAlreadyExists = 183;
constexpr DWORD kNoSuchMessage = 317;

struct Message {
  DWORD code;
  const wchar_t* text;
};

// Texts end with a line break, as they do where the codes come from.
constexpr Message kMessages[] = {
    {ERROR_SUCCESS, L"The operation completed successfully.\r\n"},
    {ERROR_FILE_NOT_FOUND, L"The system cannot find the file specified.\r\n"},
    {ERROR_PATH_NOT_FOUND, L"The system cannot find the path specified.\r\n"},
    {ERROR_ACCESS_DENIED, L"Access is denied.\r\n"},
    {ERROR_INVALID_HANDLE, L"The handle is invalid.\r\n"},
    {ERROR_NOT_ENOUGH_MEMORY, L"Not enough storage is available to process this command.\r\n"},
    {ERROR_BAD_COMMAND, L"The device does not recognize the command.\r\n"},
    {ERROR_GEN_FAILURE, L"A device attached to the system is not functioning.\r\n"},
    {ERROR_INVALID_PARAMETER, L"The parameter is incorrect.\r\n"},
    {ERROR_INSUFFICIENT_BUFFER, L"The data area passed to a system call is too small.\r\n"},
    {kAlreadyExists, L"Cannot create a file when that file already exists.\r\n"},
    {ERROR_MORE_DATA, L"More data is available.\r\n"},
    {ERROR_NOT_OWNER, L"Attempt to release mutex not owned by caller.\r\n"},
    {ERROR_OPERATION_ABORTED,
     L"The I/O operation has been aborted because of either a thread exit or an application "
     L"request.\r\n"},
    {ERROR_NO_UNICODE_TRANSLATION,
     L"No mapping for the Unicode character exists in the target multi-byte code page.\r\n"},
    {ERROR_RESOURCE_DATA_NOT_FOUND, L"The specified resource data cannot be found.\r\n"},
    {ERROR_RESOURCE_TYPE_NOT_FOUND,
     L"The specified resource type cannot be found in the image file.\r\n"},
};

}  // namespace

DWORD FormatMessageW(DWORD flags, const void* /*source*/, DWORD message, DWORD /*language*/,
                     wchar_t* destination, DWORD capacity, std::va_list* /*arguments*/) {
  if (flags != FORMAT_MESSAGE_FROM_SYSTEM || destination == nullptr) {
    SetLastError(ERROR_INVALID_PARAMETER);
    return 0;
  }
  for (const Message& known : kMessages) {
    if (known.code != message) continue;
    const std::size_t length = std::wcslen(known.text);
    if (length >= capacity) {
      SetLastError(ERROR_INSUFFICIENT_BUFFER);
      return 0;
    }
    std::wmemcpy(destination, known.text, length + 1);
    return length;
  }
  SetLastError(kNoSuchMessage);
  return 0;
}
