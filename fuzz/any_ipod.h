// SPDX-License-Identifier: MIT
// A docked iPod that says anything, until it behaves.
#pragma once

#include <algorithm>
#include <vector>

#include "fuzz.h"
#include "world/line/scripted_device.h"
#include "world/world.h"

namespace fuzz {

using ipodcomm::virtual_platform::kMillisecond;
using ipodcomm::virtual_platform::kSecond;
using ipodcomm::virtual_platform::ScriptedDevice;
using ipodcomm::virtual_platform::World;
using Bytes = std::vector<std::uint8_t>;

/// A good frame of the small form.
/// @param content from the lingo on, at most 255 bytes
inline Bytes Frame(const Bytes& content) {
  Bytes frame = {0xFF, 0x55, static_cast<std::uint8_t>(content.size())};
  frame.insert(frame.end(), content.begin(), content.end());
  unsigned sum = 0;
  for (std::size_t i = 2; i < frame.size(); ++i) sum += frame[i];
  frame.push_back(static_cast<std::uint8_t>(0U - sum));
  return frame;
}

/// What a fuzzer of a session is given: the first byte's bits choose, the others are what the iPod
/// says.
struct Input {
  static constexpr std::size_t kMostBytes = 1024;

  bool fast;
  bool in_an_answer;  // to RequestiPodName, under a good frame; else at once, as they are
  Bytes said;

  /// @param size 1 to kMostBytes
  Input(const std::uint8_t* data, std::size_t size)
      : fast((data[0] & 1) != 0), in_an_answer((data[0] & 2) != 0), said(data + 1, data + size) {}
};

inline void SayAnything(ScriptedDevice* ipod, const Input& input) {
  if (!input.in_an_answer) return ipod->Send(input.said);
  constexpr std::size_t kMostInFrame = 250;
  Bytes content = {0x00, 0x08};
  const auto count = static_cast<std::ptrdiff_t>(std::min(input.said.size(), kMostInFrame));
  content.insert(content.end(), input.said.begin(), input.said.begin() + count);
  ipod->Answer({0xFF, 0x55, 0x02, 0x00, 0x07, 0xF7}, Frame(content));
}

/// From now on RequestiPodModelNum is answered: 00010203, "MA477".
inline void Behave(ScriptedDevice* ipod) {
  ipod->Answer({0xFF, 0x55, 0x02, 0x00, 0x0D, 0xF1},
               Frame({0x00, 0x0E, 0x00, 0x01, 0x02, 0x03, 'M', 'A', '4', '7', '7', 0x00}));
}

}  // namespace fuzz
