// SPDX-License-Identifier: MIT
// How tokens are packed into packets of 520 bytes: where each goes, when a packet is sent, and what
// happens to tokens that do not fit. The second half packs the real tokens for a sender that takes
// packets of any size, which the line does not.
#include "identify/token_packet.h"

#include <string>
#include <vector>

#include "identify/identification.h"
#include "identify/identification_sequence.h"

namespace ipodcomm {

struct IdentificationSequencePeer {
  static bool AddTokens(IdentificationSequence& sequence, TokenPacket* packet) {
    return sequence.AddTokens(packet);
  }
};

}  // namespace ipodcomm

namespace {

using ipodcomm::TokenPacket;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;
using ::testing::SizeIs;

using Result = TokenPacket::Result;

constexpr unsigned long kNoRoom = 0xFFFFFFFF;

class Packing : public ::testing::Test {
 protected:
  /// A token of `size` equal bytes, which demands one byte more.
  TokenPacket::Builder Token(unsigned long size, unsigned char byte) {
    return [this, size, byte](unsigned char* destination, unsigned long capacity) {
      rooms_.push_back(capacity);
      if (capacity <= size) return kNoRoom;
      std::fill_n(destination, size, byte);
      return size;
    };
  }

  std::vector<test::Bytes> sent_;
  std::vector<unsigned long> rooms_;  // offered to the tokens, in order
  bool taken_ = true;
  TokenPacket packet_{[this](unsigned char* payload, unsigned long length) {
    sent_.emplace_back(payload, payload + length);
    return taken_;
  }};
};

TEST_F(Packing, TokensLieBackToBackBehindTheirCount) {
  EXPECT_EQ(packet_.Add(Token(3, 0xAA)), Result::kAdded);
  EXPECT_EQ(packet_.Add(Token(2, 0xBB)), Result::kAdded);
  EXPECT_THAT(rooms_, ElementsAre(519, 516));
  EXPECT_THAT(sent_, IsEmpty());
  EXPECT_TRUE(packet_.Send());
  EXPECT_THAT(sent_, ElementsAre(test::Hex("02 AA AA AA BB BB")));
}

TEST_F(Packing, PacketWithoutTokensIsItsCount) {
  EXPECT_TRUE(packet_.Send());
  EXPECT_THAT(sent_, ElementsAre(test::Hex("00")));
}

TEST_F(Packing, SendingBeginsANewPacket) {
  packet_.Add(Token(3, 0xAA));
  packet_.Send();
  packet_.Add(Token(1, 0xBB));
  packet_.Send();
  EXPECT_THAT(rooms_, ElementsAre(519, 519));
  EXPECT_THAT(sent_, ElementsAre(test::Hex("01 AA AA AA"), test::Hex("01 BB")));
}

TEST_F(Packing, TokenThatDoesNotFitGoesIntoTheNextPacket) {
  packet_.Add(Token(10, 0xAA));
  EXPECT_EQ(packet_.Add(Token(509, 0xBB)), Result::kAdded);
  EXPECT_THAT(rooms_, ElementsAre(519, 509, 519));
  EXPECT_THAT(sent_, ElementsAre(test::Hex("01 " + test::Repeated("AA", 10))));
  EXPECT_EQ(packet_.Add(Token(1, 0xCC)), Result::kAdded);
  packet_.Send();
  EXPECT_EQ(test::ToHex(sent_[1]), "02 " + test::Repeated("BB", 509) + " CC");
}

TEST_F(Packing, TokenThatJustFitsStays) {
  packet_.Add(Token(10, 0xAA));
  EXPECT_EQ(packet_.Add(Token(508, 0xBB)), Result::kAdded);
  EXPECT_THAT(sent_, IsEmpty());
  packet_.Send();
  EXPECT_THAT(sent_, ElementsAre(SizeIs(519)));
}

TEST_F(Packing, TokenThatFitsNoPacketIsReportedAfterTheOthersWereSent) {
  packet_.Add(Token(1, 0xAA));
  EXPECT_EQ(packet_.Add(Token(519, 0xBB)), Result::kDoesNotFit);
  EXPECT_THAT(sent_, ElementsAre(test::Hex("01 AA")));
  EXPECT_THAT(rooms_, ElementsAre(519, 518, 519));
}

TEST_F(Packing, TokenIsNotBuiltAgainWhenThePacketIsNotTaken) {
  packet_.Add(Token(1, 0xAA));
  taken_ = false;
  EXPECT_EQ(packet_.Add(Token(519, 0xBB)), Result::kNotSent);
  EXPECT_THAT(rooms_, ElementsAre(519, 518));
  EXPECT_FALSE(packet_.Send());
}

TEST_F(Packing, BytesOfTheLastPacketStayBehindTheOffset) {
  packet_.Add(Token(8, 0xAA));
  packet_.Send();
  packet_.Add([](unsigned char* destination, unsigned long) -> unsigned long {
    destination[0] = 0x11;  // leaves the second byte alone
    return 2;
  });
  packet_.Send();
  EXPECT_EQ(test::ToHex(sent_[1]), "01 11 AA");
}

TEST_F(Packing, AnotherTokenMayTakeThePlaceInAFreshPacket) {
  EXPECT_EQ(packet_.Add(Token(500, 0xAA), Token(1, 0x11)), Result::kAdded);
  EXPECT_EQ(packet_.Add(Token(20, 0xBB), Token(2, 0x22)), Result::kAdded);
  packet_.Send();
  EXPECT_EQ(test::ToHex(sent_[0]), "01 " + test::Repeated("AA", 500));
  EXPECT_EQ(test::ToHex(sent_[1]), "01 22 22");
}

TEST_F(Packing, AnotherTokenIsNotUsedWhileTheFirstFits) {
  packet_.Add(Token(20, 0xBB), Token(2, 0x22));
  packet_.Send();
  EXPECT_EQ(test::ToHex(sent_[0]), "01 " + test::Repeated("BB", 20));
}

// ---- The real tokens ----------------------------------------------------------------------------

constexpr const char* kToModel =
    "0A 00 01 00 00 00 00 00 00 00 05 10 00 02 01 4F 72 76 69 61 6E 20 54 6F 75 63 68 00 "
    "06 00 02 04 02 05 00 06 00 02 05 02 05 00 "
    "12 00 02 06 4F 72 76 69 61 6E 20 46 69 74 6E 65 73 73 00";
constexpr const char* kSerial = " 0A 00 02 08 30 30 30 30 30 31 00";
constexpr const char* kMaxPayload = " 05 00 02 09 00 FF";
constexpr const char* kCertification = " 07 00 02 0C 00 00 00 00";
constexpr const char* kFourPreferences =
    " 05 00 03 01 00 01 05 00 03 02 00 01 05 00 03 03 01 01 05 00 03 08 01 01";
constexpr const char* kFifthPreference = " 05 00 03 0A 01 01";
constexpr const char* kSixthPreference = " 05 00 03 00 01 01";

class RealTokens : public Packing {
 protected:
  RealTokens() { world_.SetFileVersion(L"qz104.exe", L"2,5,0,17"); }

