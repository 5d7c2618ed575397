// SPDX-License-Identifier: MIT
// How a host makes its names fit to stand in a workout document.
#include <gtest/gtest.h>

#include "ipodcomm/DocumentText.h"

using ipodcomm::DocumentText;
using ipodcomm::LegacyDocumentText;

namespace {

constexpr std::uint32_t kLastCode = 0x10FFFF;

std::wstring Unit(std::uint32_t code) { return {static_cast<wchar_t>(code)}; }

// What XML 1.0 lets stand in a document, and this project in a line of it.
bool MayStand(std::uint32_t code) {
  if (code < 0x20 || (code >= 0x7F && code < 0xA0)) return false;
  return code < 0xD800 || (code > 0xDFFF && code < 0xFFFE) || (code > 0xFFFF && code <= kLastCode);
}

TEST(DocumentText, EscapesMarkupAndKeepsOtherTexts) {
  EXPECT_EQ(DocumentText(L"Fit & <Strong> \"Co's\""), L"Fit &amp; &lt;Strong&gt; \"Co's\"");
  EXPECT_EQ(DocumentText(L"a]]>b"), L"a]]&gt;b");
  EXPECT_EQ(DocumentText(L"Gr\u00F6\u00DFe \u6A4B \U0001F3A7"),
            L"Gr\u00F6\u00DFe \u6A4B \U0001F3A7");
  EXPECT_EQ(DocumentText(L""), L"");
}

TEST(DocumentText, EscapesAnEntityThatTheHostWrote) {
  EXPECT_EQ(DocumentText(L"&amp;"), L"&amp;amp;");
}

TEST(DocumentText, ReplacesWhatNoDocumentMayHoldAndNothingElse) {
  for (std::uint32_t code = 0; code <= kLastCode + 2; ++code) {
    if (code == '&' || code == '<' || code == '>') continue;
    ASSERT_EQ(DocumentText(Unit(code)), MayStand(code) ? Unit(code) : L"\xFFFD")
        << std::hex << code;
  }
}

TEST(DocumentText, TakesATextWithItsZeros) {
  EXPECT_EQ(DocumentText(std::wstring_view(L"a\0b", 3)),
            L"a\xFFFD"
            L"b");
}

// As texts come where wide characters have 16 bits.
TEST(DocumentText, KeepsAPairOfSurrogatesAndReplacesAHalfOne) {
  const std::wstring high = Unit(0xD83C);
  const std::wstring low = Unit(0xDFA7);
  EXPECT_EQ(DocumentText(high + low), high + low);
  EXPECT_EQ(DocumentText(L"x" + high), L"x\xFFFD");
  EXPECT_EQ(DocumentText(low + high + L"&"), L"\xFFFD\xFFFD&amp;");
}

TEST(LegacyDocumentText, IsUtf8WithAByteInEachCharacter) {
  EXPECT_EQ(LegacyDocumentText(L"A & B"), L"A &amp; B");
  EXPECT_EQ(LegacyDocumentText(L"\u00E9"), L"\xC3\xA9");
  EXPECT_EQ(LegacyDocumentText(L"\u07FF\u0800"), L"\xDF\xBF\xE0\xA0\x80");
  EXPECT_EQ(LegacyDocumentText(L"\u6A4B"), L"\xE6\xA9\x8B");
  EXPECT_EQ(LegacyDocumentText(L"\U0001F3A7"), L"\xF0\x9F\x8E\xA7");
  EXPECT_EQ(LegacyDocumentText(Unit(0xD83C) + Unit(0xDFA7)), L"\xF0\x9F\x8E\xA7");
  EXPECT_EQ(LegacyDocumentText(L"\x1B"), L"\xEF\xBF\xBD");
}

}  // namespace
