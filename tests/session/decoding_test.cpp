// SPDX-License-Identifier: MIT
// The decoders, called with frames one by one: what the Extended, Display Remote, Storage and
// Sports ones share, in both header forms and with and without transaction identifiers.
#include <algorithm>
#include <cstring>
#include <numeric>
#include <string_view>

#include "support/packets.h"
#include "support/session_test.h"

namespace {

using test::Bytes;
using test::Hex;
using test::SessionTest;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

using Decoder = tagIPOD_COMM_ERROR (CIpodComm::*)(unsigned char*, unsigned long,
                                                  tagIPOD_READ_PARAMS*, int*);

struct DecoderRow {
  const char* name;
  Decoder decode;
  const char* header;        // of the short form, from lingo to command 0033, behind the length
  const char* ack_header;    // the same for the ACK
  const char* other_header;  // for a command that nobody waits for
};

struct Decoded {
  tagIPOD_COMM_ERROR result;
  int keep_reading;
};

class Decoding : public SessionTest, public ::testing::WithParamInterface<DecoderRow> {
 protected:
  Decoding() {
    read_.expected_command = 0x0033;
    SetBuffer(4);
  }
  void SetBuffer(std::size_t size) {
    // One byte more than it says, which must stay as it is.
    buffer_.assign(size + 1, 0xEE);
    read_.buffer = buffer_.data();
    read_.size = static_cast<std::int32_t>(size);
    read_.stored = 0;
  }
  // Decoders take the frame as it is and do not look at the checksum.
  static Bytes Short(std::string_view header, const Bytes& data) {
    const Bytes head = Hex(header);
    return Framed({static_cast<std::uint8_t>(head.size() + data.size())}, head, data);
  }
  static Bytes Short(std::string_view header, std::string_view data) {
    return Short(header, Hex(data));
  }
  static Bytes Large(std::string_view header, const Bytes& data) {
    const Bytes head = Hex(header);
    const std::size_t length = head.size() + data.size();
    return Framed({0x00, static_cast<std::uint8_t>(length >> 8), static_cast<std::uint8_t>(length)},
                  head, data);
  }
  static Bytes Large(std::string_view header, std::string_view data) {
    return Large(header, Hex(data));
  }
  Decoded Decode(Bytes frame) {
    int keep_reading = 7;
    const auto result =
        (session_.*GetParam().decode)(frame.data(), frame.size(), &read_, &keep_reading);
    return {result, keep_reading};
  }
  void ExpectTaken(const Bytes& frame, const char* data) {
    const Decoded decoded = Decode(frame);
    EXPECT_EQ(decoded.result, IPOD_COMM_OK);
    EXPECT_EQ(decoded.keep_reading, 0);
    EXPECT_EQ(test::ToHex(buffer_.data(), read_.stored), data);
  }

  tagIPOD_READ_PARAMS read_ = {};
  Bytes buffer_;

