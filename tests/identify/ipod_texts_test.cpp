// SPDX-License-Identifier: MIT
// The iPod's name and model number: always converted from 256 bytes, whatever came, into buffers
// of every size; answers of every length, and names cut inside a character.
#include <algorithm>
#include <numeric>

#include "support/packets.h"
#include "support/session_test.h"

namespace {

using test::Bytes;
using test::kMillisecond;
using test::kSecond;
using test::SessionTest;
using ::testing::ElementsAre;

constexpr wchar_t kUntouched = L'\x7E7E';

class IpodTexts : public SessionTest {
 protected:
  IpodTexts() : text_(400, kUntouched) {}

  // Queues the answer `command` with this data; in the large form when it does not fit the other.
  void QueueAnswer(std::uint8_t command, const Bytes& data) {
    tagSERIAL_PACKET packet = {};
    const auto add = [&packet](std::size_t byte) {
      packet.data[packet.length++] = static_cast<unsigned char>(byte);
    };
    const std::size_t body = data.size() + 2;
    add(0xFF);
    add(0x55);
    if (body > 255) {
      add(0);
      add(body >> 8);
    }
    add(body);
    add(0x00);
    add(command);
    for (const std::uint8_t byte : data) add(byte);
    add(0x100U - std::accumulate(packet.data + 2, packet.data + packet.length, 0U) % 0x100U);
    CIpodCommPeer::Responses(session_).Append(packet);
  }
  int AskName(unsigned long capacity) {
    return session_.Command_RequestIpodName(text_.data(), capacity);
  }
  int AskModel(unsigned long capacity) {
    return session_.Command_RequestIpodModelNum(&model_id_, text_.data(), capacity);
  }
  // The text up to its terminator, where there is one.
  std::wstring Text() const {
    return {text_.begin(), std::find(text_.begin(), text_.end(), L'\0')};
  }
  void ExpectUntouchedFrom(std::size_t first) {
    for (std::size_t i = first; i < text_.size(); ++i) ASSERT_EQ(text_[i], kUntouched) << i;
  }

  std::vector<wchar_t> text_;
  unsigned long model_id_ = 0xDEAD;
};

// ---- Name

TEST_F(IpodTexts, NameIsAskedForAndConverted) {
  Answer("FF 55 02 00 07 F7", "FF 55 07 00 08 69 50 6F 64 00 65");
  EXPECT_EQ(AskName(256), 1);
  EXPECT_EQ(Text(), L"iPod");
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 02 00 07 F7"));
}

// 256 bytes of source are 256 characters, the zeros behind the name included, and a terminator.
TEST_F(IpodTexts, NameIsConvertedFrom256BytesWhateverItsLength) {
  QueueAnswer(0x08, test::Hex("41 42"));
  EXPECT_EQ(AskName(400), 1);
  EXPECT_EQ(Text(), L"AB");
  for (std::size_t i = 2; i <= 256; ++i) ASSERT_EQ(text_[i], L'\0') << i;
  ExpectUntouchedFrom(257);
}

TEST_F(IpodTexts, NameIsReadFromAnswersOfEveryLength) {
  for (std::size_t length = 0; length <= 300; ++length) {
    QueueAnswer(0x08, Bytes(length, 'x'));
    ASSERT_EQ(AskName(400), 1);
    ASSERT_EQ(Text(), std::wstring(std::min<std::size_t>(length, 256), L'x')) << length;
  }
}

TEST_F(IpodTexts, NameIsCutToEveryCapacity) {
  const std::wstring whole = L"a\u00E9\u20ACz";
  for (std::size_t capacity = 1; capacity <= 6; ++capacity) {
    std::fill(text_.begin(), text_.end(), kUntouched);
    QueueAnswer(0x08, test::Hex("61 C3 A9 E2 82 AC 7A 00"));
    EXPECT_EQ(AskName(static_cast<unsigned long>(capacity)), 1);
    EXPECT_EQ(Text(), whole.substr(0, capacity - 1));
    ExpectUntouchedFrom(capacity);
  }
}

TEST_F(IpodTexts, NameOfAHundredThreeByteCharactersIsCutBetweenTwoOfThem) {
  Bytes name;
  for (int i = 0; i < 100; ++i) {
    for (const std::uint8_t byte : test::Hex("E2 82 AC")) name.push_back(byte);
  }
  QueueAnswer(0x08, name);
  ASSERT_EQ(AskName(400), 1);
  EXPECT_EQ(Text(), std::wstring(85, L'\u20AC'));
}

TEST_F(IpodTexts, NameIntoABufferOfNoCharactersIsStillASuccess) {
  QueueAnswer(0x08, test::Hex("41"));
  EXPECT_EQ(AskName(0), 1);
  ExpectUntouchedFrom(0);
}

// The reply buffer ends inside a character of two, three and four bytes, at each place in it.
TEST_F(IpodTexts, NameCutInsideACharacterEndsBeforeIt) {
  for (const char* character : {"C3 A9", "E2 82 AC", "F0 9F 8E B5"}) {
    const Bytes bytes = test::Hex(character);
    for (std::size_t kept = 1; kept < bytes.size(); ++kept) {
      Bytes name(256 - kept, 'x');
      name.insert(name.end(), bytes.begin(), bytes.end());
      QueueAnswer(0x08, name);
      ASSERT_EQ(AskName(400), 1);
      EXPECT_EQ(Text(), std::wstring(256 - kept, L'x')) << character << " " << kept;
    }
  }
}

TEST_F(IpodTexts, NameCutBehindACharacterKeepsIt) {
  Bytes name(254, 'x');
  for (const std::uint8_t byte : test::Hex("C3 A9 C3 A9")) name.push_back(byte);
  QueueAnswer(0x08, name);
  ASSERT_EQ(AskName(400), 1);
  EXPECT_EQ(Text(), std::wstring(254, L'x') + L'\u00E9');
}

TEST_F(IpodTexts, UnansweredNameLeavesTheBuffer) {
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(AskName(256), 0); }), 3 * 1020 * kMillisecond);
  ExpectUntouchedFrom(0);
}

