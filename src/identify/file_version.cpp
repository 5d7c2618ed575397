// SPDX-License-Identifier: MIT
// The version of the host's executable, which the accessory announces as its own.
#include "identify/file_version.h"

#include <algorithm>
#include <cstddef>
#include <cwchar>

#include "platform/services.h"

namespace ipodcomm {

namespace {

constexpr wchar_t kHostExecutable[] = L"qz104.exe";

// Room for four numbers and many blanks.
constexpr std::size_t kMaxTextChars = 128;

struct VersionText {
  wchar_t chars[kMaxTextChars + 1];
};

// Characters of the value at `text`, of which at most `room` lie in the resource's block. `length`
// counts a text's characters, with or without its terminator. A resource may mark the value as data
// instead: then `length` counts bytes and nothing terminates them.
std::size_t CountChars(const wchar_t* text, std::size_t length, std::size_t room) {
  const auto ends_at = [&](std::size_t index) { return index < room && text[index] == L'\0'; };
  const bool terminated = ends_at(length) || (length > 0 && ends_at(length - 1));
  const std::size_t count = std::min(terminated ? length : length / sizeof *text, room);
  return static_cast<std::size_t>(std::find(text, text + count, L'\0') - text);
}

// Finds the text in the resource of `size` bytes that fills `block`.
bool FindFileVersion(const void* block, DWORD size, VersionText* text) {
  void* value = nullptr;
  UINT length = 0;
  if (VerQueryValueW(block, L"\\StringFileInfo\\040904b0\\FileVersion", &value, &length) == FALSE) {
    return false;
  }
  const auto* const found = static_cast<const wchar_t*>(value);
  const auto offset =
      static_cast<std::size_t>(static_cast<const char*>(value) - static_cast<const char*>(block));
  const std::size_t room = offset < size ? (size - offset) / sizeof *found : 0;
  *text = {};
  std::copy_n(found, std::min(CountChars(found, length, room), kMaxTextChars), text->chars);
  return true;
}

bool ReadVersionText(const wchar_t* path, VersionText* text) {
  DWORD unused = 0;
  const DWORD size = GetFileVersionInfoSizeW(path, &unused);
  if (size == 0) return false;
  void* block = VirtualAlloc(nullptr, size, MEM_COMMIT, PAGE_READWRITE);
  if (block == nullptr) return false;
  const bool found =
      GetFileVersionInfoW(path, 0, size, block) != FALSE && FindFileVersion(block, size, text);
  VirtualFree(block, 0, MEM_RELEASE);
  return found;
}

}  // namespace

int ReadFileVersion(const wchar_t* path, int* major, int* minor, int* build, int* private_part) {
  VersionText text;
  if (!ReadVersionText(path, &text)) {
    NKDbgPrintfW(L"Failed to extract file version from %s!\r\n", path);
    return 0;
  }
  // Commas, not dots. A text of another form leaves the numbers that it lacks as they were.
  int numbers[4] = {*major, *minor, build != nullptr ? *build : 0,
                    private_part != nullptr ? *private_part : 0};
  (void)std::swscanf(text.chars, L"%d,%d,%d,%d", &numbers[0], &numbers[1], &numbers[2],
                     &numbers[3]);
  *major = numbers[0];
  *minor = numbers[1];
  if (build != nullptr) *build = numbers[2];
  if (private_part != nullptr) *private_part = numbers[3];
  return 1;
}

HostVersion ReadHostVersion() {
  int major = 0;
  int minor = 0;
  ReadFileVersion(kHostExecutable, &major, &minor, nullptr, nullptr);
  return {{static_cast<unsigned char>(major), static_cast<unsigned char>(minor), 0}};
}

}  // namespace ipodcomm
