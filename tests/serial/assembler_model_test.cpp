// SPDX-License-Identifier: MIT
// The frame assembler against a plain model of it: seven numbered states, an index, a count and a
// running sum, stepped for every byte. Random streams full of sync bytes, start bytes and zeros
// lead both through every state.
#include <gtest/gtest.h>

#include <algorithm>

#include "ipodcomm/detail/FrameAssembler.h"
#include "support/bytes.h"
#include "support/properties.h"

namespace {

using test::Bytes;

class Model {
 public:
  // The frame that `byte` completed, or nothing.
  Bytes Feed(std::uint8_t byte) {
    buffer_[index_++] = byte;
    sum_ = static_cast<std::uint8_t>(sum_ + byte);
    const int state = state_;
    Bytes frame = Act(byte);
    if (state <= 5 && index_ == 1023) Restart();
    return frame;
  }
  int type() const { return type_; }

 private:
  void Restart() {
    index_ = 0;
    state_ = 0;
  }

  Bytes Act(std::uint8_t byte) {
    switch (state_) {
      case 0:
        byte == 0xFF ? state_ = 1 : static_cast<int>(index_ = 0);
        break;
      case 1:
        if (byte == 0x55) {
          state_ = 2;
          sum_ = 0;
        } else {
          index_ = 0;  // and the state stays
        }
        break;
      case 2:
        type_ = byte != 0 ? 1 : 0;
        remaining_ = byte;
        state_ = byte != 0 ? 5 : 3;
        break;
      case 3:
        remaining_ = byte * 256U;
        state_ = 4;
        break;
      case 4:
        remaining_ |= byte;
        state_ = 5;
        break;
      case 5:
        if (--remaining_ == 0) state_ = 6;
        break;
      default: {
        Bytes frame;
        if (sum_ == 0) frame.assign(buffer_, buffer_ + index_);
        Restart();
        return frame;
      }
    }
    return {};
  }

  std::uint8_t buffer_[1024] = {};
  std::uint32_t index_ = 0;
  int state_ = 0;
  std::uint32_t remaining_ = 0;
  std::uint8_t sum_ = 0;
  int type_ = 0;
};

#if IPODCOMM_HAS_RAPIDCHECK

// Feeds both; every byte must have the same effect.
void ExpectAlike(const Bytes& received) {
  Model model;
  ipodcomm::FrameAssembler assembler;
  assembler.Reset();
  for (const std::uint8_t byte : received) {
    const Bytes expected = model.Feed(byte);
    Bytes found;
    if (assembler.Feed(byte)) {
      found.assign(assembler.data(), assembler.data() + assembler.length());
    }
    RC_ASSERT(found == expected);
    RC_ASSERT(static_cast<int>(assembler.type()) == model.type());
  }
}

// Feeds the model, and the assembler by runs that end anywhere.
void ExpectAlikeInRuns(const Bytes& received) {
  Model model;
  std::vector<Bytes> expected;
  for (const std::uint8_t byte : received) {
    Bytes frame = model.Feed(byte);
    if (!frame.empty()) expected.push_back(std::move(frame));
  }
  ipodcomm::FrameAssembler assembler;
  assembler.Reset();
  std::vector<Bytes> found;
  const std::uint8_t* next = received.data();
  const std::uint8_t* const end = next + received.size();
  while (next != end) {
    const auto longest = std::min<std::ptrdiff_t>(end - next, 600);
    const std::uint8_t* const run_end = next + *rc::gen::inRange<std::ptrdiff_t>(1, longest + 1);
    while (next != run_end) {
      if (!assembler.FeedRun(&next, run_end)) continue;
      found.emplace_back(assembler.data(), assembler.data() + assembler.length());
    }
  }
  RC_ASSERT(found == expected);
  RC_ASSERT(received.empty() || static_cast<int>(assembler.type()) == model.type());
}

rc::Gen<Bytes> Stream(int size, rc::Gen<std::uint8_t> byte) {
  return rc::gen::resize(size, rc::gen::container<Bytes>(std::move(byte)));
}

// A frame whose checksum holds, short or large, or a piece of noise.
rc::Gen<Bytes> FrameOrNoise() {
  return rc::gen::exec([] {
    const auto body = *Stream(300, rc::gen::arbitrary<std::uint8_t>());
    if (body.empty() || *rc::gen::inRange(0, 4) == 0) return body;
    Bytes frame = {0xFF, 0x55};
    if (body.size() > 255 || *rc::gen::arbitrary<bool>()) {
      frame.push_back(0);
      frame.push_back(static_cast<std::uint8_t>(body.size() >> 8));
    }
    frame.push_back(static_cast<std::uint8_t>(body.size()));
    frame.insert(frame.end(), body.begin(), body.end());
    unsigned sum = 0;
    for (std::size_t i = 2; i < frame.size(); ++i) sum += frame[i];
    frame.push_back(static_cast<std::uint8_t>(0x100 - sum % 256));
    return frame;
  });
}

RC_GTEST_PROP(AssemblerModel, AgreesOnRandomBytes, ()) {
  ExpectAlike(*Stream(3000, rc::gen::arbitrary<std::uint8_t>()));
  ExpectAlikeInRuns(*Stream(3000, rc::gen::arbitrary<std::uint8_t>()));
}

RC_GTEST_PROP(AssemblerModel, AgreesOnTheBytesThatMatter, ()) {
  const auto byte = rc::gen::element<std::uint8_t>(0xFF, 0x55, 0x00, 0x01, 0x02, 0x03);
  ExpectAlike(*Stream(3000, byte));
  ExpectAlikeInRuns(*Stream(3000, byte));
}

RC_GTEST_PROP(AssemblerModel, AgreesOnFramesAmongNoise, ()) {
  Bytes received;
  for (const Bytes& piece :
       *rc::gen::resize(20, rc::gen::container<std::vector<Bytes>>(FrameOrNoise()))) {
    received.insert(received.end(), piece.begin(), piece.end());
  }
  ExpectAlike(received);
  ExpectAlikeInRuns(received);
}

#else

TEST(AssemblerModel, AgreesOnRandomBytes) { GTEST_SKIP() << test::kNoRapidcheck; }
TEST(AssemblerModel, AgreesOnTheBytesThatMatter) { GTEST_SKIP() << test::kNoRapidcheck; }
TEST(AssemblerModel, AgreesOnFramesAmongNoise) { GTEST_SKIP() << test::kNoRapidcheck; }

#endif

// All streams of up to six of the bytes that steer the states, followed by a frame.
TEST(AssemblerModelExhaustively, AgreesOnEveryShortStream) {
  const Bytes alphabet = {0xFF, 0x55, 0x00, 0x01, 0x02};
  const Bytes tail = test::Hex("FE FF 55 02 00 13 EB");
  for (unsigned number = 0; number < 5 * 5 * 5 * 5 * 5 * 5; ++number) {
    Bytes received;
    for (unsigned rest = number, i = 0; i < 6; ++i, rest /= 5) {
      received.push_back(alphabet[rest % 5]);
    }
    received.insert(received.end(), tail.begin(), tail.end());
    Model model;
    ipodcomm::FrameAssembler assembler;
    assembler.Reset();
    for (const std::uint8_t byte : received) {
      ASSERT_EQ(assembler.Feed(byte), !model.Feed(byte).empty()) << test::ToHex(received);
    }
  }
}

}  // namespace
