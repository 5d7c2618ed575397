// SPDX-License-Identifier: MIT
// A serial line with a device at its far end, and the collection of a world's lines.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <utility>

#include "platform/services.h"
#include "world/clock.h"
#include "world/line/delivery.h"
#include "world/line/line_recording.h"
#include "world/line/serial_device.h"
#include "world/line/wire.h"
#include "world/line/wire_faults.h"

namespace ipodcomm::virtual_platform {

class SerialPort;

/// 57600 baud and 10 bits per byte in both directions. Each byte arrives when its last bit does.
///
/// The driver's transmit queue holds kTransmitQueueBytes, the byte that is being sent included.
/// What was written goes out even when the port is closed meanwhile. Received bytes are lost while
/// no port is open, and while kReceiveQueueBytes are waiting to be read.
class SerialLine {
 public:
  static constexpr std::size_t kTransmitQueueBytes = 1024;
  static constexpr std::size_t kReceiveQueueBytes = 4096;

  /// @param tap records the line; null when it is not recorded
  explicit SerialLine(const Clock& clock, std::unique_ptr<capture::LineTap> tap = nullptr)
      : clock_(clock), tap_(std::move(tap)) {}
  SerialLine(const SerialLine&) = delete;
  SerialLine& operator=(const SerialLine&) = delete;

  /// Connects a device, which must outlive the world or be unplugged; replaces another.
  void Plug(SerialDevice& device);
  /// The same for any model with the members of a SerialDevice.
  template <class Model>
  void PlugModel(Model& model) {
    PlugOwned(std::make_unique<ModelDevice<Model>>(model));
  }
  /// Disconnects the device. What it was sending is lost; what the host sends goes nowhere.
  void Unplug();

  /// The port itself is gone, as an adapter pulled out: reads, writes and waits fail at once with
  /// code 31, opening fails with code 2.
  void Vanish();
  /// The port is there again. A handle opened before works again, too.
  void Restore();

  void SetSpeed(std::uint32_t baud, std::uint32_t bits_per_byte = 10);
  /// How the device's bytes come from now on; at first as the environment says.
  void SetDelivery(Delivery::Manner manner);

  bool vanished() const { return vanished_; }
  /// Whether the host has the port open.
  bool open() const { return port_ != nullptr; }

  /// Faults of one direction.
  WireFaults& to_host() { return to_host_.faults(); }
  WireFaults& to_device() { return to_device_.faults(); }

 private:
  friend class SerialLines;
  friend class SerialPort;

  // For the recording.
  void NoteSettings(const DCB& settings);
  void NoteByte(capture::Direction direction, std::uint8_t byte);

  void PlugOwned(std::unique_ptr<SerialDevice> device);
  std::int64_t NextEvent();
  void RunUntil(std::int64_t now_us, class Scheduler& scheduler);
  bool RunOnce(std::int64_t now_us, Scheduler& scheduler);

  const Clock& clock_;
  const std::unique_ptr<capture::LineTap> tap_;
  Delivery delivery_;
  Wire to_host_;
  Wire to_device_;
  SerialDevice* device_ = nullptr;
  std::unique_ptr<SerialDevice> owned_device_;
  SerialPort* port_ = nullptr;  // while one is open
  bool vanished_ = false;
};

/// The lines of a world by the names of their ports: "COM2:", also without the colon and in any
/// case.
class SerialLines : public Timeline {
 public:
  SerialLines(const Clock& clock, std::uint64_t seed) : clock_(clock), seed_(seed) {}
  /// Whose threads the arriving bytes wake.
  void SetScheduler(Scheduler& scheduler) { scheduler_ = &scheduler; }

  /// Creates the line when there is none.
  SerialLine& Get(const std::string& name);
  SerialLine* Find(const std::string& name) const;

  std::int64_t NextEvent() override;
  void RunUntil(std::int64_t now_us) override;

 private:
  const Clock& clock_;
  const std::uint64_t seed_;
  const LineRecording recording_;
  Scheduler* scheduler_ = nullptr;
  std::map<std::string, std::unique_ptr<SerialLine>> lines_;
};

}  // namespace ipodcomm::virtual_platform
