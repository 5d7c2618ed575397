// SPDX-License-Identifier: MIT
#include "cable.h"

#include <algorithm>

namespace reliability {

void Cable::PullAfter(std::uint64_t bytes, std::int64_t out_us) {
  pull_at_ = bytes_ + bytes;
  out_us_ = out_us;
  pulled_ = false;
}

void Cable::Pull(std::int64_t out_us) {
  pull_now_ = true;
  out_us_ = out_us;
  pulled_ = false;
}

void Cable::ComeOut(std::int64_t now_us) {
  pull_at_.reset();
  pull_now_ = false;
  pulled_ = true;
  back_us_ = now_us + out_us_;
  ipod_.Unplug(now_us);
}

std::size_t Cable::LetThrough(std::size_t count, std::int64_t now_us) {
  if (!pull_at_ || bytes_ + count < *pull_at_) {
    bytes_ += count;
    return count;
  }
  const auto through = static_cast<std::size_t>(*pull_at_ - bytes_);
  bytes_ += through;
  ComeOut(now_us);
  return through;
}

void Cable::Receive(const std::uint8_t* data, std::size_t size, std::int64_t now_us) {
  for (std::size_t i = 0; i < size && !out(); ++i) {
    if (LetThrough(1, now_us) == 1) ipod_.Receive(data + i, 1, now_us);
  }
}

std::optional<std::int64_t> Cable::NextEvent() {
  if (out()) return back_us_;
  if (pull_now_) return 0;
  return ipod_.NextEvent();
}

std::vector<std::uint8_t> Cable::Transmit(std::int64_t now_us) {
  if (pull_now_ && !out()) ComeOut(now_us);
  if (out()) {
    if (now_us < *back_us_) return {};
    back_us_.reset();
    ipod_.Replug(now_us);
  }
  std::vector<std::uint8_t> sent = ipod_.Transmit(now_us);
  sent.resize(LetThrough(sent.size(), now_us));
  return sent;
}

}  // namespace reliability
