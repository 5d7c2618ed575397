// SPDX-License-Identifier: MIT
// An iPod that takes workouts, as far as a script tells it: each kind of request has its replies,
// whatever data it carries.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "world/line/scripted_device.h"

namespace test {

class WorkoutIpod : public ipodcomm::virtual_platform::SerialDevice {
 public:
  using Bytes = std::vector<std::uint8_t>;

  /// A Storage write as it came.
  struct Write {
    std::uint32_t offset;
    int handle;
    std::string text;
  };

  /// Takes workouts and acknowledges everything; the file's handle is 2A.
  WorkoutIpod();

  /// Replies to the requests of a kind ("0C 07": lingo and command) with these whole frames in
  /// turn, and with the last one for ever. An empty frame is silence.
  void Reply(const std::string& kind, const std::vector<std::string>& replies);

  /// Frames received since the last call, as text.
  std::vector<std::string> DrainFrames();
  /// The kinds of the frames received since the last call.
  std::vector<std::string> DrainKinds();
  /// The writes among the frames received since the last call.
  std::vector<Write> DrainWrites();

  void Receive(const std::uint8_t* data, std::size_t size, std::int64_t now_us) override;
  std::optional<std::int64_t> NextEvent() override;
  Bytes Transmit(std::int64_t now_us) override;

 private:
  std::vector<Bytes> DrainReceived();
  void ReplyTo(const Bytes& frame);

  std::map<std::string, std::vector<Bytes>> replies_;
  std::vector<Bytes> frames_;
  Bytes unfinished_;
  Bytes outgoing_;
};

}  // namespace test
