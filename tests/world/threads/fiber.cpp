// SPDX-License-Identifier: MIT
#include "world/threads/fiber.h"

#include <cxxabi.h>
#include <sys/mman.h>
#include <sys/single_threaded.h>

#include <cstdlib>
#include <cstring>

#include "platform/services.h"
#include "world/memory_shortage.h"
#include "world/threads/race_detector.h"

namespace ipodcomm::virtual_platform {
namespace {

// As much as instrumented code may need; what is not touched costs nothing.
constexpr std::size_t kStackSize = std::size_t{1024} * 1024;
constexpr std::size_t kGuardSize = 4096;

// What runs over its end meets a page that nobody may touch.
char* NewStack() {
  void* const memory = mmap(nullptr, kStackSize, PROT_READ | PROT_WRITE,
                            MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
  if (memory == MAP_FAILED) return nullptr;
  mprotect(memory, kGuardSize, PROT_NONE);
  return static_cast<char*>(memory);
}

// What the language and the platform keep for each thread of the system, kept for a fiber while
// another one runs. A new one begins with what these values are at first.
struct ThreadLocals {
  // As the C++ ABI lays it out: the exceptions being handled, and the number of those on their way.
  struct Exceptions {
    void* caught;
    unsigned uncaught;
#if defined(__ARM_EABI_UNWINDER__)
    void* propagating;
#endif
  };

  static ThreadLocals Now() {
    ThreadLocals now;
    std::memcpy(&now.exceptions, abi::__cxa_get_globals(), sizeof now.exceptions);
    now.last_error = GetLastError();
    now.enough_memory = EnoughMemory::depth();
    now.unwatched = UnwatchedDepth();
    return now;
  }
  void Restore() const {
    std::memcpy(static_cast<void*>(abi::__cxa_get_globals()), &exceptions, sizeof exceptions);
    SetLastError(last_error);
    EnoughMemory::depth() = enough_memory;
    UnwatchedDepth() = unwatched;
  }

  Exceptions exceptions = {};
  DWORD last_error = ERROR_SUCCESS;
  int enough_memory = 0;
  int unwatched = 0;
};

// On the way: where from and where to.
Fiber* source = nullptr;
Fiber* destination = nullptr;

}  // namespace

Fiber::Fiber() : stack_(nullptr), detected_(DetectedCaller()) {}

Fiber::Fiber(char* stack) : stack_(stack), detected_(NewDetected()), watched_{stack, kStackSize} {}

std::unique_ptr<Fiber> Fiber::Make(void (*entry)(void*), void* argument) {
  char* const stack = NewStack();
  if (stack == nullptr) return nullptr;
  std::unique_ptr<Fiber> fiber(new Fiber(stack));
  // Else the language's library counts references in a way that only one thread may.
  __libc_single_threaded = 0;
  fiber->entry_ = entry;
  fiber->argument_ = argument;
  getcontext(&fiber->context_);
  fiber->context_.uc_stack.ss_sp = stack;
  fiber->context_.uc_stack.ss_size = kStackSize;
  makecontext(&fiber->context_, Begin, 0);
  return fiber;
}

Fiber::~Fiber() {
  if (stack_ == nullptr) return;
  ForgetDetected(detected_);
  ClearStack(watched_);
  munmap(stack_, kStackSize);
}

void Fiber::Jump(const Fiber& next) {
  GoOnAs(next.detected_);
  setcontext(&next.context_);
  std::abort();
}

void Fiber::Begin() {
  const Fiber& self = *destination;
  ArriveOnStack(self.watched_, source->watched_);
  self.entry_(self.argument_);
  std::abort();
}

// Not by swapcontext, at which AddressSanitizer forgets what lies on the other stack.
void Fiber::SwitchTo(Fiber& next) {
  const ThreadLocals locals = ThreadLocals::Now();
  ThreadLocals().Restore();
  source = this;
  destination = &next;
  LeaveStack(watched_, next.watched_);
  leaving_ = true;
  getcontext(&context_);
  // Here it leaves, and here it comes back to.
  if (leaving_) {
    leaving_ = false;
    Jump(next);
  }
  ArriveOnStack(watched_, source->watched_);
  locals.Restore();
}

void Fiber::LeaveFor(Fiber& next) {
  {
    const Unwatched unwatched;
    ThreadLocals locals;
    // Both go back with `unwatched`.
    locals.enough_memory = EnoughMemory::depth();
    locals.unwatched = UnwatchedDepth();
    locals.Restore();
    source = this;
    destination = &next;
    AbandonStack(next.watched_);
  }
  Jump(next);
}

}  // namespace ipodcomm::virtual_platform
