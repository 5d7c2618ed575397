// SPDX-License-Identifier: MIT
// The cable between the line and the simulated iPod: it can be pulled at any byte and at any
// moment, and is put back a while later.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "simulator/simulated_ipod.h"
#include "world/line/serial_device.h"

namespace reliability {

class Cable : public ipodcomm::virtual_platform::SerialDevice {
 public:
  explicit Cable(ipodsim::SimulatedIpod& ipod) : ipod_(ipod) {}

  /// It is pulled after so many bytes in either direction from now on, for so long.
  void PullAfter(std::uint64_t bytes, std::int64_t out_us);
  /// It is pulled at once.
  void Pull(std::int64_t out_us);
  /// It has been pulled since PullAfter or Pull was asked for.
  bool pulled() const { return pulled_; }
  /// Bytes that have come through so far.
  std::uint64_t bytes() const { return bytes_; }

  void Receive(const std::uint8_t* data, std::size_t size, std::int64_t now_us) override;
  std::optional<std::int64_t> NextEvent() override;
  std::vector<std::uint8_t> Transmit(std::int64_t now_us) override;

 private:
  bool out() const { return back_us_.has_value(); }
  void ComeOut(std::int64_t now_us);
  /// How many of `count` bytes still come through; the cable comes out behind them.
  std::size_t LetThrough(std::size_t count, std::int64_t now_us);

  ipodsim::SimulatedIpod& ipod_;
  std::uint64_t bytes_ = 0;
  std::optional<std::uint64_t> pull_at_;  // a count of bytes
  bool pull_now_ = false;
  bool pulled_ = false;
  std::int64_t out_us_ = 0;
  std::optional<std::int64_t> back_us_;  // while it is out
};

}  // namespace reliability
