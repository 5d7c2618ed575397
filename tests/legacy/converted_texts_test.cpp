// SPDX-License-Identifier: MIT
// Texts that come as UTF-8: the name, the serial number and the model number.
#include <algorithm>
#include <iterator>
#include <memory>

#include "support/legacy_test.h"
#include "support/packets.h"

namespace {

using test::kMillisecond;
using test::kSilenceUs;
using test::LegacyTest;
using ::testing::ElementsAre;

constexpr const char* kName = "FF 55 02 00 07 F7";
constexpr const char* kSerial = "FF 55 02 00 0B F3";
constexpr const char* kModel = "FF 55 02 00 0D F1";

// A getter of converted text, its request, and two replies: "Zoë" with its terminator, and "AB"
// without.
struct ConvertedText {
  const char* name;
  int (ipod::*getter)(wchar_t*);
  const char* request;
  const char* terminated;
  const char* unterminated;
  const wchar_t* shown;  // for the second, where five characters were there before
};

class ConvertedTexts : public LegacyTest, public ::testing::WithParamInterface<ConvertedText> {
 protected:
  ConvertedTexts() { std::fill(std::begin(text_), std::end(text_), L'x'); }
  int Get(wchar_t* text) { return (legacy_.*GetParam().getter)(text); }

  wchar_t text_[250];
};

TEST_P(ConvertedTexts, AreConvertedFromUtf8) {
  Answer(GetParam().request, GetParam().terminated);
  EXPECT_EQ(Get(text_), 1);
  EXPECT_STREQ(text_, L"Zo\u00EB");
  EXPECT_THAT(DrainSent(), ElementsAre(GetParam().request));
}

TEST_P(ConvertedTexts, AreTerminatedInTheLastOf250Characters) {
  Answer(GetParam().request, GetParam().terminated);
  Get(text_);
  EXPECT_EQ(text_[248], L'x');
  EXPECT_EQ(text_[249], L'\0');
}

TEST_P(ConvertedTexts, WithoutATerminatorAreFollowedByWhatIsThere) {
  Answer(GetParam().request, GetParam().unterminated);
  text_[5] = L'\0';
  EXPECT_EQ(Get(text_), 1);
  EXPECT_STREQ(text_, GetParam().shown);
}

TEST_P(ConvertedTexts, AreEmptyUnanswered) {
  EXPECT_EQ(Elapsed([this] { EXPECT_EQ(Get(text_), 0); }), kSilenceUs);
  EXPECT_EQ(test::Units(text_, 2), "0 78");
}

TEST_P(ConvertedTexts, AreNotAwaitedWhenTheyCannotBeAskedFor) {
  world_.FailFrom("WriteFile", 1, 31);
  EXPECT_EQ(Elapsed([this] { EXPECT_EQ(Get(text_), 0); }), 5 * kMillisecond);
  EXPECT_EQ(test::Units(text_, 2), "0 78");
}

TEST_P(ConvertedTexts, NeedNoPlace) {
  Answer(GetParam().request, GetParam().terminated);
  EXPECT_EQ(Get(nullptr), 1);
}

TEST_P(ConvertedTexts, NeedNoPlaceUnanswered) { EXPECT_EQ(Get(nullptr), 0); }

INSTANTIATE_TEST_SUITE_P(
    Legacy, ConvertedTexts,
    ::testing::Values(ConvertedText{"Name", &ipod::getipodname, kName,
                                    "FF 55 07 00 08 5A 6F C3 AB 00 BA", "FF 55 04 00 08 41 42 71",
                                    L"ABxxx"},
                      ConvertedText{"SerialNumber", &ipod::getipodserailnum, kSerial,
                                    "FF 55 07 00 0C 5A 6F C3 AB 00 B6", "FF 55 04 00 0C 41 42 6D",
                                    L"ABxxx"},
                      ConvertedText{"ModelName", &ipod::getipodmodelname, kModel,
                                    "FF 55 0B 00 0E 00 0B 00 04 5A 6F C3 AB 00 A1",
                                    // As many characters as the payload has bytes, so behind "AB"
                                    // come the checksum, 58 or "X", and what follows the frame, 0.
                                    "FF 55 08 00 0E 00 0B 00 04 41 42 58", L"ABX"}),
    test::RowName());

using Name = LegacyTest;

TEST_F(Name, LongestFillsTheBufferAndIsCutByItsTerminator) {
  // 250 characters make the longest frame that is read whole.
  std::string reply = "FF 55 FC 00 08";
  for (int i = 0; i < 250; ++i) reply += " 41";
  Answer(kName, reply + " 82");
  const auto text = std::make_unique<wchar_t[]>(250);
  EXPECT_EQ(legacy_.getipodname(text.get()), 1);
  EXPECT_EQ(std::wstring(text.get()), std::wstring(249, L'A'));
}

TEST_F(Name, IsCutBetweenTwoCharacters) {
  std::string reply = "FF 55 FC 00 08";
  for (int i = 0; i < 125; ++i) reply += " C3 A9";
  Answer(kName, reply + " 40");
  wchar_t text[250] = {};
  EXPECT_EQ(legacy_.getipodname(text), 1);
  EXPECT_EQ(std::wstring(text), std::wstring(124, L'\u00E9'));
}

TEST_F(Name, WhoseCharactersFillTheBufferIsWhole) {
  std::string reply = "FF 55 FC 00 08";
  for (int i = 0; i < 83; ++i) reply += " E2 82 AC";
  Answer(kName, reply + " 41 8B");
  wchar_t text[250] = {};
  EXPECT_EQ(legacy_.getipodname(text), 1);
  EXPECT_EQ(std::wstring(text), std::wstring(83, L'\u20AC'));
}

TEST_F(Name, BytesThatAreNoUtf8BecomeReplacementCharacters) {
  Answer(kName, "FF 55 06 00 08 41 FF 42 00 70");
  wchar_t text[250] = {};
  EXPECT_EQ(legacy_.getipodname(text), 1);
  EXPECT_STREQ(text, L"A\uFFFDB");
}

}  // namespace
