// SPDX-License-Identifier: MIT
// The services of critical sections and events, and waiting.
#include "world/services/service.h"

using namespace ipodcomm::virtual_platform;

namespace {

constexpr DWORD kAlreadyExists = 183;

std::string SectionName(const Section* section) {
  return section != nullptr ? section->name : "unknown";
}

std::shared_ptr<Event> FindNamed(WorldState& world, const wchar_t* name) {
  const auto found = world.named_events.find(name);
  return found != world.named_events.end() ? found->second.lock() : nullptr;
}

std::shared_ptr<Event> MakeEvent(WorldState& world, bool manual_reset, bool set,
                                 const wchar_t* name) {
  std::string event_name = world.names.Next("event");
  if (name != nullptr) event_name += " " + Quoted(name);
  const auto event = std::make_shared<Event>(std::move(event_name), manual_reset, set);
  if (name != nullptr) world.named_events[name] = event;
  return event;
}

// The wait for an object that ends when it is woken.
DWORD WaitFor(Service& call, const Object& object, DWORD timeout_ms) {
  if (timeout_ms == 0) return WAIT_TIMEOUT;
  const std::int64_t now_us = call->clock.now_us();
  const std::int64_t deadline_us =
      timeout_ms == INFINITE ? kNever : now_us + static_cast<std::int64_t>(timeout_ms) * 1000;
  const bool woken = call.scheduler().Block({"WaitForSingleObject", &object, deadline_us, true});
  return woken ? WAIT_OBJECT_0 : WAIT_TIMEOUT;
}

DWORD WaitForHandle(Service& call, HANDLE handle, DWORD timeout_ms) {
  const auto object = call->handles.Find(handle);
  if (const auto event = std::dynamic_pointer_cast<Event>(object)) {
    const DWORD result = event->TryTake() ? WAIT_OBJECT_0 : WaitFor(call, *event, timeout_ms);
    if (result == WAIT_OBJECT_0) Acquired(event.get());
    return result;
  }
  if (const auto thread = std::dynamic_pointer_cast<Thread>(object)) {
    const bool ended = thread->state == ThreadState::kEnded;
    const DWORD result = ended ? WAIT_OBJECT_0 : WaitFor(call, *thread, timeout_ms);
    if (result == WAIT_OBJECT_0) Acquired(thread.get());
    return result;
  }
  return WAIT_FAILED;
}

}  // namespace

void InitializeCriticalSection(CRITICAL_SECTION* section) {
  Service call(ServiceId::kInitializeCriticalSection, ServiceKind::kPlain);
  call->sections.Initialize(section);
  call.Arguments([&] { return SectionName(call->sections.Find(section)); });
  CallerMemoryWritten(section, sizeof *section);
  call.Done();
}

void EnterCriticalSection(CRITICAL_SECTION* section) {
  Service call(ServiceId::kEnterCriticalSection);
  CallerMemoryRead(section, sizeof *section);
  Section* target = call->sections.Find(section);
  call.Arguments([&] { return SectionName(target); });
  if (target != nullptr) {
    target->Enter(call.scheduler());
    Acquired(target);
  }
  call.Done();
}

void LeaveCriticalSection(CRITICAL_SECTION* section) {
  Service call(ServiceId::kLeaveCriticalSection, ServiceKind::kPlain);
  CallerMemoryRead(section, sizeof *section);
  Section* target = call->sections.Find(section);
  call.Arguments([&] { return SectionName(target); });
  if (target != nullptr && target->owner == Scheduler::Running()) {
    Released(target);
    target->Leave(call.scheduler());
  }
  call.Done();
  call.scheduler().Step();
}

void DeleteCriticalSection(CRITICAL_SECTION* section) {
  Service call(ServiceId::kDeleteCriticalSection);
  Section* target = call->sections.Find(section);
  call.Arguments([&] { return SectionName(target); });
  if (target != nullptr) target->deleted = true;
  call.Done();
}

HANDLE CreateEventW(SECURITY_ATTRIBUTES* /*security*/, BOOL manual_reset, BOOL initially_set,
                    const wchar_t* name) {
  Service call(ServiceId::kCreateEventW);
  call.Arguments([&] {
    return List({manual_reset != FALSE ? "manual" : "auto",
                 initially_set != FALSE ? "set" : "not set", Quoted(name)});
  });
  const HANDLE none = nullptr;
  if (call.ToldToFail()) return none;
  if (name != nullptr && *name == 0) name = nullptr;
  WorldState& world = *call.operator->();
  auto event = name != nullptr ? FindNamed(world, name) : nullptr;
  SetLastError(event != nullptr ? kAlreadyExists : ERROR_SUCCESS);
  if (event == nullptr) {
    event = MakeEvent(world, manual_reset != FALSE, initially_set != FALSE, name);
  }
  return call.Open(event);
}

BOOL EventModify(HANDLE event, DWORD action) {
  Service call(ServiceId::kEventModify);
  call.Arguments([&] {
    const std::string what = action == EVENT_SET     ? "EVENT_SET"
                             : action == EVENT_RESET ? "EVENT_RESET"
                                                     : Number(action);
    return List({call.Name(event), what});
  });
  if (call.ToldToFail()) return FALSE;
  const auto target = call->Find<Event>(event);
  if (target == nullptr) return call.Fails(ERROR_INVALID_HANDLE, FALSE);
  if (action != EVENT_SET && action != EVENT_RESET) {
    return call.Fails(ERROR_INVALID_PARAMETER, FALSE);
  }
  if (action == EVENT_SET) {
    Released(target.get());
    target->Set(call.scheduler());
  } else {
    target->Reset();
  }
  call.Succeeds(ERROR_SUCCESS);
  call.scheduler().Step();
  return TRUE;
}

DWORD WaitForSingleObject(HANDLE handle, DWORD timeout_ms) {
  Service call(ServiceId::kWaitForSingleObject);
  call.Arguments([&] { return List({call.Name(handle), Duration(timeout_ms)}); });
  if (call.ToldToFail()) return WAIT_FAILED;
  const DWORD result = WaitForHandle(call, handle, timeout_ms);
  if (result == WAIT_FAILED) return call.Fails(ERROR_INVALID_HANDLE, result);
  return call.Returns(result, [&] { return result == WAIT_OBJECT_0 ? "signalled" : "timed out"; });
}
