// SPDX-License-Identifier: MIT
// Locks and events.
#include <condition_variable>
#include <map>
#include <mutex>
#include <string>

#include "platform/common/out_of_memory.h"
#include "platform/posix/objects.h"
#include "platform/posix/signal.h"
#include "platform/posix/threads.h"

namespace ipodcomm::platform {
namespace {

// A recursive lock. Deleting it takes effect when nobody holds it or waits for it, so that a thread
// caught inside by the deletion of what the lock guards still gets out, and others in turn.
class Lock : public Object {
 public:
  // False when the lock has been deleted.
  bool Enter() {
    ThreadState& thread = CurrentThread();
    std::unique_lock lock(mutex_);
    if (owner_ != thread.id()) {
      if (gone_) return false;
      ++waiting_;
      free_.wait(lock, [this] { return owner_ == 0; });
      --waiting_;
      owner_ = thread.id();
    }
    ++depth_;
    thread.CountLock(1);
    return true;
  }

  // False when that was the last use of a deleted lock.
  bool Leave() {
    ThreadState& thread = CurrentThread();
    const std::lock_guard lock(mutex_);
    if (owner_ != thread.id()) return true;
    thread.CountLock(-1);
    if (--depth_ > 0) return true;
    owner_ = 0;
    if (waiting_ > 0) free_.notify_one();
    return KeepUnlessUnused();
  }

  // False when the lock is gone at once.
  bool Delete() {
    const std::lock_guard lock(mutex_);
    deleted_ = true;
    return KeepUnlessUnused();
  }

 private:
  bool KeepUnlessUnused() {
    if (deleted_ && owner_ == 0 && waiting_ == 0) gone_ = true;
    return !gone_;
  }

  std::mutex mutex_;
  std::condition_variable free_;
  DWORD owner_ = 0;
  int depth_ = 0;
  int waiting_ = 0;
  bool deleted_ = false;
  bool gone_ = false;
};

// Locks are named by a handle too, so that a copy of the bytes is the same lock and a deleted one
// is known. They have a table of their own, with nothing else in it; CloseHandle does not know
// them.
HandleTable& Locks() {
  static auto* const locks = new HandleTable;
  return *locks;
}

// Made before anything can run out of memory: the lock of all sections for which there is none
// left. They then wait for each other more than they need to, and still guard what they guard.
const HANDLE shared_lock = Locks().Add(std::make_shared<Lock>());

std::shared_ptr<Lock> FindLock(const CRITICAL_SECTION* section) {
  return std::static_pointer_cast<Lock>(Locks().Find(section->impl));
}

class Event : public Closable {
 public:
  Event(bool manual, bool set) : signal(manual, set) {}
  Signal signal;
};

// Events with a name are shared within the process, and exist as long as somebody uses them.
class NamedEvents {
 public:
  std::shared_ptr<Event> FindOrCreate(const std::wstring& name, bool manual, bool set,
                                      bool* existed) {
    const std::lock_guard lock(mutex_);
    auto event = events_[name].lock();
    *existed = event != nullptr;
    if (event == nullptr) {
      event = std::make_shared<Event>(manual, set);
      events_[name] = event;
    }
    return event;
  }

 private:
  std::mutex mutex_;
  std::map<std::wstring, std::weak_ptr<Event>> events_;
};

NamedEvents& Names() {
  static auto* const names = new NamedEvents;
  return *names;
}

constexpr DWORD kAlreadyExists = 183;

}  // namespace
}  // namespace ipodcomm::platform

using namespace ipodcomm::platform;

void InitializeCriticalSection(CRITICAL_SECTION* section) {
  section->impl =
      FailWithoutMemory(shared_lock, [] { return Locks().Add(std::make_shared<Lock>()); });
}

void EnterCriticalSection(CRITICAL_SECTION* section) {
  if (const auto lock = FindLock(section)) lock->Enter();
}

void LeaveCriticalSection(CRITICAL_SECTION* section) {
  const auto lock = FindLock(section);
  if (lock != nullptr && !lock->Leave()) Locks().Remove(section->impl);
}

void DeleteCriticalSection(CRITICAL_SECTION* section) {
  if (section->impl == shared_lock) return;
  // The section's own memory is left alone: another thread may be reading it just now.
  const auto lock = FindLock(section);
  if (lock != nullptr && !lock->Delete()) Locks().Remove(section->impl);
}

HANDLE CreateEventW(SECURITY_ATTRIBUTES* /*security*/, BOOL manual_reset, BOOL initially_set,
                    const wchar_t* name) {
  const bool manual = manual_reset != FALSE;
  const bool set = initially_set != FALSE;
  const HANDLE none = nullptr;
  return FailWithoutMemory(none, [&] {
    if (name == nullptr || *name == 0) return NewHandle(std::make_shared<Event>(manual, set));
    bool existed = false;
    const HANDLE handle = NewHandle(Names().FindOrCreate(name, manual, set, &existed));
    if (handle != nullptr) SetLastError(existed ? kAlreadyExists : ERROR_SUCCESS);
    return handle;
  });
}

BOOL EventModify(HANDLE event, DWORD action) {
  const auto target = OpenObject<Event>(event);
  if (target == nullptr) return FALSE;
  switch (action) {
    case EVENT_SET:
      target->signal.Set();
      return TRUE;
    case EVENT_RESET:
      target->signal.Reset();
      return TRUE;
    default:
      SetLastError(ERROR_INVALID_PARAMETER);
      return FALSE;
  }
}

DWORD WaitForSingleObject(HANDLE handle, DWORD timeout_ms) {
  const auto object = OpenObject<Closable>(handle);
  if (const auto event = std::dynamic_pointer_cast<Event>(object)) {
    return event->signal.Wait(timeout_ms);
  }
  if (const auto thread = std::dynamic_pointer_cast<Thread>(object)) {
    return thread->ended().Wait(timeout_ms);
  }
  SetLastError(ERROR_INVALID_HANDLE);
  return WAIT_FAILED;
}
