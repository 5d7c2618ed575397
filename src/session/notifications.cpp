// SPDX-License-Identifier: MIT
// CIpodComm: the notification thread, which follows the play status and answers the iPod's
// requests.
#include "ipodcomm/CIpodComm.h"
#include "platform/services.h"
#include "protocol/frame.h"
#include "session/ipod_requests.h"

using ipodcomm::FrameBytes;
using ipodcomm::LockScope;

namespace {

constexpr std::uint32_t kStopped = 0;
constexpr std::uint32_t kPlaying = 1;
constexpr std::uint32_t kPaused = 2;

}  // namespace

void CIpodComm::HandleNextNotification() {
  tagSERIAL_PACKET packet = {};
  if (GetNextNotificationPacket(&packet)) {
    MeetRequest(packet, ipodcomm::RequestReceiver::kNotificationThread);
  }
}

void CIpodComm::StorePlayStatus(const FrameBytes& data) {
  const std::uint32_t number = data.Number32(1);
  const LockScope lock(play_status_lock_);
  play_status_.tick_ms = static_cast<std::uint32_t>(GetTickCount());
  // A missing type is no type; what is missing of a number reads as 0.
  if (data.length() == 0) return;
  switch (data[0]) {
    case 0x00:  // playback stopped
      play_status_.state = kStopped;
      break;
    case 0x01:  // track changed
      play_status_.track_index = number;
      break;
    case 0x04:  // position in milliseconds
      play_status_.position_s = number / 1000;
      break;
    case 0x06:  // playback status
      if (data[1] == 0x02) play_status_.state = kStopped;
      if (data[1] == 0x0A) play_status_.state = kPlaying;
      if (data[1] == 0x0B) play_status_.state = kPaused;
      break;
    case 0x07:  // position in seconds
      play_status_.position_s = number;
      break;
    default:
      break;
  }
}

int CIpodComm::GetPlayStatus(tagIPOD_PLAY_STATUS* status) {
  const PlayStatus known = CopyOfPlayStatus();
  *status = {known.state, known.position_s, known.track_index, known.tick_ms};
  return 1;
}
