// SPDX-License-Identifier: MIT
// The text at the end of a help, taken apart for the manual page.
#include "usage/footer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using ::testing::ElementsAre;
using ::testing::Pair;
using usage::Footer;
using usage::FooterSection;
using usage::ParseFooter;

namespace {

TEST(Footer, JoinsTheLinesOfAParagraph) {
  const Footer footer = ParseFooter("One line\nand another:\nmore.\n\nA second one.", "program");
  EXPECT_THAT(footer.paragraphs, ElementsAre("One line and another: more.", "A second one."));
  EXPECT_TRUE(footer.sections.empty());
}

TEST(Footer, KeepsCommandLinesAsTheyAre) {
  const Footer footer =
      ParseFooter("Examples:\n  program x   does x\n  program yy  does y\n\nEnd.", "program");
  ASSERT_EQ(footer.sections.size(), 1U);
  EXPECT_EQ(footer.sections[0].heading, "Examples");
  EXPECT_EQ(footer.sections[0].kind, FooterSection::Kind::kVerbatim);
  EXPECT_THAT(footer.sections[0].lines, ElementsAre("program x   does x", "program yy  does y"));
  EXPECT_THAT(footer.paragraphs, ElementsAre("End."));
}

TEST(Footer, PartsItemsFromTheirMeanings) {
  const Footer footer =
      ParseFooter("Exit status:\n  0   done\n  64  wrong\n      words", "program");
  ASSERT_EQ(footer.sections.size(), 1U);
  EXPECT_EQ(footer.sections[0].kind, FooterSection::Kind::kItems);
  EXPECT_THAT(footer.sections[0].items, ElementsAre(Pair("0", "done"), Pair("64", "wrong words")));
}

TEST(Footer, TellsProseFromTextWithALayoutOfItsOwn) {
  const Footer footer = ParseFooter(
      "The dock:\n  It is there\n  or not.\n\nFile:\n  {\"a\": 1,\n   \"b\": 2}", "program");
  ASSERT_EQ(footer.sections.size(), 2U);
  EXPECT_EQ(footer.sections[0].kind, FooterSection::Kind::kProse);
  EXPECT_THAT(footer.sections[0].lines, ElementsAre("It is there", "or not."));
  EXPECT_EQ(footer.sections[1].kind, FooterSection::Kind::kVerbatim);
  EXPECT_THAT(footer.sections[1].lines, ElementsAre("{\"a\": 1,", " \"b\": 2}"));
}

TEST(Footer, TakesAHeadingWithNothingBelowIt) {
  const Footer footer = ParseFooter("Nothing:", "program");
  ASSERT_EQ(footer.sections.size(), 1U);
  EXPECT_TRUE(footer.sections[0].lines.empty());
}

}  // namespace
