// SPDX-License-Identifier: MIT
// What the exported classes are made of; hosts have no use for it.
#pragma once

#include <cstdint>

#include "ipodcomm/IpodTypes.h"
#include "ipodcomm/detail/Shared.h"

namespace ipodcomm {

/// The pauses on the line, as the conduct asks for them and the traffic allows, and how patient it
/// is with frames. The host chooses, the read thread and whoever writes ask.
class LinePace {
 public:
  /// Any thread.
  void Choose(const tagIPOD_CONDUCT& conduct);

  /// The pause after a sync byte, in milliseconds; 0 for none.
  std::uint32_t sync_pause_ms() const;
  /// The most bytes that one read asks for.
  std::uint32_t bytes_per_read() const { return bytes_per_read_; }

  /// The pauses after a read that brought something, nothing, or failed. The read thread's, the
  /// second within the lock that FrameWritten is called in.
  std::uint32_t PauseAfterBytes();
  std::uint32_t PauseAfterNothing();
  std::uint32_t PauseAfterFailure() const { return failed_read_pause_ms_; }

  /// Whether the pause after nothing grows, so that it is worth while to end one.
  bool pause_grows() const { return quiet_read_pause_ms_ > empty_read_pause_ms_; }

  /// Whether what a damaged frame swallowed is looked through for frames, and a frame whose bytes
  /// stop coming is damaged.
  bool rereads_damaged() const { return rereads_damaged_ != 0; }

  /// A port was opened: whether the iPod listens is not known yet.
  void PortOpened();
  /// A frame came: the iPod listens.
  void FrameReceived() { answered_ = 1; }
  /// A frame was written, so an answer is near.
  void FrameWritten() { quiet_ms_ = 0; }

 private:
  Shared<std::uint32_t> sync_pause_ms_ = IPOD_CONDUCT_FIELD.sync_pause_ms;
  Shared<std::uint32_t> read_pause_ms_ = IPOD_CONDUCT_FIELD.read_pause_ms;
  Shared<std::uint32_t> empty_read_pause_ms_ = IPOD_CONDUCT_FIELD.empty_read_pause_ms;
  Shared<std::uint32_t> failed_read_pause_ms_ = IPOD_CONDUCT_FIELD.failed_read_pause_ms;
  Shared<std::uint32_t> quiet_read_pause_ms_ = IPOD_CONDUCT_FIELD.quiet_read_pause_ms;
  Shared<std::uint32_t> bytes_per_read_ = IPOD_CONDUCT_FIELD.bytes_per_read;
  Shared<std::int32_t> sync_pause_until_answered_ = IPOD_CONDUCT_FIELD.sync_pause_until_answered;
  Shared<std::int32_t> rereads_damaged_ = IPOD_CONDUCT_FIELD.robust;

  Shared<std::int32_t> answered_ = 0;   // since the port was opened
  Shared<std::uint32_t> quiet_ms_ = 0;  // pauses since the last byte or write, together
};

}  // namespace ipodcomm
