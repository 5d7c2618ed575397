// SPDX-License-Identifier: MIT
// The manners in which bytes come, and the pieces that wait for their time.
#include "world/line/delivery.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <stdexcept>
#include <utility>

#include "world/clock.h"

namespace ipodcomm::virtual_platform {

namespace {

using Bytes = Delivery::Bytes;
using Piece = Delivery::Piece;

std::vector<Piece> AsSent(const Bytes& sent) { return {{sent}}; }

std::vector<Piece> ByteByByte(const Bytes& sent) {
  std::vector<Piece> pieces;
  pieces.reserve(sent.size());
  for (const std::uint8_t byte : sent) pieces.push_back({{byte}, 3 * kMillisecond});
  return pieces;
}

// In two, at a place that moves with the content.
std::vector<Piece> Split(const Bytes& sent) {
  if (sent.size() == 1) return AsSent(sent);
  const auto place =
      sent.begin() + 1 + static_cast<std::ptrdiff_t>(sent.back() % (sent.size() - 1));
  return {{Bytes(sent.begin(), place)}, {Bytes(place, sent.end()), 40 * kMillisecond}};
}

// Within the second that the default conduct waits; what comes later it takes for something else.
std::vector<Piece> Late(const Bytes& sent) { return {{sent, 200 * kMillisecond}}; }

// Start bytes, zeros and lengths, but no sync byte, which would be a frame's beginning.
std::vector<Piece> BehindJunk(const Bytes& sent) {
  return {{{0x55, 0x00, 0x02, 0xFE}}, {sent, kMillisecond}};
}

}  // namespace

Delivery::Manner Delivery::ByName(const std::string& name) {
  if (name == "as-sent") return AsSent;
  if (name == "byte-by-byte") return ByteByByte;
  if (name == "split") return Split;
  if (name == "late") return Late;
  if (name == "junk") return BehindJunk;
  throw std::invalid_argument("no bytes come '" + name + "'");
}

Delivery::Manner Delivery::FromEnvironment() {
  const char* name = std::getenv("IPODCOMM_DELIVERY");
  return name == nullptr ? AsSent : ByName(name);
}

void Delivery::Add(const Bytes& sent, std::int64_t now_us) {
  if (sent.empty()) return;
  std::int64_t due_us = now_us;
  for (Piece& piece : manner_(sent)) {
    due_us += piece.gap_us;
    // What was sent first goes out first.
    if (!pieces_.empty()) due_us = std::max(due_us, pieces_.back().due_us);
    pieces_.push_back({std::move(piece.bytes), due_us});
  }
}

std::int64_t Delivery::NextEvent() const {
  return pieces_.empty() ? kNever : pieces_.front().due_us;
}

Bytes Delivery::PopPiece() {
  Bytes bytes = std::move(pieces_.front().bytes);
  pieces_.pop_front();
  return bytes;
}

}  // namespace ipodcomm::virtual_platform
