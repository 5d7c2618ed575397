// SPDX-License-Identifier: MIT
// Texts as ipodctl reads, compares and prints them.
#include "console/text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace ipodctl;

namespace {

TEST(Text, EncodesEveryPlaneAsUtf8) {
  EXPECT_EQ(Utf8(L"A\u00EB\u6A4B"), "A\xC3\xAB\xE6\xA9\x8B");
  EXPECT_EQ(Utf8(L"\U0001F3A7"), "\xF0\x9F\x8E\xA7");
}

TEST(Text, JoinsSurrogatePairsAndReplacesLoneOnes) {
  const wchar_t pair[] = {static_cast<wchar_t>(0xD83C), static_cast<wchar_t>(0xDFA7), 0};
  EXPECT_EQ(Utf8(pair), "\xF0\x9F\x8E\xA7");
  const wchar_t lone[] = {static_cast<wchar_t>(0xD83C), L'x', 0};
  EXPECT_EQ(Utf8(lone), "\xEF\xBF\xBDx");
}

TEST(Text, KeepsNamesFromSteeringTheTerminal) {
  EXPECT_EQ(Printable("a\x1b[2Jb\x07"), "a\xEF\xBF\xBD[2Jb\xEF\xBF\xBD");
  EXPECT_EQ(Printable("\xC2\x9B"
                      "1m"),
            "\xEF\xBF\xBD"
            "1m");
  EXPECT_EQ(Printable("Gr\xC3\xB6\xC3\x9F"
                      "e"),
            "Gr\xC3\xB6\xC3\x9F"
            "e");
}

TEST(Text, TrimsWhatIsAroundALine) {
  EXPECT_EQ(Trimmed("\t\t<pace>631</pace>\r\n"), "<pace>631</pace>");
  EXPECT_EQ(Trimmed("a b"), "a b");
  EXPECT_EQ(Trimmed(" \t\r\n"), "");
  EXPECT_EQ(Trimmed(""), "");
}

TEST(Text, SaysWhereANameIsBlank) {
  EXPECT_EQ(ShownName(""), "(no name)");
  EXPECT_EQ(ShownName("  "), "(no name)");
  EXPECT_EQ(ShownName("a\x07"), "a\xEF\xBF\xBD");
}

TEST(Text, CallsNoNameBlankThatWasNotTold) {
  EXPECT_EQ(ToldName(std::nullopt), "(not told)");
  EXPECT_EQ(ToldName(""), "(no name)");
  EXPECT_EQ(ToldName("a\x07"), "a\xEF\xBF\xBD");
}

TEST(Text, ComparesNamesInAnyCase) {
  EXPECT_TRUE(SameName("The Hum", "tHE hUM"));
  EXPECT_FALSE(SameName("The Hum", "The Hu"));
  EXPECT_TRUE(Contains("The Hum", "HU"));
  EXPECT_FALSE(Contains("The Hum", "hut"));
}

TEST(Text, ComparesNamesInTheCaseOfEveryAlphabet) {
  EXPECT_TRUE(SameName("HÉLÈNE & NOËL", "Hélène & Noël"));
  EXPECT_TRUE(SameName("ΟΔΟΣ", "οδος"));
  EXPECT_TRUE(SameName("STRASSEN", "Straßen"));
  EXPECT_TRUE(Contains("Жёлтый луч", "ЛУЧ"));
  EXPECT_FALSE(SameName("Helene", "Hélène"));
}

TEST(Text, ComparesNamesHoweverTheirAccentsAreComposed) {
  EXPECT_TRUE(SameName("Noe\u0308l", "NO\u00CBL"));
  EXPECT_TRUE(Contains("Jurgen u\u0308ber", "\u00FCB"));
}

TEST(Text, ComparesWhatIsNoUtf8AsItStands) {
  EXPECT_TRUE(SameName("\xFF", "\xFF"));
  EXPECT_FALSE(SameName("\xFF", "\xFE"));
}

TEST(Text, CountsTheColumnsOfWideAndCombiningCharacters) {
  EXPECT_EQ(Columns("abc"), 3U);
  EXPECT_EQ(Columns("橋 7"), 4U);
  EXPECT_EQ(Columns("e\u0301"), 1U);
  EXPECT_EQ(Columns("█░"), 2U);
  EXPECT_EQ(Padded("橋", 4) + "|", "橋  |");
}

TEST(Text, CutsAtAColumnAndNeverThroughACharacter) {
  EXPECT_EQ(Cut("Working", 7), "Working");
  EXPECT_EQ(Cut("Working", 6), "Worki…");
  EXPECT_EQ(Cut("橋橋橋", 6), "橋橋橋");
  EXPECT_EQ(Cut("橋橋橋", 5), "橋橋…");
  EXPECT_EQ(Cut("橋橋橋", 4), "橋…");
  EXPECT_EQ(Cut("e\u0301e\u0301e\u0301", 2), "e\u0301…");
  EXPECT_EQ(Cut("abc", 1), "…");
  EXPECT_EQ(Cut("abc", 0), "");
}

TEST(Text, WritesTimesAsClocksDo) {
  EXPECT_EQ(Clock(0), "0:00");
  EXPECT_EQ(Clock(187), "3:07");
  EXPECT_EQ(Clock(3599), "59:59");
  EXPECT_EQ(Clock(3723), "1:02:03");
}

TEST(Text, GroupsDigits) {
  EXPECT_EQ(Grouped(0), "0");
  EXPECT_EQ(Grouped(999), "999");
  EXPECT_EQ(Grouped(1000), "1,000");
  EXPECT_EQ(Grouped(1234567), "1,234,567");
}

TEST(Text, WidensUtf8) {
  EXPECT_EQ(Wide("A\xC3\xAB\xE6\xA9\x8B"), L"A\u00EB\u6A4B");
  EXPECT_EQ(Wide("\xF0\x9F\x8E\xA7"), L"\U0001F3A7");
  EXPECT_EQ(Wide("\xFF|\xC3|\xE2\x82"), L"\uFFFD|\uFFFD|\uFFFD\uFFFD");
}

}  // namespace
