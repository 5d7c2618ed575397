// SPDX-License-Identifier: MIT
// Hears what goes over the line to a device, and finds out what went wrong there.
#pragma once

#include <vector>

#include "wire/findings/findings.h"
#include "wire/transcript.h"
#include "world/line/serial_device.h"

namespace truth {

class Wiretap : public ipodcomm::virtual_platform::SerialDevice {
 public:
  /// @param shown whether every frame is told on standard error
  Wiretap(ipodcomm::virtual_platform::SerialDevice& device, bool shown);

  void Receive(const std::uint8_t* data, std::size_t size, std::int64_t now_us) override;
  std::optional<std::int64_t> NextEvent() override { return device_.NextEvent(); }
  std::vector<std::uint8_t> Transmit(std::int64_t now_us) override;

  /// As the serial driver reports it. Nothing is heard from now on.
  void LoseLine(const char* reason, std::int64_t now_us);
  /// Of the whole session, which is over.
  std::vector<ipodwire::Finding> Findings();

 private:
  void Add(ipodwire::Packet::Event event, std::vector<std::uint8_t> bytes, std::int64_t now_us);

  ipodcomm::virtual_platform::SerialDevice& device_;
  ipodwire::EvidenceCollector evidence_;
  ipodwire::Transcript transcript_;
  ipodwire::Packet packet_;
};

}  // namespace truth
