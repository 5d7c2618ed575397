// SPDX-License-Identifier: MIT
// CIpodComm: how the two worker threads start, run and let go of the session.
#include "ipodcomm/CIpodComm.h"
#include "platform/services.h"

namespace {
constexpr DWORD kLookAgainMs = 1;
}  // namespace

unsigned long WINAPI CIpodComm::ReadPacketThread(void* object) {
  static_cast<CIpodComm*>(object)->ReadPacketThread();
  return 0;
}

unsigned long WINAPI CIpodComm::NotificationThread(void* object) {
  static_cast<CIpodComm*>(object)->NotificationThread();
  return 0;
}

void CIpodComm::ReadPacketThread() { RunWorker(&CIpodComm::RouteNextPacket); }

void CIpodComm::NotificationThread() { RunWorker(&CIpodComm::HandleNextNotification); }

HANDLE CIpodComm::StartWorker(unsigned long(WINAPI* entry)(void*)) {
  if (lifeline_->gone()) return nullptr;  // made while memory was out
  lifeline_->Begin();
  const HANDLE thread = CreateThread(nullptr, 0, entry, this, 0, nullptr);
  if (thread == nullptr) lifeline_->Abandon();
  return thread;
}

// Turn after turn while the session lives, and then sleep for good: the workers are never stopped.
// The constructor entered the lifeline for this thread, so the session is there for the first
// turn.
void CIpodComm::RunWorker(void (CIpodComm::*turn)()) {
  std::shared_ptr<ipodcomm::Lifeline> lifeline = lifeline_.shared();
  unsigned generation = 0;
  if (!lifeline->Inherit(&generation)) return;
  do {
    (this->*turn)();
    lifeline->Leave();
  } while (lifeline->Enter());
  lifeline.reset();
  Sleep(INFINITE);
}

// Turns the workers away and wakes those that wait, so that both let go at once. The packet event
// has a name, so its signal may go to another session's thread: it is given until both are out.
void CIpodComm::LetWorkersGo() {
  lifeline_->Close();
  for (;;) {
    EventModify(serial_.packet_event_, EVENT_SET);
    notification_.Wake();
    if (lifeline_->empty()) break;
    Sleep(kLookAgainMs);
  }
}
