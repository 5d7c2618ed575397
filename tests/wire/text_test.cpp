// SPDX-License-Identifier: MIT
// Texts from the iPod are shown, and never sent to the terminal as they are.
#include "wire/text.h"

#include <gtest/gtest.h>

namespace {

using ipodwire::HexBytes;
using ipodwire::Quoted;

TEST(AQuotedText, KeepsLettersOfAllLanguages) {
  EXPECT_EQ(Quoted("Bj\xC3\xB6rk \xE6\x97\xA5 \xF0\x9F\x8E\xB5"),
            "\"Bj\xC3\xB6rk \xE6\x97\xA5 \xF0\x9F\x8E\xB5\"");
}

TEST(AQuotedText, ShowsControlCharactersAndEscapeSequences) {
  EXPECT_EQ(Quoted("a\x1B[2Jb\r\n\x7F"), "\"a\\x1B[2Jb\\x0D\\x0A\\x7F\"");
  EXPECT_EQ(Quoted("\xC2\x9B"
                   "2J"),
            "\"\\xC2\\x9B2J\"");
}

TEST(AQuotedText, ShowsCharactersThatTurnTheDirectionOfTheText) {
  EXPECT_EQ(Quoted("a\xE2\x80\xAE"
                   "b"),
            "\"a\\xE2\\x80\\xAEb\"");
}

TEST(AQuotedText, ShowsBytesThatAreNoUtf8) {
  EXPECT_EQ(Quoted("a\xFF\xC3"), "\"a\\xFF\\xC3\"");
  EXPECT_EQ(Quoted("\xC0\xAF\xED\xA0\x80\xF4\x90\x80\x80"),
            "\"\\xC0\\xAF\\xED\\xA0\\x80\\xF4\\x90\\x80\\x80\"");
}

TEST(AQuotedText, MarksItsOwnQuotationMarks) {
  EXPECT_EQ(Quoted("7\" \\ mix"), "\"7\\\" \\\\ mix\"");
}

TEST(HexBytes, SaysHowManyThereAreWhenNotAllAreShown) {
  EXPECT_EQ(HexBytes({0xFF, 0x55, 0x02}, 3), "FF 55 02");
  EXPECT_EQ(HexBytes({0xFF, 0x55, 0x02}, 2), "FF 55 ... (3 bytes)");
  EXPECT_EQ(HexBytes({}, 2), "");
}

}  // namespace
