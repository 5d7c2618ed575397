// SPDX-License-Identifier: MIT
// Every boundary of UTF-8, every malformed beginning, every cut.
#include "platform/common/utf8.h"

#include <array>
#include <string>
#include <vector>

#include "support.h"

namespace ipodcomm::test {
namespace {

struct Pair {
  std::string utf8;
  char32_t character;
};

const std::vector<Pair>& Boundaries() {
  static const std::vector<Pair> pairs = {
      {std::string("\x00", 1), 0x00},
      {"\x01", 0x01},
      {"\x7F", 0x7F},
      {"\xC2\x80", 0x80},
      {"\xDF\xBF", 0x7FF},
      {"\xE0\xA0\x80", 0x800},
      {"\xE1\x80\x80", 0x1000},
      {"\xEC\xBF\xBF", 0xCFFF},
      {"\xED\x80\x80", 0xD000},
      {"\xED\x9F\xBF", 0xD7FF},
      {"\xEE\x80\x80", 0xE000},
      {"\xEF\xBF\xBD", 0xFFFD},
      {"\xEF\xBF\xBE", 0xFFFE},
      {"\xEF\xBF\xBF", 0xFFFF},
      {"\xF0\x90\x80\x80", 0x10000},
      {"\xF0\xBF\xBF\xBF", 0x3FFFF},
      {"\xF1\x80\x80\x80", 0x40000},
      {"\xF3\xBF\xBF\xBF", 0xFFFFF},
      {"\xF4\x80\x80\x80", 0x100000},
      {"\xF4\x8F\xBF\xBF", 0x10FFFF},
  };
  return pairs;
}

std::wstring One(char32_t character) { return std::wstring(1, static_cast<wchar_t>(character)); }

TEST(Utf8, DecodesEveryBoundary) {
  for (const Pair& pair : Boundaries()) {
    EXPECT_EQ(platform::Utf8ToWide(pair.utf8), One(pair.character)) << std::hex << pair.character;
  }
}

TEST(Utf8, EncodesEveryBoundary) {
  for (const Pair& pair : Boundaries()) {
    EXPECT_EQ(platform::WideToUtf8(One(pair.character)), pair.utf8) << std::hex << pair.character;
  }
}

TEST(Utf8, EveryCharacterComesBack) {
  for (char32_t character = 0; character <= 0x10FFFF; ++character) {
    if (character == 0xD800) character = 0xE000;
    const std::wstring wide = One(character);
    ASSERT_EQ(platform::Utf8ToWide(platform::WideToUtf8(wide)), wide) << std::hex << character;
  }
}

TEST(Utf8, EveryCutOfACharacterIsOneReplacement) {
  for (const Pair& pair : Boundaries()) {
    for (std::size_t length = 1; length < pair.utf8.size(); ++length) {
      EXPECT_EQ(platform::Utf8ToWide(pair.utf8.substr(0, length)), L"\uFFFD");
      EXPECT_EQ(platform::Utf8ToWide(pair.utf8.substr(0, length) + "a"), L"\uFFFDa");
      EXPECT_EQ(platform::Utf8ToWide(pair.utf8.substr(0, length) + pair.utf8),
                L"\uFFFD" + One(pair.character));
    }
  }
}

TEST(Utf8, EveryBytThatBeginsNothingIsReplacedAlone) {
  for (int byte = 0x80; byte < 0x100; ++byte) {
    const bool begins = byte >= 0xC2 && byte <= 0xF4;
    if (begins) continue;
    const std::string text = {'a', static_cast<char>(byte), static_cast<char>(byte), 'b'};
    EXPECT_EQ(platform::Utf8ToWide(text), L"a\uFFFD\uFFFDb") << byte;
  }
}

TEST(Utf8, MalformedInputIsReplacedByMaximalSubparts) {
  const std::vector<std::pair<std::string, std::wstring>> cases = {
      {"\xC0\xAF", L"\uFFFD\uFFFD"},                      // overlong slash
      {"\xC1\xBF", L"\uFFFD\uFFFD"},                      // overlong
      {"\xE0\x80\xAF", L"\uFFFD\uFFFD\uFFFD"},            // overlong, three bytes
      {"\xE0\x9F\xBF", L"\uFFFD\uFFFD\uFFFD"},            // the last overlong of them
      {"\xF0\x80\x80\xAF", L"\uFFFD\uFFFD\uFFFD\uFFFD"},  // overlong, four bytes
      {"\xF0\x8F\xBF\xBF", L"\uFFFD\uFFFD\uFFFD\uFFFD"},  // the last overlong of them
      {"\xED\xA0\x80", L"\uFFFD\uFFFD\uFFFD"},            // the first surrogate
      {"\xED\xBF\xBF", L"\uFFFD\uFFFD\uFFFD"},            // the last surrogate
      {"\xF4\x90\x80\x80", L"\uFFFD\uFFFD\uFFFD\uFFFD"},  // beyond 10FFFF
      {"\xF5\x80\x80\x80", L"\uFFFD\uFFFD\uFFFD\uFFFD"},  // begins nothing
      {"\x61\xF1\x80\x80\xE1\x80\xC2\x62", L"a\uFFFD\uFFFD\uFFFDb"},
      {"\xE2\x82\x41",
       L"\uFFFD"
       L"A"},
      {"\x80", L"\uFFFD"},
  };
  for (const auto& [utf8, wide] : cases) EXPECT_EQ(platform::Utf8ToWide(utf8), wide);
}

TEST(Utf8, WhatIsNoCharacterIsEncodedAsReplacement) {
  for (const char32_t character : {0xD800U, 0xDBFFU, 0xDC00U, 0xDFFFU, 0x110000U, 0x7FFFFFFFU}) {
    EXPECT_EQ(platform::WideToUtf8(One(character)), "\xEF\xBF\xBD");
  }
  EXPECT_EQ(platform::WideToUtf8(One(0xFFFFFFFF)), "\xEF\xBF\xBD");
}

// "a", U+00E9, U+6771, U+1F3B5, "z": every width of character.
constexpr const char* kMixed = "a\xC3\xA9\xE6\x9D\xB1\xF0\x9F\x8E\xB5z";
const std::wstring kMixedWide = L"a\u00E9\u6771\U0001F3B5z";

TEST(TextConversion, EveryCapacityForWideTextIsFilledAndTerminated) {
  for (int capacity = 1; capacity <= 8; ++capacity) {
    wchar_t buffer[9];
    std::fill(std::begin(buffer), std::end(buffer), L'#');
    SetLastError(0);
    const int length = MultiByteToWideChar(CP_UTF8, 0, kMixed, 11, buffer, capacity);
    const bool fits = capacity >= 5;
    EXPECT_EQ(length, fits ? 5 : 0);
    EXPECT_EQ(GetLastError(), fits ? 0U : 122U);
    const std::size_t filled = fits ? 5 : static_cast<std::size_t>(capacity - 1);
    EXPECT_EQ(std::wstring(buffer, filled), kMixedWide.substr(0, filled));
    if (capacity != 5) {
      EXPECT_EQ(buffer[filled], L'\0');  // an exact fit leaves no room for it
    }
    EXPECT_EQ(buffer[capacity], L'#');
  }
}

TEST(TextConversion, EveryCapacityForUtf8HoldsWholeCharacters) {
  // How many bytes of whole characters fit beside a terminator, by capacity.
  constexpr std::array<std::size_t, 11> kFilled = {0, 0, 1, 1, 3, 3, 3, 6, 6, 6, 6};
  for (int capacity = 1; capacity <= 10; ++capacity) {
    char buffer[16];
    std::fill(std::begin(buffer), std::end(buffer), '#');
    SetLastError(0);
    EXPECT_EQ(
        WideCharToMultiByte(CP_UTF8, 0, kMixedWide.c_str(), 5, buffer, capacity, nullptr, nullptr),
        0);
    EXPECT_EQ(GetLastError(), 122U);
    const std::size_t filled = kFilled[static_cast<std::size_t>(capacity)];
    EXPECT_EQ(std::string(buffer, filled), std::string(kMixed).substr(0, filled)) << capacity;
    EXPECT_EQ(buffer[filled], '\0') << capacity;
    EXPECT_EQ(buffer[capacity], '#');
  }
  char buffer[16] = {};
  EXPECT_EQ(WideCharToMultiByte(CP_UTF8, 0, kMixedWide.c_str(), 5, buffer, 11, nullptr, nullptr),
            11);
  EXPECT_EQ(std::string(buffer, 11), kMixed);
}

TEST(TextConversion, EverySourceLengthConverts) {
  // Characters of the mixed text by how many of its bytes are converted; a cut one counts once.
  constexpr std::array<int, 12> kCharacters = {0, 1, 2, 2, 3, 3, 3, 4, 4, 4, 4, 5};
  for (int bytes = 1; bytes <= 11; ++bytes) {
    EXPECT_EQ(MultiByteToWideChar(CP_UTF8, 0, kMixed, bytes, nullptr, 0),
              kCharacters[static_cast<std::size_t>(bytes)]);
  }
}

TEST(TextConversion, AFixedSourceSizeConvertsWhatFollowsTheTerminatorToo) {
  char reply[256] = "iPod";
  reply[10] = 'x';
  wchar_t name[256];
  EXPECT_EQ(MultiByteToWideChar(CP_UTF8, 0, reply, 256, name, 256), 256);
  EXPECT_STREQ(name, L"iPod");
  EXPECT_EQ(name[10], L'x');
}

TEST(TextConversion, RefusesWhatItDoesNotKnow) {
  wchar_t wide[4] = {L'#', L'#', L'#', L'#'};
  char narrow[4] = {'#', '#', '#', '#'};
  EXPECT_EQ(MultiByteToWideChar(0, 0, "abc", 3, wide, 4), 0);
  EXPECT_EQ(MultiByteToWideChar(CP_UTF8, 1, "abc", 3, wide, 4), 0);
  EXPECT_EQ(MultiByteToWideChar(CP_UTF8, 0, "abc", -2, wide, 4), 0);
  EXPECT_EQ(MultiByteToWideChar(CP_UTF8, 0, "abc", 3, wide, -1), 0);
  EXPECT_EQ(MultiByteToWideChar(CP_UTF8, 0, "abc", 3, nullptr, 4), 0);
  EXPECT_EQ(WideCharToMultiByte(CP_UTF8, 0, L"abc", 3, narrow, 4, "?", nullptr), 0);
  EXPECT_EQ(GetLastError(), 87U);
  EXPECT_EQ(wide[0], L'#');
  EXPECT_EQ(narrow[0], '#');
}

}  // namespace
}  // namespace ipodcomm::test
