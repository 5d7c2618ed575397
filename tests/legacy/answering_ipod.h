// SPDX-License-Identifier: MIT
// An iPod that answers by what is asked, however the request is framed and whatever it carries.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "support/bytes.h"
#include "world/line/serial_device.h"

namespace test {

/// It reads small frames, and silently takes what it has no answer for.
class AnsweringIpod : public ipodcomm::virtual_platform::SerialDevice {
 public:
  /// From now on a request that begins with `start` (lingo, command, payload) gets `reply`, whole
  /// frames; nothing when that is empty. The longest start wins, then the last one given.
  void Answer(std::string_view start, std::string_view reply) { AnswerNth(start, 0, reply); }
  /// The same for the `nth` such request from now on, counted from 1, and for no other.
  void AnswerNth(std::string_view start, unsigned nth, std::string_view reply);

  /// Asked at each frame's first byte; what it returns stands before the frame, as "caption: FF..".
  void SetCaption(std::function<std::string()> caption) { caption_ = std::move(caption); }

  /// Frames received since the last call. One that is not right is marked.
  std::vector<std::string> DrainFrames();
  /// What those of them that write to file `handle` write. They must follow each other from
  /// `offset` on.
  std::vector<std::string> DrainLines(std::uint8_t handle, std::uint32_t offset);

  void Receive(const std::uint8_t* data, std::size_t size, std::int64_t now_us) override;
  std::optional<std::int64_t> NextEvent() override;
  std::vector<std::uint8_t> Transmit(std::int64_t now_us) override;

 private:
  struct Rule {
    Bytes start;
    Bytes reply;
    unsigned nth;  // 0: always
    unsigned seen = 0;
  };
  struct Frame {
    std::string caption;
    Bytes bytes;
    bool right = false;
  };

  void AcceptFrame();
  void Reply(const Bytes& request);

  std::vector<Rule> rules_;
  std::function<std::string()> caption_;
  Frame receiving_;
  std::vector<Frame> frames_;
  Bytes outgoing_;
};

}  // namespace test
