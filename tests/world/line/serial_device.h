// SPDX-License-Identifier: MIT
// What is at the far end of a serial line.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace ipodcomm::virtual_platform {

/// A model without I/O: bytes in, bytes out, a clock handed in. It is called on whatever thread has
/// just let the clock move, and must not call the platform's services.
class SerialDevice {
 public:
  virtual ~SerialDevice() = default;
  /// Bytes from the host. The line hands over each byte when its last bit has arrived.
  virtual void Receive(const std::uint8_t* data, std::size_t size, std::int64_t now_us) = 0;
  /// When the device next wants Transmit to be called; nothing while it only listens. A time that
  /// has passed means at once.
  virtual std::optional<std::int64_t> NextEvent() = 0;
  /// Lets the device act. Returns what it sends from now on, at the line's speed.
  virtual std::vector<std::uint8_t> Transmit(std::int64_t now_us) = 0;
};

/// Makes a device of any model that has the same three members.
template <class Model>
class ModelDevice : public SerialDevice {
 public:
  explicit ModelDevice(Model& model) : model_(model) {}

  void Receive(const std::uint8_t* data, std::size_t size, std::int64_t now_us) override {
    model_.Receive(data, size, now_us);
  }
  std::optional<std::int64_t> NextEvent() override { return model_.NextEvent(); }
  std::vector<std::uint8_t> Transmit(std::int64_t now_us) override {
    return model_.Transmit(now_us);
  }

 private:
  Model& model_;
};

}  // namespace ipodcomm::virtual_platform
