// SPDX-License-Identifier: MIT
// Arguments and results as text.
#pragma once

#include <cstddef>
#include <initializer_list>
#include <string>

#include "platform/services.h"

namespace ipodcomm::virtual_platform {

/// "a, b, c"
std::string List(std::initializer_list<std::string> parts);
/// "FF 55 02"; "nothing" for no bytes.
std::string Hex(const void* data, std::size_t size);
/// The text in quotes, as UTF-8; "null" without one.
std::string Quoted(const wchar_t* text);
std::string Number(unsigned long number);
/// Milliseconds, or "INFINITE".
std::string Duration(DWORD duration_ms);

}  // namespace ipodcomm::virtual_platform
