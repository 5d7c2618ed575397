// SPDX-License-Identifier: MIT
// Formatting after the Windows rules, conversion by conversion.
#include "platform/common/wide_format.h"

#include <clocale>
#include <cstdarg>
#include <limits>
#include <string>

#include "support.h"

namespace ipodcomm::test {
namespace {

std::wstring Format(const wchar_t* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  std::wstring text = platform::FormatWide(format, arguments);
  va_end(arguments);
  return text;
}

TEST(WideFormat, CopiesPlainText) {
  EXPECT_EQ(Format(L""), L"");
  EXPECT_EQ(Format(L"plain \u6771"), L"plain \u6771");
  EXPECT_EQ(Format(L"100%%"), L"100%");
}

TEST(WideFormat, StringsAreWide) {
  EXPECT_EQ(Format(L"[%s]", L"\u6771\U0001F3B5"), L"[\u6771\U0001F3B5]");
  EXPECT_EQ(Format(L"[%ls]", L"wide"), L"[wide]");
  EXPECT_EQ(Format(L"[%ws]", L"wide"), L"[wide]");
  EXPECT_EQ(Format(L"[%lS]", L"wide"), L"[wide]");
}

TEST(WideFormat, NarrowStringsAreUtf8) {
  EXPECT_EQ(Format(L"[%S]", "Beyonc\xC3\xA9"), L"[Beyonc\u00E9]");
  EXPECT_EQ(Format(L"[%hs]", "narrow"), L"[narrow]");
  EXPECT_EQ(Format(L"[%hS]", "narrow"), L"[narrow]");
  EXPECT_EQ(Format(L"[%S]", "a\xFF"), L"[a\uFFFD]");
}

TEST(WideFormat, NullStringsAreNamed) {
  EXPECT_EQ(Format(L"[%s]", static_cast<const wchar_t*>(nullptr)), L"[(null)]");
  EXPECT_EQ(Format(L"[%S]", static_cast<const char*>(nullptr)), L"[(null)]");
}

TEST(WideFormat, StringsTakeWidthAndPrecision) {
  EXPECT_EQ(Format(L"[%5s]", L"ab"), L"[   ab]");
  EXPECT_EQ(Format(L"[%-5s]", L"ab"), L"[ab   ]");
  EXPECT_EQ(Format(L"[%.2s]", L"abcd"), L"[ab]");
  EXPECT_EQ(Format(L"[%5.1s]", L"abcd"), L"[    a]");
  EXPECT_EQ(Format(L"[%.0s]", L"abcd"), L"[]");
  EXPECT_EQ(Format(L"[%.s]", L"abcd"), L"[]");
  EXPECT_EQ(Format(L"[%1s]", L"abcd"), L"[abcd]");
  EXPECT_EQ(Format(L"[%.3S]", "abcd"), L"[abc]");
}

TEST(WideFormat, APrecisionGuardsUnterminatedText) {
  const wchar_t wide[] = {L'a', L'b'};
  const char narrow[] = {'c', 'd'};
  EXPECT_EQ(Format(L"%.2s%.2S", wide, narrow), L"abcd");
}

TEST(WideFormat, StarsTakeArguments) {
  EXPECT_EQ(Format(L"[%*d]", 5, 42), L"[   42]");
  EXPECT_EQ(Format(L"[%*d]", -5, 42), L"[42   ]");
  EXPECT_EQ(Format(L"[%.*s]", 2, L"abcd"), L"[ab]");
  EXPECT_EQ(Format(L"[%.*s]", -1, L"abcd"), L"[abcd]");
  EXPECT_EQ(Format(L"[%*.*d]", 6, 3, 7), L"[   007]");
}

TEST(WideFormat, CharactersAreWideOrNarrow) {
  EXPECT_EQ(Format(L"%c%lc", L'\u6771', L'b'), L"\u6771b");
  EXPECT_EQ(Format(L"%C%hc", 'a', 'b'), L"ab");
  EXPECT_EQ(Format(L"[%3c]", L'a'), L"[  a]");
  EXPECT_EQ(Format(L"%C", 0xE9), L"\uFFFD");  // half of a character
}

TEST(WideFormat, SignedIntegers) {
  EXPECT_EQ(Format(L"%d %i", 0, -1), L"0 -1");
  EXPECT_EQ(Format(L"%d", std::numeric_limits<int>::min()), L"-2147483648");
  EXPECT_EQ(Format(L"%I64d", std::numeric_limits<long long>::min()), L"-9223372036854775808");
  EXPECT_EQ(Format(L"%lld", 5000000000LL), L"5000000000");
  EXPECT_EQ(Format(L"%ld", -7L), L"-7");
  EXPECT_EQ(Format(L"%I32d", -7), L"-7");
  EXPECT_EQ(Format(L"%hd", 0x18000), L"-32768");
  EXPECT_EQ(Format(L"%hhd", 0x180), L"-128");
  EXPECT_EQ(Format(L"%+d % d %+d", 5, 5, -5), L"+5  5 -5");
}

TEST(WideFormat, UnsignedIntegers) {
  EXPECT_EQ(Format(L"%u", 4294967295U), L"4294967295");
  EXPECT_EQ(Format(L"%lu", 4294967295UL), L"4294967295");
  EXPECT_EQ(Format(L"%I64u", 18446744073709551615ULL), L"18446744073709551615");
  EXPECT_EQ(Format(L"%Iu %zu", std::size_t{5}, std::size_t{6}), L"5 6");
  EXPECT_EQ(Format(L"%x %X %o", 0xBEEFU, 0xBEEFU, 8U), L"beef BEEF 10");
  EXPECT_EQ(Format(L"%#x %#X %#o %#x", 0xABU, 0xABU, 8U, 0U), L"0xab 0XAB 010 0");
  EXPECT_EQ(Format(L"%hu %hhu", 65537U, 257U), L"1 1");
}

TEST(WideFormat, IntegersTakeWidthPrecisionAndZeros) {
  EXPECT_EQ(Format(L"%02x%02X", 0x0BU, 0x0CU), L"0b0C");
  EXPECT_EQ(Format(L"[%05d]", -42), L"[-0042]");
  EXPECT_EQ(Format(L"[%-5d]", 42), L"[42   ]");
  EXPECT_EQ(Format(L"[%-05d]", 42), L"[42   ]");
  EXPECT_EQ(Format(L"[%.3d]", 7), L"[007]");
  EXPECT_EQ(Format(L"[%6.3d]", -7), L"[  -007]");
  EXPECT_EQ(Format(L"[%06.3d]", 7), L"[   007]");
  EXPECT_EQ(Format(L"[%.0d]", 0), L"[]");
  EXPECT_EQ(Format(L"[%#06x]", 0xABU), L"[0x00ab]");
}

TEST(WideFormat, FloatingPoint) {
  EXPECT_EQ(Format(L"%f", 0.5), L"0.500000");
  EXPECT_EQ(Format(L"%.01f %.02f", 70.5, -1.25), L"70.5 -1.25");
  EXPECT_EQ(Format(L"%.0f", 2.6), L"3");
  EXPECT_EQ(Format(L"[%8.2f] [%-8.2f] [%08.2f]", 3.14159, 3.14159, -3.14159),
            L"[    3.14] [3.14    ] [-0003.14]");
  EXPECT_EQ(Format(L"%e %E", 12345.678, 0.00012), L"1.234568e+04 1.200000E-04");
  EXPECT_EQ(Format(L"%g %G", 0.0001, 1e20), L"0.0001 1E+20");
  EXPECT_EQ(Format(L"%+.1f % .1f", 1.0, 1.0), L"+1.0  1.0");
  EXPECT_EQ(Format(L"%f", -0.0), L"-0.000000");
  EXPECT_EQ(Format(L"%f", 1e300).size(), 301U + 7U);
}

TEST(WideFormat, FloatingPointThatIsNoNumber) {
  const double infinity = std::numeric_limits<double>::infinity();
  EXPECT_EQ(Format(L"%f %f", infinity, -infinity), L"inf -inf");
  EXPECT_EQ(Format(L"[%06f]", infinity), L"[   inf]");
  EXPECT_EQ(Format(L"%F", std::numeric_limits<double>::quiet_NaN()), L"NAN");
}

TEST(WideFormat, TheDecimalPointIsAPointInEveryLocale) {
  for (const char* locale : {"de_DE.UTF-8", "fr_FR.UTF-8", "C.UTF-8"}) {
    std::setlocale(LC_ALL, locale);  // those that are installed
    EXPECT_EQ(Format(L"%.2f", 1.5), L"1.50");
  }
  std::setlocale(LC_ALL, "C");
}

TEST(WideFormat, PointersAreTwoUpperCaseDigitsAByte) {
  const bool long_pointers = sizeof(void*) == 8;
  EXPECT_EQ(Format(L"%p", reinterpret_cast<void*>(0xABCDUL)),
            long_pointers ? L"000000000000ABCD" : L"0000ABCD");
  EXPECT_EQ(Format(L"%p", nullptr), long_pointers ? L"0000000000000000" : L"00000000");
}

TEST(WideFormat, UnknownConversionsStandForTheirLetter) {
  EXPECT_EQ(Format(L"%y%5k"), L"yk");
  EXPECT_EQ(Format(L"%n"), L"n");  // writes nothing anywhere
}

TEST(WideFormat, AnUnfinishedConversionEndsTheText) {
  for (const wchar_t* format :
       {L"a%", L"a%5", L"a%-", L"a%.", L"a%.3", L"a%l", L"a%I64", L"a%#0"}) {
    EXPECT_EQ(Format(format), L"a");
  }
}

TEST(WideFormat, WildWidthsAreBounded) {
  EXPECT_LE(Format(L"%999999999999d", 1).size(), 40000U);
  EXPECT_LE(Format(L"%*d", std::numeric_limits<int>::max(), 1).size(), 40000U);
  EXPECT_LE(Format(L"%*d", std::numeric_limits<int>::min(), 1).size(), 40000U);
  EXPECT_LE(Format(L"%.999999999f", 1.0).size(), 40000U);
}

}  // namespace
}  // namespace ipodcomm::test