 private:
  static Bytes Framed(const Bytes& length, const Bytes& head, const Bytes& data) {
    Bytes frame = {0xFF, 0x55};
    for (const Bytes& part : {length, head, data}) {
      frame.insert(frame.end(), part.begin(), part.end());
    }
    frame.push_back(0x99);
    return frame;
  }
};

TEST_P(Decoding, AnswersOfEveryLengthFillBuffersOfEverySize) {
  const std::size_t longest = 255 - Hex(GetParam().header).size();
  Bytes all(longest, 0);
  std::iota(all.begin(), all.end(), std::uint8_t{1});
  for (std::size_t length = 0; length <= longest; ++length) {
    const Bytes data(all.begin(), all.begin() + static_cast<std::ptrdiff_t>(length));
    for (const std::size_t size :
         {std::size_t{0}, std::size_t{1}, std::size_t{4}, length, length + 1, std::size_t{300}}) {
      for (const Bytes& frame : {Short(GetParam().header, data), Large(GetParam().header, data)}) {
        SetBuffer(size);
        const Decoded decoded = Decode(frame);
        const std::size_t taken = std::min(length, size);
        ASSERT_EQ(decoded.result, IPOD_COMM_OK);
        ASSERT_EQ(decoded.keep_reading, 0);
        ASSERT_EQ(read_.stored, taken);
        ASSERT_EQ(static_cast<std::size_t>(read_.size), taken);
        ASSERT_TRUE(std::equal(all.begin(), all.begin() + static_cast<std::ptrdiff_t>(taken),
                               buffer_.begin()));
        ASSERT_TRUE(std::all_of(buffer_.begin() + static_cast<std::ptrdiff_t>(taken), buffer_.end(),
                                [](std::uint8_t byte) { return byte == 0xEE; }));
      }
    }
  }
}

TEST_P(Decoding, LargeAnswersOfUpToAThousandBytesAreTaken) {
  for (const std::size_t length : {254U, 255U, 256U, 257U, 511U, 512U, 1000U, 1010U}) {
    SetBuffer(1024);
    Decode(Large(GetParam().header, Bytes(length, 0x3C)));
    EXPECT_EQ(read_.stored, length);
    EXPECT_EQ(buffer_[length - 1], 0x3C);
    EXPECT_EQ(buffer_[length], 0xEE);
  }
}

TEST_P(Decoding, NegativeSizeTakesNothing) {
  read_.size = -1;
  Decode(Short(GetParam().header, "01 02"));
  EXPECT_EQ(read_.stored, 0U);
  EXPECT_EQ(read_.size, 0);
  EXPECT_EQ(buffer_[0], 0xEE);
}

TEST_P(Decoding, KeepReadingFlagMayBeNull) {
  Bytes frame = Short(GetParam().header, "01 02");
  EXPECT_EQ((session_.*GetParam().decode)(frame.data(), frame.size(), &read_, nullptr),
            IPOD_COMM_OK);
  frame = Short(GetParam().other_header, "01 02");
  (session_.*GetParam().decode)(frame.data(), frame.size(), &read_, nullptr);
  frame = Short(GetParam().ack_header, "01 02");
  (session_.*GetParam().decode)(frame.data(), frame.size(), &read_, nullptr);
  EXPECT_EQ(read_.received_command, 0x02);
}

TEST_P(Decoding, ReceivedCommandIsRecordedInEveryCase) {
  Decode(Short(GetParam().header, ""));
  EXPECT_EQ(read_.received_command, 0x33);
  Decode(Short(GetParam().ack_header, "00 00"));
  EXPECT_EQ(read_.received_command, 0x02);
  Decode(Short(GetParam().other_header, ""));
  EXPECT_EQ(read_.received_command, 0x34);
}

TEST_P(Decoding, WithoutIdentifiersDataStayWhatTheyAre) {
  CIpodCommPeer::OwnTransactionId(session_) = 6;
  ExpectTaken(Short(GetParam().header, "00 05 09"), "00 05 09");
}

TEST_P(Decoding, AcceptedAckIsKeptAsFarAsTheSizeSays) {
  struct {
    std::int32_t size;
    unsigned char kept[2];
  } const rows[] = {{2, {0x04, 0x5A}}, {1, {0x04, 0xCC}}, {0, {0xCC, 0xCC}}, {3, {0xCC, 0xCC}}};
  read_.accept_ack = 1;
  for (const auto& row : rows) {
    for (const Bytes& frame :
         {Short(GetParam().ack_header, "04 5A"), Large(GetParam().ack_header, "04 5A")}) {
      read_.size = row.size;
      read_.ack = 0xCCCC;
      read_.ack_received = 0;
      const Decoded decoded = Decode(frame);
      EXPECT_EQ(decoded.result, IPOD_COMM_OK) << row.size;
      EXPECT_EQ(decoded.keep_reading, 0) << row.size;
      EXPECT_EQ(read_.ack_received, 1) << row.size;
      unsigned char ack[2] = {};
      std::memcpy(ack, &read_.ack, 2);
      EXPECT_THAT(ack, ElementsAre(row.kept[0], row.kept[1])) << row.size;
      EXPECT_EQ(read_.size, row.size);
      EXPECT_EQ(read_.stored, 0U);
    }
  }
}

TEST_P(Decoding, ExpectedAckIsAnAnswerEvenWhereAcksAreAccepted) {
  read_.expected_command = 0x0002;
  read_.accept_ack = 1;
  ExpectTaken(Short(GetParam().ack_header, "04 5A 01"), "04 5A 01");
  EXPECT_EQ(read_.ack_received, 0);
}

INSTANTIATE_TEST_SUITE_P(
    Of, Decoding,
    ::testing::Values(DecoderRow{"General", &CIpodComm::ProcessLingoGeneralReadCommand, "00 33",
                                 "00 02", "00 34"},
                      DecoderRow{"DisplayRemote", &CIpodComm::ProcessLingoDisplayRemoteReadCommand,
                                 "03 33", "03 02", "03 34"},
                      DecoderRow{"Extended", &CIpodComm::ProcessLingoExtendedReadCommand,
                                 "04 00 33", "04 00 02", "04 00 34"},
                      DecoderRow{"Sports", &CIpodComm::ProcessLingoSportsReadCommand, "09 33",
                                 "09 02", "09 34"},
                      DecoderRow{"Storage", &CIpodComm::ProcessLingoStorageReadCommand, "0C 33",
                                 "0C 02", "0C 34"}),
    test::RowName());

// All but the General decoder.
class OrdinaryDecoding : public Decoding {};

TEST_P(OrdinaryDecoding, EverythingElseIsUnexpected) {
  for (const char* header : {GetParam().other_header, GetParam().ack_header}) {
    for (const Bytes& frame : {Short(header, "01 02"), Large(header, "01 02")}) {
      const Decoded decoded = Decode(frame);
      EXPECT_EQ(decoded.result, IPOD_COMM_UNEXPECTED);
      EXPECT_EQ(decoded.keep_reading, 1);
      EXPECT_EQ(read_.ack_received, 0);
      EXPECT_EQ(read_.stored, 0U);
      EXPECT_EQ(read_.size, 4);
      EXPECT_EQ(buffer_[0], 0xEE);
    }
  }
}

TEST_P(OrdinaryDecoding, EchoedIdentifierIsSkipped) {
  TurnOnTransactionIds(0x1235);
  ExpectTaken(Short(GetParam().header, "12 34 07"), "07");
  SetBuffer(4);
  ExpectTaken(Large(GetParam().header, "12 34 07"), "07");
  SetBuffer(4);
  ExpectTaken(Short(GetParam().header, "12 34"), "");
}

TEST_P(OrdinaryDecoding, AnotherIdentifierStaysInTheData) {
  TurnOnTransactionIds(0x1235);
  ExpectTaken(Short(GetParam().header, "12 35 07"), "12 35 07");
  SetBuffer(4);
  ExpectTaken(Short(GetParam().header, "12 33 07"), "12 33 07");
  SetBuffer(4);
  ExpectTaken(Large(GetParam().header, "34 12 07"), "34 12 07");
  SetBuffer(4);
  ExpectTaken(Short(GetParam().header, "12"), "12");
}

TEST_P(OrdinaryDecoding, LargestIdentifierIsEchoedBeforeOwnIdentifierZero) {
  TurnOnTransactionIds(0x0000);
  ExpectTaken(Short(GetParam().header, "FF FF 07"), "07");
}

TEST_P(OrdinaryDecoding, IdentifierInFrontOfAnAcceptedAckIsSkipped) {
  TurnOnTransactionIds(0x1235);
  read_.accept_ack = 1;
  read_.size = 2;
  Decode(Short(GetParam().ack_header, "12 34 04 5A"));
  unsigned char ack[2] = {};
  std::memcpy(ack, &read_.ack, 2);
  EXPECT_THAT(ack, ElementsAre(0x04, 0x5A));
}

TEST_P(OrdinaryDecoding, CutAckReadsAsZero) {
  read_.accept_ack = 1;
  read_.size = 2;
  read_.ack = 0xCCCC;
  EXPECT_EQ(Decode(Short(GetParam().ack_header, "")).result, IPOD_COMM_OK);
  EXPECT_EQ(read_.ack, 0);
}

INSTANTIATE_TEST_SUITE_P(
    Of, OrdinaryDecoding,
    ::testing::Values(DecoderRow{"DisplayRemote", &CIpodComm::ProcessLingoDisplayRemoteReadCommand,
                                 "03 33", "03 02", "03 34"},
                      DecoderRow{"Extended", &CIpodComm::ProcessLingoExtendedReadCommand,
                                 "04 00 33", "04 00 02", "04 00 34"},
                      DecoderRow{"Sports", &CIpodComm::ProcessLingoSportsReadCommand, "09 33",
                                 "09 02", "09 34"},
                      DecoderRow{"Storage", &CIpodComm::ProcessLingoStorageReadCommand, "0C 33",
                                 "0C 02", "0C 34"}),
    test::RowName());

}  // namespace
