// SPDX-License-Identifier: MIT
// CIpodComm: the conduct that a host chooses.
#include <algorithm>

#include "ipodcomm/CIpodComm.h"

namespace {

// A pause of 0 after reads that bring nothing would keep a processor busy.
bool IsSensible(const tagIPOD_CONDUCT& conduct) {
  constexpr std::uint32_t kLongestPauseMs = 10000;
  constexpr std::uint32_t kMostBytesPerRead = 1024;
  const auto pause = [](std::uint32_t ms, std::uint32_t least_ms) {
    return ms >= least_ms && ms <= kLongestPauseMs;
  };
  const auto flag = [](std::int32_t value) { return value == 0 || value == 1; };
  return pause(conduct.sync_pause_ms, 0) && pause(conduct.read_pause_ms, 0) &&
         pause(conduct.empty_read_pause_ms, 1) && pause(conduct.failed_read_pause_ms, 1) &&
         pause(conduct.quiet_read_pause_ms, 1) && conduct.bytes_per_read >= 1 &&
         conduct.bytes_per_read <= kMostBytesPerRead && flag(conduct.sync_pause_until_answered) &&
         flag(conduct.robust);
}

}  // namespace

int CIpodComm::SetConduct(const tagIPOD_CONDUCT* conduct) {
  if (conduct == nullptr || !IsSensible(*conduct)) return 0;
  conduct_ = *conduct;
  robust_ = conduct_.robust;
  serial_.ChoosePace(conduct_);
  LimitQueues();
  return 1;
}

// An iPod that talks all the time to a host that does not listen fills no memory. Records that were
// asked for and wait to be taken have their own room.
void CIpodComm::LimitQueues() {
  constexpr std::uint32_t kMostUnasked = 1024;
  constexpr std::uint32_t kMostRecords = 65536;
  const std::uint32_t records = std::min(browsing_.records.left, kMostRecords);
  const std::uint32_t most = conduct_.robust != 0 ? kMostUnasked + records : 0;
  serial_.limit_.Choose(most);
  response_.limit().Choose(most);
  notification_.limit().Choose(most);
}

unsigned long CIpodComm::GetDroppedPackets() {
  return serial_.limit_.dropped() + response_.limit().dropped() + notification_.limit().dropped();
}

int CIpodComm::GetConduct(tagIPOD_CONDUCT* conduct) {
  if (conduct == nullptr) return 0;
  *conduct = conduct_;
  return 1;
}
