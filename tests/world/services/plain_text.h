// SPDX-License-Identifier: MIT
// The shared text services under names of their own, so that this platform's can record them and
// fail before they go there. The build compiles the shared sources once more under these names.
#pragma once

#include "platform/services.h"

int PlainMultiByteToWideChar(UINT code_page, DWORD flags, const char* source, int source_bytes,
                             wchar_t* destination, int capacity);
int PlainWideCharToMultiByte(UINT code_page, DWORD flags, const wchar_t* source,
                             int source_characters, char* destination, int capacity,
                             const char* default_character, BOOL* used_default);
HRESULT PlainStringCchCopyW(wchar_t* destination, std::size_t capacity, const wchar_t* source);
DWORD PlainFormatMessageW(DWORD flags, const void* source, DWORD message, DWORD language,
                          wchar_t* destination, DWORD capacity, std::va_list* arguments);
