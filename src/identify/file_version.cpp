// SPDX-License-Identifier: MIT
// The version of the host's executable, which the accessory tells as its own.
#include "identify/file_version.h"

#include <cwchar>

#include "platform/services.h"

namespace ipodcomm {

namespace {

constexpr wchar_t kHostExecutable[] = L"qz104.exe";

/// Finds the text in the resource that fills `block`.
const wchar_t* FindFileVersion(const wchar_t* path, void* block, DWORD size) {
  void* text = nullptr;
  UINT length = 0;
  if (GetFileVersionInfoW(path, 0, size, block) == FALSE) return nullptr;
  if (VerQueryValueW(block, L"\\StringFileInfo\\040904b0\\FileVersion", &text, &length) == FALSE) {
    return nullptr;
  }
  return static_cast<const wchar_t*>(text);
}

bool ReadVersionText(const wchar_t* path, int (&numbers)[4]) {
  DWORD unused = 0;
  const DWORD size = GetFileVersionInfoSizeW(path, &unused);
  if (size == 0) return false;
  void* block = VirtualAlloc(nullptr, size, MEM_COMMIT, PAGE_READWRITE);
  if (block == nullptr) return false;
  const wchar_t* text = FindFileVersion(path, block, size);
  if (text != nullptr) {
    // Commas, not dots. A text of another form leaves the numbers that it lacks as they were.
    (void)std::swscanf(text, L"%d,%d,%d,%d", &numbers[0], &numbers[1], &numbers[2], &numbers[3]);
  }
  VirtualFree(block, 0, MEM_RELEASE);
  return text != nullptr;
}

}  // namespace

int ReadFileVersion(const wchar_t* path, int* major, int* minor, int* build, int* private_part) {
  int numbers[4] = {*major, *minor, build != nullptr ? *build : 0,
                    private_part != nullptr ? *private_part : 0};
  if (!ReadVersionText(path, numbers)) {
    NKDbgPrintfW(L"Failed to extract file version from %s!\r\n", path);
    return 0;
  }
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
