// SPDX-License-Identifier: MIT
// Parts the bytes of one direction of the line into frames and what is none.
#include "platform/capture/frame_splitter.h"

#include <utility>

namespace ipodcomm::capture {
namespace {

constexpr std::uint8_t kSyncByte = 0xFF;
constexpr std::uint8_t kStartByte = 0x55;
constexpr std::size_t kLengthAt = 2;
constexpr std::size_t kSmallHeader = 3;  // FF 55 length
constexpr std::size_t kLargeHeader = 5;  // FF 55 00 length length
// So that a line of noise does not fill the memory.
constexpr std::size_t kLongestNoise = 4096;

}  // namespace

void FrameSplitter::Push(std::uint8_t byte, Nanoseconds now, std::vector<ByteRun>* ended) {
  if (BeginsFrame(byte)) BeginFrame(ended);
  const bool noise_is_long = !in_frame_ && current_.bytes.size() >= kLongestNoise;
  if (noise_is_long) Flush(ended);
  if (current_.bytes.empty()) current_.time = now;
  current_.bytes.push_back(byte);
  last_byte_at_ = now;
  if (!in_frame_ || !IsWhole()) return;
  current_.is_frame = true;
  current_.bad_checksum = !ChecksumHolds();
  Flush(ended);
}

bool FrameSplitter::GoesOn(const std::uint8_t* bytes, std::size_t count) const {
  return count != 0 && BeginsFrame(bytes[0]);
}

bool FrameSplitter::BeginsFrame(std::uint8_t byte) const {
  return !in_frame_ && byte == kStartByte && !current_.bytes.empty() &&
         current_.bytes.back() == kSyncByte;
}

// What came before the sync byte belongs to no frame.
void FrameSplitter::BeginFrame(std::vector<ByteRun>* ended) {
  current_.bytes.pop_back();
  if (!current_.bytes.empty()) Flush(ended);
  current_.bytes = {kSyncByte};
  current_.time = last_byte_at_;
  in_frame_ = true;
}

void FrameSplitter::Flush(std::vector<ByteRun>* ended) {
  if (!current_.bytes.empty()) ended->push_back(std::move(current_));
  current_ = {};
  in_frame_ = false;
}

bool FrameSplitter::IsWhole() const {
  const Bytes& bytes = current_.bytes;
  if (bytes.size() <= kSmallHeader) return false;
  if (bytes[kLengthAt] != 0) return bytes.size() == kSmallHeader + bytes[kLengthAt] + 1U;
  if (bytes.size() <= kLargeHeader) return false;
  const std::size_t length = bytes[kLengthAt + 1] * 256U + bytes[kLengthAt + 2];
  return bytes.size() == kLargeHeader + length + 1;
}

// The bytes from the length through the checksum sum to 0.
bool FrameSplitter::ChecksumHolds() const {
  std::uint8_t sum = 0;
  for (std::size_t i = kLengthAt; i < current_.bytes.size(); ++i) {
    sum = static_cast<std::uint8_t>(sum + current_.bytes[i]);
  }
  return sum == 0;
}

}  // namespace ipodcomm::capture
