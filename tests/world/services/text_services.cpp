// SPDX-License-Identifier: MIT
// The text services and the debug output.
#include <algorithm>
#include <cstdio>
#include <cwchar>

#include "platform/common/utf8.h"
#include "platform/common/wide_format.h"
#include "world/services/plain_text.h"
#include "world/services/service.h"

using namespace ipodcomm::virtual_platform;
using ipodcomm::platform::FormatWide;

namespace {

constexpr HRESULT kGeneralFailure = 0x80004005;

std::string Length(int length) { return length == -1 ? "-1" : Number(static_cast<UINT>(length)); }

HRESULT Result(Service& call, HRESULT result) {
  return call.Returns(result, [&] { return Number(static_cast<unsigned long>(result)); });
}

template <class Character, class Count>
std::size_t Bytes(Count characters) {
  return static_cast<std::size_t>(characters) * sizeof(Character);
}

std::size_t CopyCut(wchar_t* destination, std::size_t capacity, const std::wstring& text) {
  const std::size_t length = std::min(text.size(), capacity - 1);
  std::wmemcpy(destination, text.data(), length);
  destination[length] = 0;
  CallerMemoryWritten(destination, Bytes<wchar_t>(length + 1));
  return length;
}

}  // namespace

int MultiByteToWideChar(UINT code_page, DWORD flags, const char* source, int source_bytes,
                        wchar_t* destination, int capacity) {
  Service call(ServiceId::kMultiByteToWideChar, ServiceKind::kAnywhere);
  call.Arguments([&] { return List({Length(source_bytes), Length(capacity)}); });
  if (call.ToldToFail()) return 0;
  const int written =
      PlainMultiByteToWideChar(code_page, flags, source, source_bytes, destination, capacity);
  if (written == 0) return call.Fails(GetLastError(), 0);
  if (capacity != 0) CallerMemoryWritten(destination, Bytes<wchar_t>(written));
  return call.Returns(written, [&] { return Length(written); });
}

int WideCharToMultiByte(UINT code_page, DWORD flags, const wchar_t* source, int source_characters,
                        char* destination, int capacity, const char* default_character,
                        BOOL* used_default) {
  Service call(ServiceId::kWideCharToMultiByte, ServiceKind::kAnywhere);
  call.Arguments([&] { return List({Length(source_characters), Length(capacity)}); });
  if (call.ToldToFail()) return 0;
  const int written =
      PlainWideCharToMultiByte(code_page, flags, source, source_characters, destination, capacity,
                               default_character, used_default);
  if (written == 0) return call.Fails(GetLastError(), 0);
  if (capacity != 0) CallerMemoryWritten(destination, Bytes<char>(written));
  return call.Returns(written, [&] { return Length(written); });
}

int wsprintfW(wchar_t* destination, const wchar_t* format, ...) {
  constexpr std::size_t kMaxCharacters = 1024;  // terminator included
  Service call(ServiceId::kwsprintfW, ServiceKind::kAnywhere);
  call.Arguments([&] { return Quoted(format); });
  if (call.ToldToFail()) return 0;
  std::va_list arguments;
  va_start(arguments, format);
  const std::wstring text = FormatWide(format, arguments);
  va_end(arguments);
  const auto length = static_cast<int>(CopyCut(destination, kMaxCharacters, text));
  return call.Returns(length, [&] { return Quoted(destination); });
}

HRESULT StringCchCopyW(wchar_t* destination, std::size_t capacity, const wchar_t* source) {
  Service call(ServiceId::kStringCchCopyW, ServiceKind::kAnywhere);
  call.Arguments([&] { return List({Number(capacity), Quoted(source)}); });
  if (call.ToldToFail()) return kGeneralFailure;
  return Result(call, PlainStringCchCopyW(destination, capacity, source));
}

HRESULT StringCchPrintfW(wchar_t* destination, std::size_t capacity, const wchar_t* format, ...) {
  constexpr HRESULT kCut = 0x8007007A;
  Service call(ServiceId::kStringCchPrintfW, ServiceKind::kAnywhere);
  call.Arguments([&] { return List({Number(capacity), Quoted(format)}); });
  if (call.ToldToFail()) return kGeneralFailure;
  // An unusable capacity has one answer, whoever gives it.
  if (capacity == 0 || capacity > 0x7FFFFFFF) {
    return Result(call, PlainStringCchCopyW(destination, capacity, L""));
  }
  std::va_list arguments;
  va_start(arguments, format);
  const std::wstring text = FormatWide(format, arguments);
  va_end(arguments);
  return Result(call, CopyCut(destination, capacity, text) < text.size() ? kCut : 0);
}

int lstrcmpW(const wchar_t* left, const wchar_t* right) {
  Service call(ServiceId::klstrcmpW, ServiceKind::kAnywhere);
  call.Arguments([&] { return List({Quoted(left), Quoted(right)}); });
  const int order = std::wcscmp(left, right);
  return call.Returns(order, [&] { return std::to_string(order); });
}

DWORD FormatMessageW(DWORD flags, const void* source, DWORD message, DWORD language,
                     wchar_t* destination, DWORD capacity, std::va_list* arguments) {
  Service call(ServiceId::kFormatMessageW, ServiceKind::kAnywhere);
  call.Arguments([&] { return Number(message); });
  const DWORD none = 0;
  if (call.ToldToFail()) return none;
  const DWORD length =
      PlainFormatMessageW(flags, source, message, language, destination, capacity, arguments);
  if (length == 0) return call.Fails(GetLastError(), none);
  return call.Returns(length, [&] { return Quoted(destination); });
}

void NKDbgPrintfW(const wchar_t* format, ...) {
  Service call(ServiceId::kNKDbgPrintfW, ServiceKind::kAnywhere);
  std::va_list arguments;
  va_start(arguments, format);
  const std::wstring text = FormatWide(format, arguments);
  va_end(arguments);
  call.Arguments([&] { return Quoted(text.c_str()); });
  if (call.operator->() != nullptr) {
    call->debug_output.push_back(ipodcomm::platform::WideToUtf8(text));
  }
  call.Done();
}
