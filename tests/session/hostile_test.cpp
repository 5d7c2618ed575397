// SPDX-License-Identifier: MIT
// Frames that no honest iPod sends. Every prefix and every single-byte change of a frame, and
// random bytes, go into every decoder: nothing is read or written outside, which the sanitizers
// watch.
#include <algorithm>
#include <initializer_list>
#include <memory>

#include "support/packets.h"
#include "support/properties.h"
#include "support/session_test.h"

namespace {

using test::Bytes;
using test::SessionTest;

using Decoder = tagIPOD_COMM_ERROR (CIpodComm::*)(unsigned char*, unsigned long,
                                                  tagIPOD_READ_PARAMS*, int*);
constexpr Decoder kDecoders[] = {
    &CIpodComm::ProcessLingoGeneralReadCommand, &CIpodComm::ProcessLingoDisplayRemoteReadCommand,
    &CIpodComm::ProcessLingoExtendedReadCommand, &CIpodComm::ProcessLingoSportsReadCommand,
    &CIpodComm::ProcessLingoStorageReadCommand};

class HostileFrames : public SessionTest {
 protected:
  HostileFrames() { session_.Close(); }

  // Decodes a copy on the heap that ends with the frame, into a buffer that ends with its size.
  void DecodeEverywhere(const Bytes& frame, std::int32_t size) {
    for (const Decoder decode : kDecoders) {
      for (const std::uint16_t expected : std::initializer_list<std::uint16_t>{0, 2, 8, 0x19}) {
        for (const int mode : {0, 1}) {
          CIpodCommPeer::TransactionIdMode(session_) = mode;
          const auto bytes = std::make_unique<unsigned char[]>(frame.size());
          std::copy(frame.begin(), frame.end(), bytes.get());
          const auto buffer = std::make_unique<unsigned char[]>(static_cast<std::size_t>(size));
          tagIPOD_READ_PARAMS read = {};
          read.expected_command = expected;
          read.accept_ack = mode;
          read.buffer = buffer.get();
          read.size = size;
          int keep_reading = 7;
          // Nothing more comes while a pending ACK waits for it.
          CIpodCommPeer::Responses(session_).Wake();
          const auto result = (session_.*decode)(bytes.get(), frame.size(), &read, &keep_reading);
          ASSERT_TRUE(result == IPOD_COMM_OK || result == IPOD_COMM_NO_ANSWER ||
                      result == IPOD_COMM_UNEXPECTED);
          ASSERT_TRUE(keep_reading == 0 || keep_reading == 1);
          ASSERT_LE(read.stored, static_cast<std::uint32_t>(size));
          ASSERT_LE(read.size, size);
          ASSERT_LE(read.stored, frame.size());
        }
      }
    }
  }
};

constexpr const char* kFrames[] = {"FF 55 04 00 02 06 08 EC",
                                   "FF 55 06 00 08 41 42 43 00 2C",
                                   "FF 55 07 04 00 19 00 00 00 05 D7",
                                   "FF 55 00 00 04 00 08 41 42 71",
                                   "FF 55 00 00 07 04 00 19 00 00 00 05 D7",
                                   "FF 55 02 09 03 F2",
                                   "FF 55 03 0C 02 01 EE"};

TEST_F(HostileFrames, EveryPrefixIsDecodedWithinItsBytes) {
  for (const char* text : kFrames) {
    const Bytes frame = test::Hex(text);
    for (std::size_t length = 0; length <= frame.size(); ++length) {
      DecodeEverywhere(Bytes(frame.begin(), frame.begin() + static_cast<std::ptrdiff_t>(length)),
                       4);
    }
  }
}

TEST_F(HostileFrames, EverySingleByteChangeIsDecodedWithinItsBytes) {
  for (const char* text : {"FF 55 04 00 08 41 42 71", "FF 55 00 00 05 04 00 19 00 05 D9"}) {
    const Bytes frame = test::Hex(text);
    for (std::size_t position = 0; position < frame.size(); ++position) {
      for (int value = 0; value < 256; ++value) {
        Bytes changed = frame;
        changed[position] = static_cast<std::uint8_t>(value);
        DecodeEverywhere(changed, 300);
      }
    }
  }
}

// The assembler queues such a frame when the byte before 55 was not FF the first time.
TEST_F(HostileFrames, FrameWithoutItsSyncByteIsDecodedOneByteOff) {
  Bytes frame = test::Hex("55 04 00 08 41 42 71");
  tagIPOD_READ_PARAMS read = {};
  unsigned char buffer[8] = {};
  read.expected_command = 0x71;
  read.buffer = buffer;
  read.size = sizeof buffer;
  // Byte 2 is 00, so it passes for the large form: length 0841, lingo 42, command 71.
  EXPECT_EQ(session_.ProcessLingoGeneralReadCommand(frame.data(), frame.size(), &read, nullptr),
            IPOD_COMM_OK);
  EXPECT_EQ(read.stored, 0U);
  DecodeEverywhere(frame, 4);
}

TEST_F(HostileFrames, LengthOfOneTakesTheChecksumForTheCommand) {
  Bytes frame = test::Hex("FF 55 01 00 FF");
  tagIPOD_READ_PARAMS read = {};
  read.expected_command = 0xFF;
  read.size = 4;
  EXPECT_EQ(session_.ProcessLingoGeneralReadCommand(frame.data(), frame.size(), &read, nullptr),
            IPOD_COMM_OK);
  EXPECT_EQ(read.stored, 0U);
  EXPECT_EQ(read.size, 0);
}

TEST_F(HostileFrames, LengthLargerThanTheFrameTakesWhatThereIs) {
  Bytes frame = test::Hex("FF 55 FF 00 08 41 42 99");
  tagIPOD_READ_PARAMS read = {};
  unsigned char buffer[300] = {};
  read.expected_command = 0x08;
  read.buffer = buffer;
  read.size = sizeof buffer;
  session_.ProcessLingoGeneralReadCommand(frame.data(), frame.size(), &read, nullptr);
  EXPECT_EQ(test::ToHex(buffer, read.stored), "41 42");
}

TEST_F(HostileFrames, LengthSmallerThanTheFrameCounts) {
  Bytes frame = test::Hex("FF 55 03 00 08 41 42 43 99");
  tagIPOD_READ_PARAMS read = {};
  unsigned char buffer[8] = {};
  read.expected_command = 0x08;
  read.buffer = buffer;
  read.size = sizeof buffer;
  session_.ProcessLingoGeneralReadCommand(frame.data(), frame.size(), &read, nullptr);
  EXPECT_EQ(test::ToHex(buffer, read.stored), "41");
}

#if IPODCOMM_HAS_RAPIDCHECK

RC_GTEST_FIXTURE_PROP(HostileFrames, RandomFramesAreDecodedWithinTheirBytes, ()) {
  const auto bytes = *rc::gen::container<Bytes>(rc::gen::arbitrary<std::uint8_t>());
  const auto size = *rc::gen::inRange(0, 64);
  DecodeEverywhere(bytes, size);
  RC_ASSERT(!HasFatalFailure());
}

#else

TEST_F(HostileFrames, RandomFramesAreDecodedWithinTheirBytes) {
  GTEST_SKIP() << test::kNoRapidcheck;
}

#endif

}  // namespace
