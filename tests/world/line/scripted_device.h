// SPDX-License-Identifier: MIT
// A device that does what a test tells it, byte by byte.
#pragma once

#include <functional>
#include <map>

#include "world/line/serial_device.h"

namespace ipodcomm::virtual_platform {

/// A byte and when its last bit arrived at the device.
struct Arrival {
  std::int64_t time_us;
  std::uint8_t byte;
};

class ScriptedDevice : public SerialDevice {
 public:
  using Bytes = std::vector<std::uint8_t>;

  /// Sends `bytes` from `time_us` on (from now on when that has passed).
  void SendAt(std::int64_t time_us, const Bytes& bytes);
  void Send(const Bytes& bytes) { SendAt(0, bytes); }
  /// Whenever the bytes received since the last answer end with `request`, sends `reply` after
  /// `delay_us`. The longest request that fits wins.
  void Answer(const Bytes& request, const Bytes& reply, std::int64_t delay_us = 0);

  /// All that was received, or since ClearReceived.
  Bytes received() const;
  std::vector<Arrival> arrivals() const;
  void ClearReceived();

  void Receive(const std::uint8_t* data, std::size_t size, std::int64_t now_us) override;
  std::optional<std::int64_t> NextEvent() override;
  Bytes Transmit(std::int64_t now_us) override;

 private:
  struct Rule {
    Bytes request;
    Bytes reply;
    std::int64_t delay_us;
  };

  void AnswerIfAsked(std::int64_t now_us);

  std::multimap<std::size_t, Rule, std::greater<>> rules_;  // by the size of the request
  std::multimap<std::int64_t, Bytes> outgoing_;             // by the time they begin
  std::vector<Arrival> arrivals_;
  Bytes unanswered_;
};

}  // namespace ipodcomm::virtual_platform
