// SPDX-License-Identifier: MIT
// Packs identification tokens into SetFIDTokenValues packets.
#pragma once

#include <functional>
#include <utility>

namespace ipodcomm {

/// The buffer of one packet: a count byte, then tokens back to back. A token that does not fit is
/// written again into a fresh packet, once what the buffer holds has been sent.
class TokenPacket {
 public:
  /// Sends `length` bytes, the count byte included; false when the iPod did not take them.
  using Sender = std::function<bool(unsigned char* payload, unsigned long length)>;
  /// Writes a token into at most `capacity` bytes; its size, or 0xFFFFFFFF when it does not fit.
  using Builder = std::function<unsigned long(unsigned char* destination, unsigned long capacity)>;

  enum class Result { kAdded, kNotSent, kDoesNotFit };

  explicit TokenPacket(Sender sender) : sender_(std::move(sender)) {}

  /// Adds a token behind the others. `retry` builds it when it needs a fresh packet.
  Result Add(const Builder& builder, const Builder& retry);
  Result Add(const Builder& builder) { return Add(builder, builder); }

  /// Sends the buffer and begins a new packet. What the buffer held is not cleared.
  bool Send();

 private:
  static constexpr unsigned long kSize = 520;

  unsigned long Build(const Builder& builder);

  Sender sender_;
  unsigned char buffer_[kSize] = {};
  unsigned long offset_ = 1;
};

}  // namespace ipodcomm
