// SPDX-License-Identifier: MIT
// Frames as a session sends them, over whole ranges of commands, payload sizes and identifiers.
#include <gtest/gtest.h>

#include <numeric>

#include "support/properties.h"
#include "support/session_test.h"

namespace {

using test::Bytes;
using test::SessionTest;
using ::testing::ElementsAre;

class OutgoingFrames : public SessionTest {
 protected:
  tagIPOD_COMM_ERROR Write(std::uint8_t lingo, std::uint16_t command, const Bytes& data = {}) {
    tagIPOD_WRITE_PARAMS write = {command, lingo, data.data(),
                                  static_cast<std::uint32_t>(data.size())};
    return session_.WriteCommand(&write);
  }
  // The bytes sent since the last call.
  Bytes DrainBytes() {
    world_.Advance(100 * test::kMillisecond);
    Bytes sent = ipod_.received();
    ipod_.ClearReceived();
    return sent;
  }
};

TEST_F(OutgoingFrames, EveryGeneralCommandWithoutDataIsSixBytes) {
  for (unsigned command = 0; command <= 0xFF; ++command) {
    ASSERT_EQ(Write(0x00, static_cast<std::uint16_t>(command)), IPOD_COMM_OK);
    const Bytes expected = {0xFF,
                            0x55,
                            0x02,
                            0x00,
                            static_cast<std::uint8_t>(command),
                            static_cast<std::uint8_t>(0x100 - (0x02 + command))};
    ASSERT_EQ(DrainBytes(), expected);
  }
}

TEST_F(OutgoingFrames, ExtendedCommandHasTwoCommandBytes) {
  Write(0x04, 0x0016);
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 03 04 00 16 E3"));
}

// Of the General commands exactly three never carry an identifier, and they leave the counter.
TEST_F(OutgoingFrames, ThreeGeneralCommandsNeverCarryAnIdentifier) {
  for (unsigned command = 0; command <= 0xFF; ++command) {
    TurnOnTransactionIds(0x0102);
    Write(0x00, static_cast<std::uint16_t>(command));
    const bool bare = command == 0x13 || command == 0x28 || command == 0x03;
    ASSERT_EQ(DrainBytes().size(), bare ? 6U : 8U) << command;
    ASSERT_EQ(CIpodCommPeer::OwnTransactionId(session_), bare ? 0x0102 : 0x0103) << command;
  }
}

// Every other lingo puts an identifier on every command, those three numbers included.
TEST_F(OutgoingFrames, OtherLingoesAlwaysCarryAnIdentifier) {
  for (const std::uint8_t lingo : test::Hex("02 03 04 09 0C")) {
    for (const std::uint8_t command : test::Hex("03 13 28")) {
      TurnOnTransactionIds(0x0102);
      Write(lingo, command);
      ASSERT_EQ(DrainBytes().size(), lingo == 0x04 ? 9U : 8U) << +lingo << " " << +command;
      ASSERT_EQ(CIpodCommPeer::OwnTransactionId(session_), 0x0103);
    }
  }
}

// The answers that echo, found by trying every command of every lingo: the slots hold identifiers
// that tell which one was taken.
TEST_F(OutgoingFrames, ThreeAnswersEchoTheIdentifierOfTheirLingo) {
  CIpodCommPeer::OwnTransactionId(session_) = 0x0102;
  auto& slots = CIpodCommPeer::IpodTransactionIds(session_);
  for (std::uint8_t i = 0; i < 13; ++i) slots[i] = static_cast<std::uint16_t>(0xAB00 + i);
  std::vector<std::string> echoing;
  for (unsigned lingo = 0; lingo <= 0x10; ++lingo) {
    for (unsigned command = 0; command <= 0xFF; ++command) {
      unsigned char bytes[2] = {};
      (session_.*CIpodCommPeer::kAddTransactionID)(bytes, static_cast<unsigned char>(lingo),
                                                   static_cast<unsigned short>(command));
      const std::string sent = test::ToHex(bytes, 2);
      if (sent == "01 02") continue;
      echoing.push_back(std::to_string(lingo) + "/" + std::to_string(command) + " " + sent);
    }
  }
  EXPECT_THAT(echoing, ElementsAre("0/40 AB 00", "9/4 AB 09", "12/130 AB 0C"));
}

// Every payload that fits, in each of the four headers: the length byte is never 0, so the large
// form never goes out.
TEST_F(OutgoingFrames, NeverHaveTheLargeForm) {
  for (const bool with_identifier : {false, true}) {
    CIpodCommPeer::TransactionIdMode(session_) = with_identifier ? 1 : 0;
    for (const std::uint8_t lingo : test::Hex("0C 04")) {
      const std::size_t header = 2U + (lingo == 0x04 ? 1U : 0U) + (with_identifier ? 2U : 0U);
      for (std::size_t size = 0; size + header <= 255; ++size) {
        ASSERT_EQ(Write(lingo, 0x07, Bytes(size, 0x5A)), IPOD_COMM_OK);
        const Bytes sent = DrainBytes();
        ASSERT_EQ(sent.size(), header + size + 4);
        ASSERT_EQ(sent[2], header + size);
      }
    }
  }
}

#if IPODCOMM_HAS_RAPIDCHECK

RC_GTEST_FIXTURE_PROP(OutgoingFrames, SumToZeroWhateverTheyCarry, ()) {
  const auto lingo = *rc::gen::inRange<std::uint8_t>(0, 0x11);
  const auto command = *rc::gen::arbitrary<std::uint16_t>();
  const auto data = *rc::gen::resize(250, rc::gen::arbitrary<Bytes>());
  if (*rc::gen::arbitrary<bool>()) TurnOnTransactionIds(*rc::gen::arbitrary<std::uint16_t>());
  RC_PRE(data.size() <= 250);
  RC_ASSERT(Write(lingo, command, data) == IPOD_COMM_OK);
  const Bytes sent = DrainBytes();
  RC_ASSERT(sent.size() == sent[2] + 4U);
  RC_ASSERT(std::accumulate(sent.begin() + 2, sent.end(), 0U) % 256 == 0U);
  RC_ASSERT(sent[3] == lingo);
  RC_ASSERT(std::equal(data.rbegin(), data.rend(), sent.rbegin() + 1));
}

#else

TEST_F(OutgoingFrames, SumToZeroWhateverTheyCarry) { GTEST_SKIP() << test::kNoRapidcheck; }

#endif

}  // namespace
