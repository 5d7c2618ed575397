// SPDX-License-Identifier: MIT
// A docked iPod that says anything, until it behaves.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "input.h"
#include "world/line/serial_device.h"

namespace fuzz {

/// What a host asked, from the lingo on.
struct Question {
  std::uint8_t lingo = 0;
  std::uint16_t command = 0;
  std::vector<std::uint8_t> identifier;  // empty where there is none
};

/// To each question it gives the input's next answer:
///
///   how  count  bytes
///
/// The lowest two bits of `how` say what the bytes are: everything, from the sync byte on; a frame
/// from the lingo on; the data of the answer that belongs to the question; or the status of an ACK
/// to it. The next bit has the input's next answer follow at once, the one after it makes the frame
/// a large one.
///
/// When the input is at its end it refuses what it is asked: silence would cost a second each time.
class AnyIpod : public ipodcomm::virtual_platform::SerialDevice {
 public:
  using Bytes = std::vector<std::uint8_t>;

  /// @param identifiers whether what it is asked carries transaction identifiers
  AnyIpod(Input* input, bool identifiers) : input_(input), identifiers_(identifiers) {}

  /// Says the input's next answer though nothing was asked.
  void SpeakUp() { SayNext({}); }
  /// From now on RequestiPodModelNum is answered, 00010203 "MA477", and nothing else.
  void Behave();
  /// Sends that as well, as it is.
  void Send(const Bytes& bytes);

  void Receive(const std::uint8_t* data, std::size_t size, std::int64_t now_us) override;
  std::optional<std::int64_t> NextEvent() override;
  Bytes Transmit(std::int64_t now_us) override;

 private:
  Question ReadQuestion(const Bytes& content) const;
  void Answer(const Question& question);
  void SayNext(const Question& question);

  Input* const input_;
  const bool identifiers_;
  bool behaves_ = false;
  Bytes heard_;  // of the frame that is arriving
  Bytes outgoing_;
};

}  // namespace fuzz
