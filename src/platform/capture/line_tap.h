// SPDX-License-Identifier: MIT
// One line's part of a recording.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "platform/capture/frame_splitter.h"
#include "platform/capture/pcapng.h"
#include "platform/capture/recording.h"

namespace ipodcomm::capture {

/// Records a packet for each frame, and for each run of bytes that are no frame. A frame that does
/// not go on for a quarter of a second has been cut: it is recorded as bytes that are none.
///
/// All members may be called from any thread, with the time at which it happened.
class LineTap {
 public:
  /// @param name of the line, for example "/dev/ttyUSB0"
  LineTap(std::shared_ptr<Recording> recording, std::string name);
  /// Closes the recording of the line, at the time of what happened last.
  ~LineTap();
  LineTap(const LineTap&) = delete;
  LineTap& operator=(const LineTap&) = delete;

  /// The line's settings, from now on; to be called before anything is recorded. When they differ
  /// from those before, an interface of its own begins.
  void Configure(std::uint32_t baud, const std::string& description, Nanoseconds now);
  void Record(Direction direction, const void* bytes, std::size_t count, Nanoseconds now);
  /// Something other than a byte, such as a framing error.
  void Record(Event event, Nanoseconds now, const std::string& comment = {});
  /// The control lines, as bits of ControlLine, from now on.
  void set_control_lines(std::uint8_t lines);

 private:
  template <class Action>
  void LoseWithoutMemory(const Action& action);
  void EndLongSilence(Nanoseconds now, bool sent_goes_on);
  void EndRun(Direction direction);
  void AddRuns(Direction direction, const std::vector<ByteRun>& runs);
  void Add(Packet packet);
  bool AddLoss(const Packet& next);
  void EndInterface();

  const std::shared_ptr<Recording> recording_;
  std::mutex mutex_;  // guards what follows
  Interface line_;
  std::optional<Statistics> statistics_;  // of the interface, once there is one
  FrameSplitter received_;
  FrameSplitter sent_;
  std::uint64_t missing_ = 0;  // packets lost since the last that was recorded
  std::uint8_t control_lines_ = 0;
};

}  // namespace ipodcomm::capture
