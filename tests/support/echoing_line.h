// SPDX-License-Identifier: MIT
// A line that is wired to itself: what is sent comes back, and nothing else does.
#pragma once

#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include "world/line/serial_device.h"

namespace test {

class EchoingLine : public ipodcomm::virtual_platform::SerialDevice {
 public:
  void Receive(const std::uint8_t* data, std::size_t size, std::int64_t /*now_us*/) override {
    echo_.insert(echo_.end(), data, data + size);
  }
  std::optional<std::int64_t> NextEvent() override {
    if (echo_.empty()) return std::nullopt;
    return 0;
  }
  std::vector<std::uint8_t> Transmit(std::int64_t /*now_us*/) override {
    return std::exchange(echo_, {});
  }

 private:
  std::vector<std::uint8_t> echo_;
};

}  // namespace test
