// SPDX-License-Identifier: MIT
// CIpodComm: construction, copying, destruction, opening and closing.
#include <algorithm>
#include <iterator>

#include "ipodcomm/CIpodComm.h"
#include "platform/services.h"
#include "protocol/frame.h"
#include "session/keep_going.h"
#include "session/own_answers.h"

using ipodcomm::LockScope;

CIpodComm::CIpodComm() {
  routing_thread_ = StartWorker(ReadPacketThread);
  notification_thread_ = StartWorker(NotificationThread);
  // One cycle of the port wakes the iPod's receiver and restarts the serial driver.
  serial_.Open(true);
  SendWakeUpByte();
  serial_.Close();
}

CIpodComm::CIpodComm(const CIpodComm& other)
    : serial_(other.serial_),
      response_(other.response_),
      identification_event_(other.identification_event_),
      spare_events_{other.spare_events_[0], other.spare_events_[1]},
      notification_(other.notification_) {
  CopySession(other);
}

CIpodComm& CIpodComm::operator=(const CIpodComm& other) {
  if (this == &other) return *this;
  serial_ = other.serial_;
  response_ = other.response_;
  identification_event_ = other.identification_event_;
  std::copy(std::begin(other.spare_events_), std::end(other.spare_events_), spare_events_);
  notification_ = other.notification_;
  CopySession(other);
  return *this;
}

// Copies what neither the transport nor the queues hold. Fields that threads share are read under
// the source's lock and written under this session's own, one lock at a time.
void CIpodComm::CopySession(const CIpodComm& other) {
  const PlayStatus play_status = other.CopyOfPlayStatus();
  {
    const LockScope lock(play_status_lock_);
    play_status_ = play_status;
  }
  const Outgoing outgoing = other.CopyOfOutgoing();
  {
    const LockScope lock(transmit_lock_);
    outgoing_ = outgoing;
  }
  log_level_ = other.log_level_;
  window_ = other.window_;
  open_ = other.open_;
  transaction_id_mode_ = other.transaction_id_mode_;
  conduct_ = other.conduct_;
  robust_ = other.robust_;
  earlier_ = other.earlier_;
  keep_going_ = other.keep_going_;
  last_exchange_ = other.last_exchange_;
  identify_report_ = other.identify_report_;
  identity_ = other.identity_;
  browsing_ = other.browsing_;
  storage_write_offset_ = other.storage_write_offset_;
  open_file_handle_ = other.open_file_handle_;
  failed_text_writes_ = other.failed_text_writes_;
  routing_thread_ = other.routing_thread_;
  notification_thread_ = other.notification_thread_;
}

CIpodComm::PlayStatus CIpodComm::CopyOfPlayStatus() const {
  const LockScope lock(play_status_lock_);
  return play_status_;
}

CIpodComm::Outgoing CIpodComm::CopyOfOutgoing() const {
  const LockScope lock(transmit_lock_);
  return outgoing_;
}

CIpodComm::~CIpodComm() {
  serial_.Close();
  open_ = 0;
  identity_.sports_supported = 0;
  LetWorkersGo();
  // The threads themselves are neither stopped nor waited for: they sleep until the process ends.
  CloseHandle(routing_thread_);
  CloseHandle(notification_thread_);
  response_.Destroy();
  transmit_lock_.Delete();
  CloseHandle(identification_event_);
  for (const HANDLE event : spare_events_) CloseHandle(event);
  notification_.Destroy();
}

long CIpodComm::Open() {
  response_.Clear();
  notification_.Clear();
  EventModify(identification_event_, EVENT_RESET);
  SetOwnTransactionId(0);
  earlier_ = {};
  const long result = serial_.Open(true);
  if (result == ERROR_SUCCESS) open_ = 1;
  return result;
}

void CIpodComm::Close() {
  serial_.Close();
  open_ = 0;
  identity_.sports_supported = 0;
}

int CIpodComm::IsOpen() { return open_; }

int CIpodComm::SetWindowsHandle(HWND window) {
  window_ = window;
  return 1;
}

void CIpodComm::SetLogLevel(int level) { log_level_ = level; }

bool CIpodComm::GetNextReadPacket(tagSERIAL_PACKET* packet) {
  const auto pop = [&](std::uint32_t ms) { return response_.Pop(packet, ms); };
  if (!ipodcomm::WaitInSlices(HostToAsk(), ipodcomm::PacketQueue::kWaitMs, pop)) return false;
  if (watched_ != nullptr) {
    ipodcomm::ReceivedFrame frame = ipodcomm::ParseFrame(ipodcomm::FrameBytes(*packet));
    watched_->Judge(&frame);
  }
  return true;
}

bool CIpodComm::GetNextNotificationPacket(tagSERIAL_PACKET* packet) {
  return notification_.Pop(packet);
}

unsigned short CIpodComm::PeekNextReadPacket() {
  std::uint16_t command = ipodcomm::PacketQueue::kNoCommand;
  ipodcomm::WaitInSlices(HostToAsk(), ipodcomm::PacketQueue::kWaitMs, [&](std::uint32_t ms) {
    command = response_.PeekCommand(ms);
    return command != ipodcomm::PacketQueue::kNoCommand;
  });
  return command;
}

HANDLE CIpodComm::NewEvent() { return CreateEventW(nullptr, FALSE, FALSE, nullptr); }

bool CIpodComm::SendWakeUpByte() {
  unsigned char byte = ipodcomm::kSyncByte;
  return serial_.WritePacket(&byte, 1) == ERROR_SUCCESS;
}
