// SPDX-License-Identifier: MIT
// Watched memory on Windows: a piece of the paging file, mapped twice.
#include <windows.h>

#include <new>

#include "console/watched_memory.h"

namespace ipodctl {

namespace {

void Unmap(void* view) {
  if (view != nullptr) UnmapViewOfFile(view);
}

}  // namespace

WatchedMemory::WatchedMemory(std::size_t bytes) : bytes_(bytes) {
  const HANDLE section = CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0,
                                            static_cast<DWORD>(bytes_), nullptr);
  if (section == nullptr) throw std::bad_alloc();
  written_ = MapViewOfFile(section, FILE_MAP_WRITE, 0, 0, bytes);
  watched_ = MapViewOfFile(section, FILE_MAP_READ, 0, 0, bytes);
  CloseHandle(section);
  if (written_ != nullptr && watched_ != nullptr) return;
  Unmap(written_);
  Unmap(watched_);
  throw std::bad_alloc();
}

WatchedMemory::~WatchedMemory() {
  Unmap(written_);
  Unmap(watched_);
}

}  // namespace ipodctl
