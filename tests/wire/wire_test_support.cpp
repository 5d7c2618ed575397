// SPDX-License-Identifier: MIT
#include "wire_test_support.h"

#include <gtest/gtest.h>

#include "wire/text.h"

namespace wire_test {
namespace {

Bytes WithChecksum(Bytes frame) {
  unsigned sum = 0;
  for (std::size_t i = 2; i < frame.size(); ++i) sum += frame[i];
  frame.push_back(static_cast<std::uint8_t>(0U - sum));
  return frame;
}

std::string Words(const Bytes& content, ipodwire::Sender sender, ipodwire::Identifier identifier) {
  ipodwire::Frame frame;
  if (!ipodwire::ParseFrame(Small(content), &frame)) return "no frame";
  const ipodwire::DecodedFrame decoded = ipodwire::Decode(frame, sender, identifier);
  std::string words = ipodwire::Describe(decoded);
  for (const std::string& problem : decoded.problems) words += " ! " + problem;
  return words;
}

}  // namespace

Bytes Small(const Bytes& content) {
  return WithChecksum(Bytes{0xFF, 0x55, static_cast<std::uint8_t>(content.size())} + content);
}

Bytes Large(const Bytes& content) {
  return WithChecksum(Bytes{0xFF, 0x55, 0x00, static_cast<std::uint8_t>(content.size() >> 8),
                            static_cast<std::uint8_t>(content.size())} +
                      content);
}

std::string FromIpod(const Bytes& content) {
  return Words(content, ipodwire::Sender::kIpod, ipodwire::Identifier::kAbsent);
}

std::string FromAccessory(const Bytes& content) {
  return Words(content, ipodwire::Sender::kAccessory, ipodwire::Identifier::kAbsent);
}

std::string FromIpodWithId(const Bytes& content) {
  return Words(content, ipodwire::Sender::kIpod, ipodwire::Identifier::kPresent);
}

std::string FromAccessoryWithId(const Bytes& content) {
  return Words(content, ipodwire::Sender::kAccessory, ipodwire::Identifier::kPresent);
}

Bytes Ascii(const std::string& text) { return {text.begin(), text.end()}; }

Bytes operator+(Bytes left, const Bytes& right) {
  left.insert(left.end(), right.begin(), right.end());
  return left;
}

}  // namespace wire_test
