// SPDX-License-Identifier: MIT
// Text from the iPod into the host's buffer, converted from a fixed number of bytes, and the host's
// text into UTF-8: cut between characters, always terminated, and never past the capacity.
#include "protocol/text.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "support/bytes.h"
#include "support/properties.h"
#include "world/world.h"

namespace {

using test::Bytes;

constexpr wchar_t kUntouched = L'\x7E7E';

class Text : public ::testing::Test {
 protected:
  // Converts into a buffer of `capacity` characters and two more that must stay.
  std::wstring Convert(const Bytes& utf8, std::size_t capacity) {
    std::vector<wchar_t> buffer(capacity + 2, kUntouched);
    ipodcomm::TextFromUtf8(utf8.data(), utf8.size(), buffer.data(), capacity);
    EXPECT_EQ(buffer[capacity], kUntouched);
    EXPECT_EQ(buffer[capacity + 1], kUntouched);
    return std::wstring(buffer.data(), capacity);
  }
  static Bytes Utf8(std::string_view text, std::size_t size) {
    Bytes bytes(text.begin(), text.end());
    bytes.resize(size);
    return bytes;
  }

  ipodcomm::virtual_platform::World world_;
};

TEST_F(Text, KeepsTerminatorsInsideTheSource) {
  EXPECT_EQ(Convert(test::Hex("41 00 42 00"), 6), std::wstring(L"A\0B\0\0\x7E7E", 6));
}

TEST_F(Text, IsCutToTheCapacityAtEveryLength) {
  const std::wstring whole = L"A\u00E9\u20ACZ";
  const Bytes utf8 = test::Hex("41 C3 A9 E2 82 AC 5A");
  EXPECT_EQ(Convert(utf8, 1), std::wstring(L"\0", 1));
  EXPECT_EQ(Convert(utf8, 2), std::wstring(L"A\0", 2));
  EXPECT_EQ(Convert(utf8, 3), std::wstring(L"A\u00E9\0", 3));
  EXPECT_EQ(Convert(utf8, 4), std::wstring(L"A\u00E9\u20AC\0", 4));
  EXPECT_EQ(Convert(utf8, 5), std::wstring(L"A\u00E9\u20ACZ\0", 5));
  EXPECT_EQ(Convert(utf8, 6), std::wstring(L"A\u00E9\u20ACZ\0\x7E7E", 6));
}

TEST_F(Text, LeavesABufferOfNoCharactersAlone) {
  EXPECT_EQ(Convert(test::Hex("41 42"), 0), L"");
  ipodcomm::TextFromUtf8(test::Hex("41").data(), 1, nullptr, 10);
}

TEST_F(Text, OfNoBytesIsEmpty) { EXPECT_EQ(Convert({}, 2), std::wstring(L"\0\x7E7E", 2)); }

// The source ends inside a character, after each of its bytes: the rest counts as malformed.
TEST_F(Text, PartOfACharacterAtTheEndOfTheSourceBecomesAReplacement) {
  EXPECT_EQ(Convert(test::Hex("41 C3"), 3), std::wstring(L"A\uFFFD\0", 3));
  EXPECT_EQ(Convert(test::Hex("41 E2"), 3), std::wstring(L"A\uFFFD\0", 3));
  EXPECT_EQ(Convert(test::Hex("41 E2 82"), 3), std::wstring(L"A\uFFFD\0", 3));
  EXPECT_EQ(Convert(test::Hex("41 F0 9F 8E"), 3), std::wstring(L"A\uFFFD\0", 3));
}

TEST_F(Text, MalformedBytesBecomeReplacements) {
  EXPECT_EQ(Convert(test::Hex("41 FF 42"), 4), std::wstring(L"A\uFFFD\u0042\0", 4));
}

// A character outside the basic plane is one unit here and a pair on platforms with 16-bit units,
// where the pair is kept together.
TEST_F(Text, CharacterOutsideTheBasicPlaneStaysWhole) {
  const Bytes note = test::Hex("41 F0 9F 8E B5");
  if constexpr (sizeof(wchar_t) == 2) {
    EXPECT_EQ(Convert(note, 3), std::wstring(L"A\0\x7E7E", 3));
  } else {
    EXPECT_EQ(Convert(note, 3), std::wstring(L"A\U0001F3B5\0", 3));
  }
}

TEST_F(Text, FailedConversionLeavesAnEmptyText) {
  world_.FailOnce("MultiByteToWideChar", 1, 1113);
  EXPECT_EQ(Convert(test::Hex("41 42"), 2), std::wstring(L"\0\x7E7E", 2));
}

TEST_F(Text, OfTheLongestSourceIsConvertedWhole) {
  const Bytes utf8(1024, 'x');
  const std::wstring text = Convert(utf8, 1025);
  EXPECT_EQ(text, std::wstring(1024, L'x') + L'\0');
}

TEST_F(Text, OfALongerSourceIsEmpty) {
  EXPECT_EQ(Convert(Bytes(1025, 'x'), 2), std::wstring(L"\0\x7E7E", 2));
}

#if IPODCOMM_HAS_RAPIDCHECK

RC_GTEST_FIXTURE_PROP(Text, IsAlwaysTerminatedWithinTheCapacity,
                      (const Bytes& utf8, std::uint8_t drawn_capacity)) {
  RC_PRE(utf8.size() <= 1024U);
  const std::size_t capacity = drawn_capacity + 1U;
  std::vector<wchar_t> buffer(capacity + 1, kUntouched);
  ipodcomm::TextFromUtf8(utf8.data(), utf8.size(), buffer.data(), capacity);
  RC_ASSERT(buffer[capacity] == kUntouched);
  RC_ASSERT(std::count(buffer.begin(), buffer.end() - 1, L'\0') >= 1);
}

#else

TEST_F(Text, IsAlwaysTerminatedWithinTheCapacity) { GTEST_SKIP() << test::kNoRapidcheck; }

#endif

// ---- To UTF-8

// Converts into a buffer of `capacity` bytes and one more that must stay; what is left in it.
std::string ToUtf8(const wchar_t* text, std::size_t capacity) {
  std::string buffer(capacity + 1, '#');
  const std::size_t length = ipodcomm::Utf8FromText(text, buffer.data(), capacity);
  EXPECT_EQ(buffer[capacity], '#');
  EXPECT_EQ(std::string(buffer.c_str()).size(), length);
  return buffer.c_str();
}

TEST_F(Text, ToUtf8IsWholeWhereItFits) {
  EXPECT_EQ(ToUtf8(L"", 4), "");
  EXPECT_EQ(ToUtf8(L"abc", 4), "abc");
  EXPECT_EQ(ToUtf8(L"A\u00E9\u20AC\U0001F3B5", 11), "A\xC3\xA9\xE2\x82\xAC\xF0\x9F\x8E\xB5");
}

// A unit that is no character becomes a replacement, of three bytes.
TEST_F(Text, ToUtf8HasRoomForTheReplacementOfWhatIsNoCharacter) {
  const wchar_t text[] = {L'a', static_cast<wchar_t>(0x110000), L'b', L'\0'};
  EXPECT_EQ(ToUtf8(text, 6),
            "a\xEF\xBF\xBD"
            "b");
  EXPECT_EQ(ToUtf8(text, 5), "a\xEF\xBF\xBD");
  EXPECT_EQ(ToUtf8(text, 4), "a");
}

// The last character of each length and the first of the next, each behind a letter: with room for
// the shorter of the two only the first one fits.
TEST_F(Text, ToUtf8KnowsHowManyBytesACharacterTakes) {
  EXPECT_EQ(ToUtf8(L"a\x7F", 3), "a\x7F");
  EXPECT_EQ(ToUtf8(L"a\u0080", 3), "a");
  EXPECT_EQ(ToUtf8(L"a\u07FF", 4), "a\xDF\xBF");
  EXPECT_EQ(ToUtf8(L"a\u0800", 4), "a");
  EXPECT_EQ(ToUtf8(L"a\uFFFF", 5), "a\xEF\xBF\xBF");
  EXPECT_EQ(ToUtf8(L"a\U00010000", 5), "a");
  EXPECT_EQ(ToUtf8(L"a\U0010FFFF", 6), "a\xF4\x8F\xBF\xBF");
  EXPECT_EQ(ToUtf8(L"a\U0010FFFF", 5), "a");
}

// The first character of each length and the last of all, with room for a byte less and for all.
TEST_F(Text, ToUtf8ConvertsOnlyWhatFits) {
  world_.Record({"WideCharToMultiByte"});
  ToUtf8(L"a\u0080", 3);
  ToUtf8(L"a\u0080", 4);
  ToUtf8(L"a\u0800", 4);
  ToUtf8(L"a\u0800", 5);
  for (const wchar_t* text : {L"a\U00010000", L"a\U0010FFFF"}) {
    ToUtf8(text, 5);
    ToUtf8(text, 6);
  }
  EXPECT_THAT(world_.DrainRecord(),
              ::testing::ElementsAre("WideCharToMultiByte(1, 2)", "WideCharToMultiByte(2, 3)",
                                     "WideCharToMultiByte(1, 3)", "WideCharToMultiByte(2, 4)",
                                     "WideCharToMultiByte(1, 4)", "WideCharToMultiByte(2, 5)",
                                     "WideCharToMultiByte(1, 4)", "WideCharToMultiByte(2, 5)"));
}

// Where a unit holds any character, as here, no two of them make one.
TEST_F(Text, ToUtf8TakesSurrogatesForNoPairWhereUnitsAreWide) {
  const wchar_t pair[] = {static_cast<wchar_t>(0xD83C), static_cast<wchar_t>(0xDFB5), L'\0'};
  EXPECT_EQ(ToUtf8(pair, 7), "\xEF\xBF\xBD\xEF\xBF\xBD");
  EXPECT_EQ(ToUtf8(pair, 4), "\xEF\xBF\xBD");
  const wchar_t second_half[] = {L'a', static_cast<wchar_t>(0xDFB5), L'\0'};
  EXPECT_EQ(ToUtf8(second_half, 4), "a");
}

TEST_F(Text, ToUtf8IsCutBetweenTwoCharacters) {
  EXPECT_EQ(ToUtf8(L"abcd", 1), "");
  EXPECT_EQ(ToUtf8(L"ab\u20AC", 4), "ab");
  EXPECT_EQ(ToUtf8(L"ab\u20AC", 5), "ab");
  EXPECT_EQ(ToUtf8(L"ab\u20AC", 6), "ab\xE2\x82\xAC");
  EXPECT_EQ(ToUtf8(L"\U0001F3B5x", 4), "");
}

TEST_F(Text, ToUtf8FillsTheBufferWhole) {
  EXPECT_EQ(ToUtf8(L"abcd", 4), "abc");
  EXPECT_EQ(ToUtf8(L"ab\u00E9d", 5), "ab\xC3\xA9");
  EXPECT_EQ(ToUtf8(std::wstring(600, L'x').c_str(), 513), std::string(512, 'x'));
  EXPECT_EQ(ToUtf8(L"\U0001F3B5x", 5), "\xF0\x9F\x8E\xB5");
}

TEST_F(Text, ToUtf8IsEmptyWhenTheConversionFails) {
  world_.FailOnce("WideCharToMultiByte", 1, 1113);
  EXPECT_EQ(ToUtf8(L"abc", 8), "");
}

TEST_F(Text, WholeUtf8LeavesOutAnIncompleteLastCharacter) {
  const auto whole = [](std::string_view text) {
    return ipodcomm::WholeUtf8(text.data(), text.size());
  };
  EXPECT_EQ(whole(""), 0U);
  EXPECT_EQ(whole("ab"), 2U);
  EXPECT_EQ(whole("a\xC3"), 1U);
  EXPECT_EQ(whole("a\xC3\xA9"), 3U);
  EXPECT_EQ(whole("a\xE2"), 1U);
  EXPECT_EQ(whole("a\xE2\x82"), 1U);
  EXPECT_EQ(whole("a\xE2\x82\xAC"), 4U);
  EXPECT_EQ(whole("a\xF0"), 1U);
  EXPECT_EQ(whole("a\xF0\x9F"), 1U);
  EXPECT_EQ(whole("a\xF0\x9F\x8E"), 1U);
  EXPECT_EQ(whole("a\xF0\x9F\x8E\xB5"), 5U);
  EXPECT_EQ(whole("\xA9\xA9\xA9\xA9\xA9"), 5U);
}

// Each lead at the border to another kind of lead, and the bytes that may follow it, with their
// neighbours.
TEST_F(Text, WholeUtf8KnowsWhichBytesBeginACharacter) {
  const auto whole = [](std::string_view text) {
    return ipodcomm::WholeUtf8(text.data(), text.size());
  };
  EXPECT_EQ(whole("a\xC1"), 2U);
  EXPECT_EQ(whole("a\xC2"), 1U);
  EXPECT_EQ(whole("a\xF4"), 1U);
  EXPECT_EQ(whole("a\xF5"), 2U);
  EXPECT_EQ(whole("a\xDF\xBF"), 3U);
  EXPECT_EQ(whole("a\xE0\xA0"), 1U);
  EXPECT_EQ(whole("a\xE0\x9F"), 3U);
  EXPECT_EQ(whole("a\xE1\x80"), 1U);
  EXPECT_EQ(whole("a\xE1\xBF"), 1U);
  EXPECT_EQ(whole("a\xED\x9F"), 1U);
  EXPECT_EQ(whole("a\xED\xA0"), 3U);
  EXPECT_EQ(whole("a\xEF\xBF\xBF"), 4U);
  EXPECT_EQ(whole("a\xF0\x8F"), 3U);
  EXPECT_EQ(whole("a\xF0\x90\x80"), 1U);
  EXPECT_EQ(whole("a\xF4\x8F"), 1U);
  EXPECT_EQ(whole("a\xF4\x90"), 3U);
}

// ---- Replies that held only part of a text

// What is left of `text` in a reply of its size.
std::string Kept(std::string_view text) {
  Bytes reply = test::Hex(text);
  ipodcomm::ClearCutCharacter(reply.data(), reply.size());
  return test::ToHex(reply);
}

TEST(CutText, CompleteLastCharacterStays) {
  for (const char* text : {"", "61 62", "61 C3 A9", "61 E2 82 AC", "61 F0 9F 8E B5"}) {
    EXPECT_EQ(Kept(text), text);
  }
}

TEST(CutText, IncompleteLastCharacterIsCleared) {
  EXPECT_EQ(Kept("C3"), "00");
  EXPECT_EQ(Kept("61 C3"), "61 00");
  EXPECT_EQ(Kept("61 E2"), "61 00");
  EXPECT_EQ(Kept("61 E2 82"), "61 00 00");
  EXPECT_EQ(Kept("61 F0"), "61 00");
  EXPECT_EQ(Kept("61 F0 9F"), "61 00 00");
  EXPECT_EQ(Kept("61 F0 9F 8E"), "61 00 00 00");
}

// Bytes that begin no character, whatever follows them, are malformed rather than cut.
TEST(CutText, MalformedEndStays) {
  for (const char* text : {"80", "A9 A9 A9 A9 A9", "61 C0", "61 C1", "61 F5", "61 FF", "61 E0 80",
                           "61 ED A0", "61 F0 80", "61 F4 90"}) {
    EXPECT_EQ(Kept(text), text);
  }
}

}  // namespace
