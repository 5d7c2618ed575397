// SPDX-License-Identifier: MIT
// The thread services, sleeping and the tick count.
#include "world/services/service.h"

using namespace ipodcomm::virtual_platform;

HANDLE CreateThread(SECURITY_ATTRIBUTES* /*security*/, std::size_t stack,
                    THREAD_START_ROUTINE* routine, void* argument, DWORD flags, DWORD* id) {
  Service call(ServiceId::kCreateThread);
  const int number = static_cast<int>(call.scheduler().threads().size()) + 1;
  const std::string name = call->names.ForThread(routine, number);
  // Hosts leave the size of the stack to the system.
  call.Arguments([&] { return stack == 0 ? name : List({name, Number(stack)}); });
  const HANDLE none = nullptr;
  if (call.ToldToFail()) return none;
  if (routine == nullptr || flags != 0) return call.Fails(ERROR_INVALID_PARAMETER, none);
  const auto thread = call.scheduler().Start(name, routine, argument);
  if (thread == nullptr) return call.Fails(ERROR_NOT_ENOUGH_MEMORY, none);
  if (id != nullptr) *id = static_cast<DWORD>(thread->number);
  const HANDLE handle = call.Open(thread);
  call.scheduler().Step();
  return handle;
}

BOOL TerminateThread(HANDLE thread, DWORD exit_code) {
  Service call(ServiceId::kTerminateThread);
  call.Arguments([&] { return List({call.Name(thread), Number(exit_code)}); });
  if (call.ToldToFail()) return FALSE;
  const auto target = call->Find<Thread>(thread);
  if (target == nullptr) return call.Fails(ERROR_INVALID_HANDLE, FALSE);
  call.scheduler().End(*target, exit_code);
  Acquired(target.get());
  return call.Succeeds(ERROR_SUCCESS);
}

DWORD GetCurrentThreadId() {
  const Unwatched unwatched;
  const Thread* thread = Scheduler::Running();
  return thread != nullptr ? static_cast<DWORD>(thread->number) : 0;
}

void Sleep(DWORD duration_ms) {
  Service call(ServiceId::kSleep);
  call.Arguments([&] { return Duration(duration_ms); });
  // Even a sleep of no length lets a little time pass, or a thread that looks again and again for
  // something would stop the clock that brings it.
  std::int64_t duration_us = static_cast<std::int64_t>(duration_ms) * kMillisecond;
  if (duration_us == 0) duration_us = 1;
  const bool for_ever = duration_ms == INFINITE;
  call.scheduler().Block(
      {"Sleep", nullptr, for_ever ? kNever : call->clock.now_us() + duration_us, true});
  call.Done();
}

DWORD GetTickCount() {
  Service call(ServiceId::kGetTickCount);
  call.Arguments([] { return ""; });
  return call.Returns(static_cast<DWORD>(call->clock.tick_count_ms()),
                      [&] { return Number(call->clock.tick_count_ms()); });
}