  /// Packs everything behind the announcement, with a model number of `model_length` letters.
  bool Pack(std::size_t model_length) {
    CIpodComm session;
    session.SetModel(std::string(model_length, 'M'));
    ipodcomm::IdentificationSequence sequence(session, 0, nullptr, nullptr);
    test::DrainTraceLog();
    if (!ipodcomm::IdentificationSequencePeer::AddTokens(sequence, &packet_)) return false;
    return packet_.Send();
  }
  static std::string Model(const char* length_byte, std::size_t model_length) {
    return std::string(" ") + length_byte + " 00 02 07 " + test::Repeated("4D", model_length) +
           " 00";
  }
  std::vector<std::string> Sent() const {
    std::vector<std::string> texts;
    for (const test::Bytes& packet : sent_) texts.push_back(test::ToHex(packet));
    return texts;
  }

  test::World world_;
};

TEST_F(RealTokens, FillOnePacketInTheirOrder) {
  EXPECT_TRUE(Pack(2));
  EXPECT_THAT(Sent(),
              ElementsAre(std::string("0F ") + kToModel + Model("06", 2) + kSerial + kMaxPayload +
                          kCertification + kFourPreferences + kFifthPreference + kSixthPreference));
}

TEST_F(RealTokens, CertificationInAFreshPacketBecomesAStatus) {
  EXPECT_TRUE(Pack(428));
  EXPECT_THAT(Sent(),
              ElementsAre(std::string("08 ") + kToModel + Model("B0", 428) + kSerial + kMaxPayload,
                          std::string("07 07 00 02 0B 00 00 00 00") + kFourPreferences +
                              kFifthPreference + kSixthPreference));
}

TEST_F(RealTokens, CertificationAnnouncesAByteOfThePacketBefore) {
  // In the second packet the certification's unwritten byte falls on the 02 of what was the name.
  EXPECT_TRUE(Pack(436));
  EXPECT_THAT(Sent(), ElementsAre(std::string("07 ") + kToModel + Model("B8", 436) + kSerial,
                                  std::string("08") + kMaxPayload + " 07 00 02 0C 00 00 00 02" +
                                      kFourPreferences + kFifthPreference + kSixthPreference));
}

TEST_F(RealTokens, LastPreferenceMayNeedAPacketOfItsOwn) {
  EXPECT_TRUE(Pack(392));
  EXPECT_THAT(Sent(),
              ElementsAre(std::string("0E ") + kToModel + Model("8C", 392) + kSerial + kMaxPayload +
                              kCertification + kFourPreferences + kFifthPreference,
                          std::string("01") + kSixthPreference));
}

struct Length {
  std::size_t model;
  std::vector<std::size_t> packets;
};

void PrintTo(const Length& length, std::ostream* stream) { *stream << length.model; }

class PacketSizes : public RealTokens, public ::testing::WithParamInterface<Length> {};

TEST_P(PacketSizes, FollowFromTheModelNumbersLength) {
  EXPECT_TRUE(Pack(GetParam().model));
  std::vector<std::size_t> sizes;
  for (const test::Bytes& packet : sent_) sizes.push_back(packet.size());
  EXPECT_THAT(sizes, ElementsAreArray(GetParam().packets));
  EXPECT_THAT(test::DrainTraceLog(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Limits, PacketSizes,
                         ::testing::Values(Length{0, {128}}, Length{391, {519}},
                                           Length{392, {514, 7}}, Length{427, {519, 37}},
                                           Length{428, {512, 45}}, Length{435, {519, 45}},
                                           Length{436, {514, 51}}, Length{441, {519, 51}},
                                           Length{442, {509, 62}}, Length{452, {519, 62}},
                                           Length{453, {62, 514, 7}}, Length{513, {62, 519, 62}}),
                         [](const auto& tested) {
                           return "Model" + std::to_string(tested.param.model);
                         });

TEST_F(RealTokens, ModelNumberThatFitsNoPacketIsLogged) {
  EXPECT_FALSE(Pack(514));
  EXPECT_THAT(sent_, ElementsAre(SizeIs(62)));
  EXPECT_THAT(test::DrainTraceLog(),
              ElementsAre("CIpodComm::Command_IdentifyDeviceLingos: Error adding caps token"));
}

TEST_F(RealTokens, PacketThatIsNotTakenEndsThePackingWithoutALog) {
  taken_ = false;
  EXPECT_FALSE(Pack(453));
  EXPECT_THAT(sent_, ElementsAre(SizeIs(62)));
  EXPECT_THAT(test::DrainTraceLog(), IsEmpty());
}

}  // namespace
