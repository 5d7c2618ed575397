// SPDX-License-Identifier: MIT
// Watched memory on Linux: a file without a name, mapped twice.
#include <sys/mman.h>
#include <unistd.h>

#include <new>

#include "console/watched_memory.h"

namespace ipodctl {

namespace {

void* Map(int file, std::size_t bytes, int access) {
  void* const view = ::mmap(nullptr, bytes, access, MAP_SHARED, file, 0);
  return view == MAP_FAILED ? nullptr : view;
}

void Unmap(void* view, std::size_t bytes) {
  if (view != nullptr) ::munmap(view, bytes);
}

}  // namespace

WatchedMemory::WatchedMemory(std::size_t bytes) : bytes_(bytes) {
  const int file = ::memfd_create("watched", MFD_CLOEXEC);
  if (file < 0) throw std::bad_alloc();
  if (::ftruncate(file, static_cast<off_t>(bytes)) == 0) {
    written_ = Map(file, bytes, PROT_READ | PROT_WRITE);
    watched_ = Map(file, bytes, PROT_READ);
  }
  ::close(file);
  if (written_ != nullptr && watched_ != nullptr) return;
  Unmap(written_, bytes);
  Unmap(watched_, bytes);
  throw std::bad_alloc();
}

WatchedMemory::~WatchedMemory() {
  Unmap(written_, bytes_);
  Unmap(watched_, bytes_);
}

}  // namespace ipodctl
