// SPDX-License-Identifier: MIT
// How tokens are packed into packets of 520 bytes: where each goes, when a packet ends, and what
// happens to tokens that do not fit. Packets are compared as they are packed, for the line does not
// carry the longest of them.
#include "identify/token_packet.h"

#include <algorithm>
#include <string>
#include <vector>

#include "identify/identification.h"
#include "identify/identification_sequence.h"

// Packs tokens as identification does, without sending them.
struct IdentificationSequencePeer {
  using Sequence = CIpodCommPeer::IdentificationSequence;
  using Token = Sequence::Token;

  // Appends the packets' bytes to `packets`. False when a token fits no packet.
  static bool Pack(CIpodComm& session, const std::vector<Token>& tokens,
                   std::vector<test::Bytes>* packets) {
    Sequence sequence(session, 0, nullptr, nullptr, nullptr);
    const Token* const end = tokens.data() + tokens.size();
    ipodcomm::TokenPacket packet;
    for (const Token* next = tokens.data(); next != end;) {
      const Token* const rest = sequence.Pack(next, end, &packet);
      if (rest == next) return false;
      packets->emplace_back(packet.bytes(), packet.bytes() + packet.size());
      next = rest;
    }
    return true;
  }
  // What identification sends behind the announcement of the lingoes.
  static std::vector<Token> Tokens(std::string_view model) {
    const auto tokens = Sequence::Tokens(model);
    return {tokens.begin() + 1, tokens.end()};
  }
  // A text token of `size` bytes in all.
  static Token Text(std::size_t size, const std::string& letters) {
    return {Token::Kind::kText, 0x07, 0, std::string_view(letters).substr(0, size - 5)};
  }
  static Token Certification() { return {Token::Kind::kCertification}; }
};

namespace {

using ipodcomm::TokenPacket;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;

using Peer = IdentificationSequencePeer;

constexpr unsigned long kNoRoom = 0xFFFFFFFF;

// ---- One packet ---------------------------------------------------------------------------------

class OnePacket : public ::testing::Test {
 protected:
  // Adds a token of `size` equal bytes.
  bool Add(unsigned long size, unsigned char byte) {
    std::fill_n(packet_.end(), size, byte);
    return packet_.Add(size);
  }
  std::string Text() {
    return test::ToHex(test::Bytes(packet_.bytes(), packet_.bytes() + packet_.size()));
  }

  TokenPacket packet_;
};

TEST_F(OnePacket, TokensLieBackToBackBehindTheirCount) {
  EXPECT_EQ(packet_.room(), 519U);
  EXPECT_TRUE(Add(3, 0xAA));
  EXPECT_EQ(packet_.room(), 516U);
  EXPECT_TRUE(Add(2, 0xBB));
  EXPECT_EQ(Text(), "02 AA AA AA BB BB");
}

TEST_F(OnePacket, WithoutTokensIsItsCount) {
  EXPECT_TRUE(packet_.empty());
  EXPECT_EQ(Text(), "00");
}

TEST_F(OnePacket, ClearingBeginsANewOne) {
  Add(3, 0xAA);
  packet_.Clear();
  EXPECT_TRUE(packet_.empty());
  EXPECT_EQ(packet_.room(), 519U);
  Add(1, 0xBB);
  EXPECT_FALSE(packet_.empty());
  EXPECT_EQ(Text(), "01 BB");
}

TEST_F(OnePacket, StaysAsItIsWhenATokenDoesNotFit) {
  Add(3, 0xAA);
  EXPECT_FALSE(packet_.Add(kNoRoom));
  EXPECT_EQ(Text(), "01 AA AA AA");
}

TEST_F(OnePacket, BytesOfTheOneBeforeStayBehindTheEnd) {
  Add(8, 0xAA);
  packet_.Clear();
  packet_.end()[0] = 0x11;  // leaves the second byte alone
  packet_.Add(2);
  EXPECT_EQ(Text(), "01 11 AA");
}

// ---- Several packets ----------------------------------------------------------------------------

class Packing : public ::testing::Test {
 protected:
  bool Pack(const std::vector<Peer::Token>& tokens) {
    test::DrainTraceLog();
    return Peer::Pack(session_, tokens, &packed_);
  }
  Peer::Token Text(std::size_t size) const { return Peer::Text(size, letters_); }

