// SPDX-License-Identifier: MIT
// Frames told in words, of every lingo, from either side, with and without identifiers. The first
// byte chooses the side and the identifier, the others are the frame's content.
#include <vector>

#include "fuzz.h"
#include "wire/decode.h"
#include "wire/text.h"

namespace {

std::vector<std::uint8_t> LargeFrame(const std::uint8_t* content, std::size_t size) {
  std::vector<std::uint8_t> frame = {0xFF, 0x55, 0x00, static_cast<std::uint8_t>(size >> 8),
                                     static_cast<std::uint8_t>(size)};
  frame.insert(frame.end(), content, content + size);
  unsigned sum = 0;
  for (std::size_t i = 2; i < frame.size(); ++i) sum += frame[i];
  frame.push_back(static_cast<std::uint8_t>(0U - sum));
  return frame;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr std::size_t kMostBytes = 512;
  if (size < 2 || size > kMostBytes) return 0;
  const auto sender = (data[0] & 1) != 0 ? ipodwire::Sender::kIpod : ipodwire::Sender::kAccessory;
  const auto identifier =
      (data[0] & 2) != 0 ? ipodwire::Identifier::kPresent : ipodwire::Identifier::kAbsent;
  ipodwire::Frame frame;
  if (!ipodwire::ParseFrame(LargeFrame(data + 1, size - 1), &frame)) return 0;
  fuzz::Require(frame.large && frame.checksum_holds && frame.lingo == data[1]);
  fuzz::Require(!Describe(Decode(frame, sender, identifier)).empty());
  ipodwire::ProvenIdentifier(frame, sender);
  return 0;
}
