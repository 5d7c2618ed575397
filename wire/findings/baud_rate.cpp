// SPDX-License-Identifier: MIT
// At which rate a device sends, told from what is received of it at another rate.
#include "wire/findings/baud_rate.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>

namespace ipodwire {
namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::uint32_t kRates[] = {9600, 19200, 38400, 57600, 115200};
// A frame's first two bytes; its length follows, which is seldom more than this.
constexpr std::uint8_t kSync = 0xFF;
constexpr std::uint8_t kStart = 0x55;
constexpr std::uint8_t kCommonLength = 0x40;
// Of what listens faster, as a damaged recording may say, nothing is known.
constexpr std::uint32_t kFastestListener = 1'000'000;
// Fewer bytes than these may come from noise.
constexpr std::size_t kLeastProof = 3;

// A line on which bytes are sent one after the other: a start bit, 8 data bits, stop bits, and high
// for ever after the last.
class Waveform {
 public:
  Waveform(Bytes bytes, std::uint32_t rate, double stop_bits)
      : bytes_(std::move(bytes)), rate_(rate), bits_per_byte_(9 + stop_bits) {}

  // In seconds from the first start bit's edge.
  bool IsHigh(double time) const {
    const double bits = time * rate_;
    const auto byte = static_cast<std::size_t>(bits / bits_per_byte_);
    if (byte >= bytes_.size()) return true;
    const auto place = static_cast<int>(bits - static_cast<double>(byte) * bits_per_byte_);
    if (place == 0) return false;
    return place > 8 || (bytes_[byte] >> (place - 1) & 1) != 0;
  }
  double end() const { return static_cast<double>(bytes_.size()) * bits_per_byte_ / rate_; }

 private:
  Bytes bytes_;
  double rate_;
  double bits_per_byte_;
};

// Receivers differ in what they do when a byte lacks its stop bit.
enum class Resync {
  kAtOnce,     // the line is low, so the next byte has begun
  kAfterEdge,  // the next byte begins when the line falls
};

// What a receiver at `rate` makes of it, the first `most` bytes: it waits for a start bit and looks
// at the middle of each bit.
Bytes Received(const Waveform& line, std::uint32_t rate, Resync resync, std::size_t most) {
  constexpr int kTicksPerBit = 64;
  const auto is_high = [&](int tick) { return line.IsHigh(1.0 / rate / kTicksPerBit * tick); };
  const int end = static_cast<int>(line.end() * rate * kTicksPerBit);
  Bytes received;
  bool was_high = true;
  for (int tick = 0; tick < end && received.size() < most; ++tick) {
    const bool begins = was_high && !is_high(tick) && !is_high(tick + kTicksPerBit / 2);
    was_high = is_high(tick);
    if (!begins) continue;
    std::uint8_t value = 0;
    tick += kTicksPerBit / 2;
    for (int i = 0; i < 8; ++i) {
      tick += kTicksPerBit;
      if (is_high(tick)) value = static_cast<std::uint8_t>(value | 1 << i);
    }
    received.push_back(value);
    tick += kTicksPerBit;
    was_high = resync == Resync::kAtOnce || is_high(tick);
  }
  return received;
}

// What is received at one rate of a frame that is sent at another.
struct Reception {
  std::uint32_t sending;
  double stop_bits;
  std::uint32_t listening;
  Resync resync;

  Bytes FirstBytes(std::uint8_t length, std::size_t most) const {
    return Received(Waveform({kSync, kStart, length}, sending, stop_bits), listening, resync, most);
  }
  // The bytes with which every frame begins, whatever its length is.
  Bytes FrameImage() const {
    Bytes image = FirstBytes(1, SIZE_MAX);
    for (std::uint8_t length = 2; length <= kCommonLength; ++length) {
      const Bytes other = FirstBytes(length, image.size());
      const auto differs = std::mismatch(image.begin(), image.end(), other.begin(), other.end());
      image.erase(differs.first, image.end());
    }
    return image;
  }
};

// Zeros come from any line that is low for long.
bool IsProof(const Bytes& image) {
  return image.size() >= kLeastProof &&
         std::any_of(image.begin(), image.end(), [](std::uint8_t byte) { return byte != 0; });
}

bool Contains(const std::vector<Bytes>& runs, const Bytes& image) {
  return std::any_of(runs.begin(), runs.end(), [&](const Bytes& run) {
    return std::search(run.begin(), run.end(), image.begin(), image.end()) != run.end();
  });
}

// Most of what comes does not even hold the bytes that are the least proof, which are soon known.
bool Proves(const std::vector<Bytes>& runs, const Reception& line) {
  if (!Contains(runs, line.FirstBytes(1, kLeastProof))) return false;
  const Bytes image = line.FrameImage();
  return IsProof(image) && Contains(runs, image);
}

bool Proves(const std::vector<Bytes>& runs, std::uint32_t sending, std::uint32_t listening) {
  for (const double stop_bits : {1.0, 1.5, 2.0}) {
    for (const Resync resync : {Resync::kAtOnce, Resync::kAfterEdge}) {
      if (Proves(runs, Reception{sending, stop_bits, listening, resync})) return true;
    }
  }
  return false;
}

}  // namespace

std::optional<std::uint32_t> SendingRate(const std::vector<Bytes>& runs, std::uint32_t listening) {
  if (listening == 0 || listening > kFastestListener) return std::nullopt;
  std::optional<std::uint32_t> found;
  for (const std::uint32_t rate : kRates) {
    if (rate == listening) continue;
    if (!Proves(runs, rate, listening)) continue;
    if (found) return std::nullopt;
    found = rate;
  }
  return found;
}

}  // namespace ipodwire