  // A text token's bytes: "0F 00 02 07 4D 4D ... 00".
  static std::string TextBytes(const char* length_byte, std::size_t size) {
    return std::string(length_byte) + " 00 02 07 " + test::Repeated("4D", size - 5) + " 00";
  }
  std::vector<std::string> Packed() const {
    std::vector<std::string> texts;
    for (const test::Bytes& packet : packed_) texts.push_back(test::ToHex(packet));
    return texts;
  }
  std::vector<std::size_t> Sizes() const {
    std::vector<std::size_t> sizes;
    for (const test::Bytes& packet : packed_) sizes.push_back(packet.size());
    return sizes;
  }

  test::World world_;
  test::ChosenSession session_;
  std::vector<test::Bytes> packed_;
  const std::string letters_ = std::string(600, 'M');
};

TEST_F(Packing, TokenThatDoesNotFitGoesIntoTheNextPacket) {
  EXPECT_TRUE(Pack({Text(10), Text(509), Text(6)}));
  EXPECT_THAT(Packed(), ElementsAre("01 " + TextBytes("09", 10),
                                    "02 " + TextBytes("FC", 509) + " " + TextBytes("05", 6)));
}

TEST_F(Packing, TokenThatJustFitsStays) {
  EXPECT_TRUE(Pack({Text(10), Text(508)}));
  EXPECT_THAT(Sizes(), ElementsAre(519));
}

TEST_F(Packing, TokenThatFitsNoPacketIsReportedAfterTheOthersWerePacked) {
  EXPECT_FALSE(Pack({Text(6), Text(519)}));
  EXPECT_THAT(Packed(), ElementsAre("01 " + TextBytes("05", 6)));
}

TEST_F(Packing, CertificationThatDoesNotFitBecomesAStatusInTheNextPacket) {
  EXPECT_TRUE(Pack({Text(511), Peer::Certification(), Text(6)}));
  EXPECT_THAT(Packed(), ElementsAre("01 " + TextBytes("FE", 511),
                                    "02 07 00 02 0B 00 00 00 00 " + TextBytes("05", 6)));
}

TEST_F(Packing, CertificationThatFitsStaysOne) {
  EXPECT_TRUE(Pack({Text(510), Peer::Certification()}));
  EXPECT_THAT(Packed(), ElementsAre("02 " + TextBytes("FD", 510) + " 07 00 02 0C 00 00 00 00"));
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

  // Packs everything behind the announcement, with a model number of `model_length` letters.
  bool PackAll(std::size_t model_length) {
    return Pack(Peer::Tokens(std::string_view(letters_).substr(0, model_length)));
  }
  static std::string Model(const char* length_byte, std::size_t model_length) {
    return " " + TextBytes(length_byte, model_length + 5);
  }
};

TEST_F(RealTokens, FillOnePacketInTheirOrder) {
  EXPECT_TRUE(PackAll(2));
  EXPECT_THAT(Packed(),
              ElementsAre(std::string("0F ") + kToModel + Model("06", 2) + kSerial + kMaxPayload +
                          kCertification + kFourPreferences + kFifthPreference + kSixthPreference));
}

TEST_F(RealTokens, CertificationInAFreshPacketBecomesAStatus) {
  EXPECT_TRUE(PackAll(428));
  EXPECT_THAT(Packed(),
              ElementsAre(std::string("08 ") + kToModel + Model("B0", 428) + kSerial + kMaxPayload,
                          std::string("07 07 00 02 0B 00 00 00 00") + kFourPreferences +
                              kFifthPreference + kSixthPreference));
}

TEST_F(RealTokens, CertificationAnnouncesAByteOfThePacketBefore) {
  // In the second packet the certification's unwritten byte falls on the 02 of what was the name.
  EXPECT_TRUE(PackAll(436));
  EXPECT_THAT(Packed(), ElementsAre(std::string("07 ") + kToModel + Model("B8", 436) + kSerial,
                                    std::string("08") + kMaxPayload + " 07 00 02 0C 00 00 00 02" +
                                        kFourPreferences + kFifthPreference + kSixthPreference));
}

TEST_F(RealTokens, LastPreferenceMayNeedAPacketOfItsOwn) {
  EXPECT_TRUE(PackAll(392));
  EXPECT_THAT(Packed(),
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
  EXPECT_TRUE(PackAll(GetParam().model));
  EXPECT_THAT(Sizes(), ElementsAreArray(GetParam().packets));
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

TEST_F(RealTokens, ModelNumberThatFitsNoPacketEndsThePacking) {
  EXPECT_FALSE(PackAll(514));
  EXPECT_THAT(Sizes(), ElementsAre(62));
}

}  // namespace
