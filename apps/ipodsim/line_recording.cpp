// SPDX-License-Identifier: MIT
// The recording of the line that ipodsim --capture asks for.
#include "line_recording.h"

#include <memory>
#include <vector>

#include "platform/capture/line_tap.h"

using namespace ipodcomm::capture;

ipodsim::PtyServer::Tap RecordLine(const std::string& file, std::uint32_t baud,
                                   std::string* error) {
  const auto recording = Recording::Start(file, error);
  if (recording == nullptr) return {};
  const auto tap = std::make_shared<LineTap>(recording, "simulated iPod");
  tap->Configure(baud,
                 baud == 0 ? "a pseudo-terminal without a speed" : std::to_string(baud) + " baud",
                 WallClock());
  return [tap](ipodsim::LineEnd sender, const std::vector<std::uint8_t>& bytes) {
    const Direction direction =
        sender == ipodsim::LineEnd::kAccessory ? Direction::kSent : Direction::kReceived;
    tap->Record(direction, bytes.data(), bytes.size(), WallClock());
  };
}
