// SPDX-License-Identifier: MIT
// Annotations for ThreadSanitizer; nothing in other builds.
#include "world/threads/race_detector.h"

#if defined(IPODCOMM_THREAD_SANITIZER)

extern "C" {
void AnnotateIgnoreReadsBegin(const char* file, int line);
void AnnotateIgnoreReadsEnd(const char* file, int line);
void AnnotateIgnoreWritesBegin(const char* file, int line);
void AnnotateIgnoreWritesEnd(const char* file, int line);
void AnnotateIgnoreSyncBegin(const char* file, int line);
void AnnotateIgnoreSyncEnd(const char* file, int line);
void __tsan_acquire(void* address);
void __tsan_release(void* address);
void __tsan_read_range(void* address, unsigned long size);
void __tsan_write_range(void* address, unsigned long size);
void* __tsan_get_current_fiber();
void* __tsan_create_fiber(unsigned flags);
void __tsan_destroy_fiber(void* fiber);
}

namespace ipodcomm::virtual_platform {
namespace {

// Each thread of a world has its own, all at this address.
thread_local int depth = 0;

void Hide() {
  AnnotateIgnoreReadsBegin(__FILE__, __LINE__);
  AnnotateIgnoreWritesBegin(__FILE__, __LINE__);
  AnnotateIgnoreSyncBegin(__FILE__, __LINE__);
}

void Show() {
  AnnotateIgnoreSyncEnd(__FILE__, __LINE__);
  AnnotateIgnoreWritesEnd(__FILE__, __LINE__);
  AnnotateIgnoreReadsEnd(__FILE__, __LINE__);
}

// Lifts the veil for one annotation.
class Watched {
 public:
  [[gnu::no_sanitize_thread]] Watched() {
    if (depth > 0) Show();
  }
  [[gnu::no_sanitize_thread]] ~Watched() {
    if (depth > 0) Hide();
  }
  Watched(const Watched&) = delete;
  Watched& operator=(const Watched&) = delete;
};

}  // namespace

[[gnu::no_sanitize_thread]] Unwatched::Unwatched() {
  if (depth++ == 0) Hide();
}

[[gnu::no_sanitize_thread]] Unwatched::~Unwatched() {
  if (--depth == 0) Show();
}

void Released(const void* object) {
  const Watched watched;
  __tsan_release(const_cast<void*>(object));
}

void Acquired(const void* object) {
  const Watched watched;
  __tsan_acquire(const_cast<void*>(object));
}

void CallerMemoryRead(const void* memory, std::size_t size) {
  const Watched watched;
  __tsan_read_range(const_cast<void*>(memory), size);
}

void CallerMemoryWritten(void* memory, std::size_t size) {
  const Watched watched;
  __tsan_write_range(memory, size);
}

int& UnwatchedDepth() { return depth; }

void* DetectedCaller() { return __tsan_get_current_fiber(); }
void* NewDetected() { return __tsan_create_fiber(0); }
void ForgetDetected(void* detected) { __tsan_destroy_fiber(detected); }

}  // namespace ipodcomm::virtual_platform

#else

namespace ipodcomm::virtual_platform {

Unwatched::Unwatched() = default;
Unwatched::~Unwatched() = default;
void Released(const void* /*object*/) {}
void Acquired(const void* /*object*/) {}
void CallerMemoryRead(const void* /*memory*/, std::size_t /*size*/) {}
void CallerMemoryWritten(void* /*memory*/, std::size_t /*size*/) {}

int& UnwatchedDepth() {
  static int none = 0;
  return none;
}

void* DetectedCaller() { return nullptr; }
void* NewDetected() { return nullptr; }
void ForgetDetected(void* /*detected*/) {}

}  // namespace ipodcomm::virtual_platform

#endif
