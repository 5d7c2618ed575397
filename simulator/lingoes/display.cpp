// SPDX-License-Identifier: MIT
// Serves the display commands.

#include "display.h"

#include <algorithm>

namespace ipodsim {
namespace {

constexpr std::uint16_t kWidth = 128;
constexpr std::uint16_t kHeight = 64;
constexpr std::uint8_t kMonochrome = 0x01;
// What comes before the bytes: the part's index, and in the first part the format, the width, the
// height and the bytes of a row.
constexpr std::size_t kPartHeader = 2;
constexpr std::size_t kFirstHeader = 11;

}  // namespace

bool Display::Handle(const Request& request) {
  if (request.lingo != kExtended) return false;
  switch (request.command) {
    case extended::kSetDisplayImage:
      StorePart(request);
      return true;
    case extended::kGetMonoDisplayImageLimits: {
      Bytes data;
      Put16(data, kWidth);
      Put16(data, kHeight);
      Put8(data, kMonochrome);
      link_->Reply(request, extended::kReturnMonoDisplayImageLimits, data);
      return true;
    }
    default:
      return false;
  }
}

void Display::Forget() {
  image_.clear();
  incoming_.clear();
  expected_bytes_ = 0;
}

// A picture comes in parts that are numbered from 0, each acknowledged.
void Display::StorePart(const Request& request) {
  const std::uint16_t part = Get16(request.data, 0);
  if (part == 0) {
    if (!Begin(request)) return;
  } else if (expected_bytes_ == 0 || part != next_part_) {
    link_->Refuse(request, MistakeKind::kBadParameter,
                  "image part " + std::to_string(part) + " out of turn");
    return;
  }
  const std::size_t header = part == 0 ? kFirstHeader : kPartHeader;
  incoming_.insert(incoming_.end(), request.data.begin() + static_cast<std::ptrdiff_t>(header),
                   request.data.end());
  if (incoming_.size() > expected_bytes_) {
    expected_bytes_ = 0;
    link_->Refuse(request, MistakeKind::kBadParameter,
                  "image of " + std::to_string(incoming_.size()) + " bytes or more");
    return;
  }
  next_part_ = static_cast<std::uint16_t>(part + 1);
  if (incoming_.size() == expected_bytes_) {
    image_.swap(incoming_);
    expected_bytes_ = 0;
  }
  link_->Acknowledge(request, AckStatus::kOk);
}

bool Display::Begin(const Request& request) {
  const Bytes& data = request.data;
  expected_bytes_ = 0;
  incoming_.clear();
  if (data.size() < kFirstHeader) {
    link_->Refuse(request, MistakeKind::kBadParameter,
                  "first image part of " + std::to_string(data.size()) + " bytes");
    return false;
  }
  const std::uint16_t width = Get16(data, 3);
  const std::uint16_t height = Get16(data, 5);
  const std::uint32_t row_bytes = Get32(data, 7);
  const bool fits = data[2] == kMonochrome && width > 0 && width <= kWidth && height > 0 &&
                    height <= kHeight && row_bytes >= (width + 7u) / 8 && row_bytes <= kWidth;
  if (!fits) {
    link_->Refuse(request, MistakeKind::kBadParameter,
                  "image of format " + std::to_string(data[2]) + ", " + std::to_string(width) +
                      " by " + std::to_string(height) + ", " + std::to_string(row_bytes) +
                      " bytes to a row");
    return false;
  }
  expected_bytes_ = std::size_t{row_bytes} * height;
  return true;
}

}  // namespace ipodsim
