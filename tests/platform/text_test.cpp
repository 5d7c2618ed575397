// SPDX-License-Identifier: MIT
// Text: conversion to and from UTF-8, bounded copies, formatting after the Windows rules, messages.
#include <algorithm>
#include <string>

#include "support.h"

namespace ipodcomm::test {
namespace {

class Text : public PlatformTest {};

std::wstring ToWide(const char* source, int bytes) {
  wchar_t buffer[64] = {};
  const int length = MultiByteToWideChar(CP_UTF8, 0, source, bytes, buffer, 64);
  return {buffer, static_cast<std::size_t>(length)};
}

std::string ToUtf8(const wchar_t* source, int characters) {
  char buffer[64] = {};
  const int length =
      WideCharToMultiByte(CP_UTF8, 0, source, characters, buffer, 64, nullptr, nullptr);
  return {buffer, static_cast<std::size_t>(length)};
}

TEST_F(Text, ConvertsUtf8ToWide) {
  EXPECT_EQ(ToWide("iPod", 4), L"iPod");
  EXPECT_EQ(ToWide("Beyonc\xC3\xA9", 8), L"Beyonc\u00E9");
  EXPECT_EQ(ToWide("\xE6\x9D\xB1\xE4\xBA\xAC", 6), L"\u6771\u4EAC");
  EXPECT_EQ(ToWide("\xF0\x9F\x8E\xB5", 4), L"\U0001F3B5");
}

TEST_F(Text, ConvertsWideToUtf8) {
  EXPECT_EQ(ToUtf8(L"iPod", 4), "iPod");
  EXPECT_EQ(ToUtf8(L"Beyonc\u00E9", 7), "Beyonc\xC3\xA9");
  EXPECT_EQ(ToUtf8(L"\u6771\u4EAC", 2), "\xE6\x9D\xB1\xE4\xBA\xAC");
  const std::wstring note = L"\U0001F3B5";
  EXPECT_EQ(ToUtf8(note.c_str(), static_cast<int>(note.size())), "\xF0\x9F\x8E\xB5");
}

TEST_F(Text, ConvertsUpToAndWithTheTerminator) {
  EXPECT_EQ(ToWide("ab", -1), std::wstring(L"ab\0", 3));
  EXPECT_EQ(ToUtf8(L"ab", -1), std::string("ab\0", 3));
}

TEST_F(Text, TerminatorsInsideAreConvertedToo) {
  EXPECT_EQ(ToWide("a\0b\0", 4), std::wstring(L"a\0b\0", 4));
  EXPECT_EQ(ToUtf8(L"a\0b\0", 4), std::string("a\0b\0", 4));
}

TEST_F(Text, TellsHowMuchRoomIsNeeded) {
  EXPECT_EQ(MultiByteToWideChar(CP_UTF8, 0, "Beyonc\xC3\xA9", -1, nullptr, 0), 8);
  EXPECT_EQ(WideCharToMultiByte(CP_UTF8, 0, L"Beyonc\u00E9", -1, nullptr, 0, nullptr, nullptr), 9);
}

TEST_F(Text, FitsExactly) {
  wchar_t wide[3] = {L'x', L'x', L'x'};
  EXPECT_EQ(MultiByteToWideChar(CP_UTF8, 0, "abc", 3, wide, 3), 3);
  EXPECT_EQ(std::wstring(wide, 3), L"abc");
  char narrow[3] = {'x', 'x', 'x'};
  EXPECT_EQ(WideCharToMultiByte(CP_UTF8, 0, L"abc", 3, narrow, 3, nullptr, nullptr), 3);
  EXPECT_EQ(std::string(narrow, 3), "abc");
}

TEST_F(Text, AShortBufferFailsWith122) {
  wchar_t wide[3] = {};
  SetLastError(0);
  EXPECT_EQ(MultiByteToWideChar(CP_UTF8, 0, "abcd", 4, wide, 3), 0);
  EXPECT_EQ(GetLastError(), 122U);
  char narrow[3] = {};
  SetLastError(0);
  EXPECT_EQ(WideCharToMultiByte(CP_UTF8, 0, L"abcd", 4, narrow, 3, nullptr, nullptr), 0);
  EXPECT_EQ(GetLastError(), 122U);
}

TEST_F(Text, AShortBufferIsFilledAndTerminated) {
  wchar_t wide[5] = {L'x', L'x', L'x', L'x', L'x'};
  MultiByteToWideChar(CP_UTF8, 0, "abcdef", 6, wide, 4);
  EXPECT_EQ(wide[4], L'x');
  char narrow[7] = {'x', 'x', 'x', 'x', 'x', 'x', 'x'};
  WideCharToMultiByte(CP_UTF8, 0, L"\u6771\u4EAC\u6771", 3, narrow, 6, nullptr, nullptr);
  EXPECT_EQ(narrow[6], 'x');
  if (!world.traits().terminates_cut_conversions) return;  // the library's own helper does it
  EXPECT_EQ(std::wstring(wide, 4), std::wstring(L"abc\0", 4));
  // The second character does not fit beside the terminator, so nothing of it is written.
  EXPECT_STREQ(narrow, "\xE6\x9D\xB1");
}

TEST_F(Text, MalformedInputBecomesReplacementCharacters) {
  EXPECT_EQ(ToWide("a\xFF"
                   "b",
                   3),
            L"a\uFFFDb");
  EXPECT_EQ(ToWide("a\xC3", 2), L"a\uFFFD");
}

TEST_F(Text, OtherUsesAreRefusedWith87) {
  wchar_t wide[4];
  SetLastError(0);
  EXPECT_EQ(MultiByteToWideChar(CP_UTF8, 0, "abc", 0, wide, 4), 0);
  EXPECT_EQ(GetLastError(), 87U);
  SetLastError(0);
  EXPECT_EQ(MultiByteToWideChar(CP_UTF8, 0, nullptr, 3, wide, 4), 0);
  EXPECT_EQ(GetLastError(), 87U);
  char narrow[4];
  SetLastError(0);
  EXPECT_EQ(WideCharToMultiByte(CP_UTF8, 0, L"abc", 0, narrow, 4, nullptr, nullptr), 0);
  EXPECT_EQ(GetLastError(), 87U);
}

TEST_F(Text, WsprintfFormatsAfterTheWindowsRules) {
  wchar_t buffer[1024];
  EXPECT_EQ(wsprintfW(buffer, L"%02x%02x|%02x%02x", 0, 0x0B, 0, 4), 9);
  EXPECT_STREQ(buffer, L"000b|0004");
  EXPECT_EQ(
      wsprintfW(buffer, L"%s %c %S %hs %d %u %X %%", L"wide", L'w', "narrow", "too", -5, 7U, 0xAB),
      27);
  EXPECT_STREQ(buffer, L"wide w narrow too -5 7 AB %");
}

TEST_F(Text, WsprintfNeverWritesMoreThan1024Characters) {
  wchar_t buffer[1100];
  std::fill(std::begin(buffer), std::end(buffer), L'x');
  const std::wstring text(2000, L'a');
  wsprintfW(buffer, L"%s", text.c_str());
  EXPECT_EQ(buffer[1022], L'a');
  EXPECT_EQ(buffer[1023], L'\0');
  EXPECT_EQ(buffer[1024], L'x');
}

TEST_F(Text, CopiesWhatFits) {
  wchar_t buffer[4] = {L'x', L'x', L'x', L'x'};
  EXPECT_EQ(StringCchCopyW(buffer, 4, L"abc"), 0);
  EXPECT_STREQ(buffer, L"abc");
}

TEST_F(Text, CopiesAreCutAndTerminated) {
  wchar_t buffer[4] = {L'x', L'x', L'x', L'x'};
  EXPECT_TRUE(StringCchCopyW(buffer, 3, L"abc") == static_cast<HRESULT>(0x8007007A));
  EXPECT_STREQ(buffer, L"ab");
  EXPECT_EQ(buffer[3], L'x');
}

TEST_F(Text, CopiesIntoNoRoomAreRefused) {
  wchar_t buffer[1] = {L'x'};
  EXPECT_TRUE(StringCchCopyW(buffer, 0, L"abc") == static_cast<HRESULT>(0x80070057));
  EXPECT_EQ(buffer[0], L'x');
}

TEST_F(Text, PrintsWhatFits) {
  wchar_t buffer[32];
  EXPECT_EQ(StringCchPrintfW(buffer, 32, L"<kg>%.01f</kg> %s", 70.5, L"ok"), 0);
  EXPECT_STREQ(buffer, L"<kg>70.5</kg> ok");
  EXPECT_EQ(StringCchPrintfW(buffer, 32, L"%.02f %f %ld %lu", 1.005, 0.5, -7L, 8UL), 0);
  EXPECT_STREQ(buffer, L"1.00 0.500000 -7 8");
}

TEST_F(Text, PrintsAreCutAndTerminated) {
  wchar_t buffer[5] = {L'x', L'x', L'x', L'x', L'x'};
  EXPECT_TRUE(StringCchPrintfW(buffer, 4, L"%d", 12345) == static_cast<HRESULT>(0x8007007A));
  EXPECT_STREQ(buffer, L"123");
  EXPECT_EQ(buffer[4], L'x');
}

TEST_F(Text, ComparisonTellsCapitalFromSmallLetters) {
  EXPECT_EQ(lstrcmpW(L"Track 1", L"Track 1"), 0);
  EXPECT_NE(lstrcmpW(L"Track 1", L"track 1"), 0);
  EXPECT_NE(lstrcmpW(L"Track 1", L"Track 10"), 0);
  EXPECT_NE(lstrcmpW(L"Track 1", L""), 0);
  EXPECT_EQ(lstrcmpW(L"Zo\u00EB", L"Zo\u00EB"), 0);
}

TEST_F(Text, TheSystemHasATextForItsCodes) {
  wchar_t buffer[256];
  for (const DWORD code : {2U, 5U, 6U, 31U, 87U, 122U, 995U}) {
    const DWORD length =
        FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM, nullptr, code, 0, buffer, 256, nullptr);
    ASSERT_GT(length, 5U) << code;
    EXPECT_EQ(length, std::wstring(buffer).size());
    EXPECT_EQ(buffer[length - 2], L'\r');
    EXPECT_EQ(buffer[length - 1], L'\n');
  }
}

TEST_F(Text, TheSystemHasNoTextForUnknownCodes) {
  wchar_t buffer[256];
  EXPECT_EQ(
      FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM, nullptr, 0x2FFFFFFF, 0, buffer, 256, nullptr), 0U);
}

TEST_F(Text, AMessageThatDoesNotFitFailsWith122) {
  wchar_t buffer[8];
  SetLastError(0);
  EXPECT_EQ(FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM, nullptr, 6, 0, buffer, 8, nullptr), 0U);
  EXPECT_EQ(GetLastError(), 122U);
}

TEST_F(Text, DebugOutputTakesTextOfAnyLength) {
  const std::wstring text(5000, L'a');
  NKDbgPrintfW(L"%s %d\r\n", text.c_str(), 5);
}

}  // namespace
}  // namespace ipodcomm::test
