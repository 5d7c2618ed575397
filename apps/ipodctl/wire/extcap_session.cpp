// SPDX-License-Identifier: MIT
#include "wire/extcap_session.h"

#include <array>
#include <memory>

#include "console/interrupt.h"
#include "wire/recording_pipe.h"
#include "wire/wireshark_pipe.h"

namespace ipodctl {

namespace {

// What Wireshark no longer wants is dropped, so that the session ends in good order.
void Relay(RecordingPipe& from, WiresharkPipe& to) {
  std::array<std::uint8_t, 4096> bytes{};
  const auto look_at_reader = [&] {
    if (!to.IsRead()) Interrupt();
  };
  while (const std::size_t count = from.Read(bytes.data(), bytes.size(), look_at_reader)) {
    if (!to.Write(bytes.data(), count)) Interrupt();
  }
}

}  // namespace

void RecordForWireshark(const std::string& pipe) {
  const auto to = std::make_shared<WiresharkPipe>(pipe);
  static const RecordingPipe recording([to](RecordingPipe& from) { Relay(from, *to); });
}

}  // namespace ipodctl
