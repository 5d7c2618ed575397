// SPDX-License-Identifier: MIT
// Texts compared.
#include <cwchar>

#include "platform/services.h"

int lstrcmpW(const wchar_t* left, const wchar_t* right) { return std::wcscmp(left, right); }
