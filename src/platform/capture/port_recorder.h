// SPDX-License-Identifier: MIT
// Records an open port.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>

#include "platform/capture/line_tap.h"
#include "platform/services.h"

namespace ipodcomm::platform {

/// How often the driver has met something other than bytes since the system started.
struct LineErrors {
  std::uint32_t framing = 0;
  std::uint32_t parity = 0;
  std::uint32_t breaks = 0;
  std::uint32_t overflows = 0;
};

/// What a serial driver tells of its line besides the bytes. False where it tells nothing, as that
/// of a pseudo-terminal does.
class LineStatus {
 public:
  virtual ~LineStatus() = default;
  virtual bool GetErrors(LineErrors* errors) = 0;
  /// @param lines bits of capture::ControlLine
  virtual bool GetControlLines(std::uint8_t* lines) = 0;
};

/// Any thread may call any member.
class PortRecorder {
 public:
  PortRecorder(std::unique_ptr<capture::LineTap> tap, std::unique_ptr<LineStatus> status);

  void Configured(const DCB& settings);
  void Received(const void* bytes, std::size_t count);
  /// @param began when the bytes were handed to the driver
  void Sent(const void* bytes, std::size_t count, capture::Nanoseconds began);

  /// The line has gone away. Told once, as a packet of the line's status.
  /// @param reason the system's
  void Gone(const std::string& reason);

 private:
  void RecordStatus();

  const std::unique_ptr<capture::LineTap> tap_;
  std::mutex mutex_;  // guards what follows
  const std::unique_ptr<LineStatus> status_;
  LineErrors errors_;  // as the driver last told them
  bool tells_errors_;
  bool tells_control_lines_ = true;
  bool gone_ = false;
};

}  // namespace ipodcomm::platform
