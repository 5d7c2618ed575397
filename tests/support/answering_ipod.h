// SPDX-License-Identifier: MIT
// An iPod that answers by what is asked, however the request is framed and whatever it carries.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "support/bytes.h"
#include "world/line/serial_device.h"

namespace test {

/// It reads small frames, and stays silent where a test gave it no answer.
class AnsweringIpod : public ipodcomm::virtual_platform::SerialDevice {
 public:
  /// A Storage write as it came.
  struct Write {
    std::uint32_t offset;
    int handle;
    std::string text;
  };

  /// From now on a request that begins with `start` (lingo, command, payload) gets `reply`, whole
  /// frames; nothing when that is empty. The longest start wins, then the last one given.
  void Answer(std::string_view start, std::string_view reply) { AnswerNth(start, 0, reply); }
  /// The same for the `nth` such request from now on, counted from 1, and for no other.
  void AnswerNth(std::string_view start, unsigned nth, std::string_view reply);
  /// The same with these replies one after the other, and with the last one for ever.
  void AnswerInTurn(std::string_view start, const std::vector<std::string>& replies);

  /// Asked at each frame's first byte; what it returns stands before the frame, as "caption: FF..".
  void SetCaption(std::function<std::string()> caption) { caption_ = std::move(caption); }

  // What was received since the last call of any of these.

  /// Whole frames. One whose checksum is not right is marked.
  std::vector<std::string> DrainFrames();
  /// Lingo and command of each frame: "0C 07".
  std::vector<std::string> DrainKinds();
  /// The Storage writes among the frames.
  std::vector<Write> DrainWrites();
  /// What is written to file `handle`. The writes must follow each other from `offset` on.
  std::vector<std::string> DrainLines(int handle, std::uint32_t offset);

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

    /// From the lingo to the byte before the checksum.
    Bytes Request() const;
  };

  std::vector<Frame> Drain();
  void AcceptFrame();
  void Reply(const Bytes& request);

  std::multimap<std::size_t, Rule, std::greater<>> rules_;  // by the size of the start
  std::function<std::string()> caption_;
  Frame receiving_;
  std::vector<Frame> frames_;
  Bytes outgoing_;
};

}  // namespace test