// The exchange succeeds when silence follows a rejection: an empty text.
TEST_F(IpodTexts, RejectedNameIsAnEmptyTextAfterASecondOfSilence) {
  Answer("FF 55 02 00 07 F7", "FF 55 04 00 02 04 07 EF");
  EXPECT_GT(Elapsed([&] { EXPECT_EQ(AskName(256), 1); }), kSecond);
  EXPECT_EQ(Text(), L"");
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 02 00 07 F7"));
}

// ---- Model number

TEST_F(IpodTexts, ModelIsAnIdentifierAndAText) {
  Answer("FF 55 02 00 0D F1", "FF 55 0E 00 0E 00 0B 00 10 4D 41 34 37 37 4C 4C 00 01");
  EXPECT_EQ(AskModel(256), 1);
  EXPECT_EQ(model_id_, 0x000B0010U);
  EXPECT_EQ(Text(), L"MA477LL");
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 02 00 0D F1"));
}

TEST_F(IpodTexts, ModelOutputsAreOptional) {
  Answer("FF 55 02 00 0D F1", "FF 55 0E 00 0E 00 0B 00 10 4D 41 34 37 37 4C 4C 00 01");
  EXPECT_EQ(session_.Command_RequestIpodModelNum(nullptr, nullptr, 0), 1);
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 02 00 0D F1"));
  EXPECT_EQ(session_.Command_RequestIpodModelNum(&model_id_, nullptr, 256), 1);
  EXPECT_EQ(model_id_, 0x000B0010U);
  EXPECT_EQ(session_.Command_RequestIpodModelNum(nullptr, text_.data(), 256), 1);
  EXPECT_EQ(Text(), L"MA477LL");
}

// The first four bytes are the identifier, most significant first; 252 at most are text, although
// 256 are converted: the four behind the reply are zeros.
TEST_F(IpodTexts, ModelIsReadFromAnswersOfEveryLength) {
  for (std::size_t length = 0; length <= 300; ++length) {
    std::fill(text_.begin(), text_.end(), kUntouched);
    Bytes data(length, 'x');
    for (std::size_t i = 0; i < std::min<std::size_t>(length, 4); ++i) {
      data[i] = static_cast<std::uint8_t>(0x81 + i);
    }
    QueueAnswer(0x0E, data);
    ASSERT_EQ(AskModel(400), 1);
    const unsigned long kept[] = {0, 0x81000000, 0x81820000, 0x81828300, 0x81828384};
    ASSERT_EQ(model_id_, kept[std::min<std::size_t>(length, 4)]) << length;
    const std::size_t text = length < 4 ? 0 : std::min<std::size_t>(length, 256) - 4;
    ASSERT_EQ(Text(), std::wstring(text, L'x')) << length;
    ExpectUntouchedFrom(257);
  }
}

TEST_F(IpodTexts, ModelCutInsideACharacterEndsBeforeIt) {
  Bytes data(255, 'x');
  for (const std::uint8_t byte : test::Hex("C3 A9")) data.push_back(byte);
  QueueAnswer(0x0E, data);
  ASSERT_EQ(AskModel(400), 1);
  EXPECT_EQ(Text(), std::wstring(251, L'x'));
}

TEST_F(IpodTexts, ModelTextIsCutToTheCapacity) {
  QueueAnswer(0x0E, test::Hex("00 0B 00 10 4D 41 34 37 37 4C 4C"));
  EXPECT_EQ(AskModel(3), 1);
  EXPECT_EQ(Text(), L"MA");
  ExpectUntouchedFrom(3);
}

TEST_F(IpodTexts, UnansweredModelLeavesBothOutputs) {
  EXPECT_EQ(AskModel(256), 0);
  EXPECT_EQ(model_id_, 0xDEADU);
  ExpectUntouchedFrom(0);
}

TEST_F(IpodTexts, RejectedModelIsZeroAndAnEmptyText) {
  Answer("FF 55 02 00 0D F1", "FF 55 04 00 02 04 0D E9");
  EXPECT_EQ(AskModel(256), 1);
  EXPECT_EQ(model_id_, 0U);
  EXPECT_EQ(Text(), L"");
}

}  // namespace
