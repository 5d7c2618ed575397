// SPDX-License-Identifier: MIT
// The system's texts for the error codes that the services report.
#include <algorithm>
#include <string_view>

#include "platform/services.h"

namespace {

// Codes that the services report without being asked for by name.
constexpr DWORD kAlreadyExists = 183;
constexpr DWORD kNoSuchMessage = 317;

struct Message {
  DWORD code;
  std::string_view text;  // ASCII, which takes a quarter of the room
};

// Texts end with a line break, as they do where the codes come from.
constexpr Message kMessages[] = {
    {ERROR_SUCCESS, "The operation completed successfully.\r\n"},
    {ERROR_FILE_NOT_FOUND, "The system cannot find the file specified.\r\n"},
    {ERROR_PATH_NOT_FOUND, "The system cannot find the path specified.\r\n"},
    {ERROR_ACCESS_DENIED, "Access is denied.\r\n"},
    {ERROR_INVALID_HANDLE, "The handle is invalid.\r\n"},
    {ERROR_NOT_ENOUGH_MEMORY, "Not enough storage is available to process this command.\r\n"},
    {ERROR_BAD_COMMAND, "The device does not recognize the command.\r\n"},
    {ERROR_GEN_FAILURE, "A device attached to the system is not functioning.\r\n"},
    {ERROR_INVALID_PARAMETER, "The parameter is incorrect.\r\n"},
    {ERROR_INSUFFICIENT_BUFFER, "The data area passed to a system call is too small.\r\n"},
    {kAlreadyExists, "Cannot create a file when that file already exists.\r\n"},
    {ERROR_MORE_DATA, "More data is available.\r\n"},
    {ERROR_NOT_OWNER, "Attempt to release mutex not owned by caller.\r\n"},
    {ERROR_OPERATION_ABORTED,
     "The I/O operation has been aborted because of either a thread exit or an application "
     "request.\r\n"},
    {ERROR_NO_UNICODE_TRANSLATION,
     "No mapping for the Unicode character exists in the target multi-byte code page.\r\n"},
    {ERROR_RESOURCE_DATA_NOT_FOUND, "The specified resource data cannot be found.\r\n"},
    {ERROR_RESOURCE_TYPE_NOT_FOUND,
     "The specified resource type cannot be found in the image file.\r\n"},
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
    if (known.text.size() >= capacity) {
      SetLastError(ERROR_INSUFFICIENT_BUFFER);
      return 0;
    }
    *std::copy(known.text.begin(), known.text.end(), destination) = L'\0';
    return known.text.size();
  }
  SetLastError(kNoSuchMessage);
  return 0;
}
