// SPDX-License-Identifier: MIT
// Puts frames on the line, faults included.

#include "line.h"

#include <algorithm>

namespace ipodsim {

void Line::Send(const Bytes& wire, Microseconds at) {
  if (dice_->Strikes(Fault::kJunk)) {
    // Any bytes but a frame's beginning, which would swallow the frame that follows.
    Random& random = dice_->Choices(Fault::kJunk);
    Bytes junk;
    for (std::uint32_t left = 1 + random.Below(12); left > 0; --left) {
      junk.push_back(static_cast<std::uint8_t>(random.Below(0xFF)));
    }
    Append(junk, at);
  }
  Bytes damaged = wire;
  Damage(&damaged);
  if (damaged.size() > 1 && dice_->Strikes(Fault::kLateBytes)) {
    Random& random = dice_->Choices(Fault::kLateBytes);
    const std::uint32_t last = static_cast<std::uint32_t>(damaged.size() - 1);
    const auto cut = 1 + static_cast<std::ptrdiff_t>(random.Below(last));
    Append({damaged.begin(), damaged.begin() + cut}, at);
    const Microseconds pause = (20 + random.Below(1480)) * kMillisecond;
    Append({damaged.begin() + cut, damaged.end()}, std::max(at, busy_until_) + pause);
    return;
  }
  if (dice_->Strikes(Fault::kSplitBytes)) {
    Random& random = dice_->Choices(Fault::kSplitBytes);
    Microseconds due = std::max(at, busy_until_);
    for (const std::uint8_t byte : damaged) {
      Append({byte}, due);
      due += (1 + random.Below(5)) * kMillisecond;
    }
    return;
  }
  Append(damaged, at);
}

void Line::Damage(Bytes* wire) {
  const auto place = [&](Fault fault) {
    return wire->begin() + static_cast<std::ptrdiff_t>(dice_->Choices(fault).Below(
                               static_cast<std::uint32_t>(wire->size())));
  };
  if (dice_->Strikes(Fault::kDroppedBytes)) wire->erase(place(Fault::kDroppedBytes));
  if (dice_->Strikes(Fault::kDoubledBytes)) {
    const auto byte = place(Fault::kDoubledBytes);
    wire->insert(byte, std::uint8_t{*byte});
  }
  if (dice_->Strikes(Fault::kFlippedBits)) {
    const auto byte = place(Fault::kFlippedBits);
    const std::uint32_t bit = dice_->Choices(Fault::kFlippedBits).Below(8);
    *byte = static_cast<std::uint8_t>(*byte ^ (1u << bit));
  }
}

void Line::Append(Bytes bytes, Microseconds due) {
  busy_until_ = std::max(busy_until_, due);
  chunks_.push_back({busy_until_, std::move(bytes)});
}

std::optional<Microseconds> Line::NextDue() const {
  if (chunks_.empty()) return std::nullopt;
  return chunks_.front().due;
}

Bytes Line::PopDue(Microseconds now) {
  Bytes bytes;
  while (!chunks_.empty() && chunks_.front().due <= now) {
    const Bytes& chunk = chunks_.front().bytes;
    bytes.insert(bytes.end(), chunk.begin(), chunk.end());
    chunks_.pop_front();
  }
  return bytes;
}

void Line::Clear() {
  chunks_.clear();
  busy_until_ = 0;
}

}  // namespace ipodsim
