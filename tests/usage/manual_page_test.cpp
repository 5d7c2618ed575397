// SPDX-License-Identifier: MIT
// Manual pages, as man reads them.
#include "usage/manual_page.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "usage/roff.h"

using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

namespace {

TEST(Roff, TakesNothingInATextForACommand) {
  EXPECT_EQ(usage::Roff(".TH x\n'so y\na - b \\n it's"),
            "\\&.TH x\n\\&\\(aqso y\na \\- b \\en it\\(aqs");
  EXPECT_EQ(usage::RoffBold("--x"), "\\fB\\-\\-x\\fR");
}

TEST(ManualPages, TellOfAProgramAndItsCommands) {
  CLI::App app{"Does things. And more.", "program"};
  usage::HelpFormatter help;
  std::string file;
  app.add_option("-f,--file", file, "Which one")->option_text("FILE");
  help.SetUsage(&app, "program [OPTIONS] COMMAND");
  CLI::App* list = app.add_subcommand("list", "List them");
  list->group("Looking");
  list->footer("It looks.\n\nExamples:\n  program list");
  help.SetUsage(list, "program list");

  const std::vector<usage::ManualPage> pages = usage::ManualPages(app, help);
  ASSERT_EQ(pages.size(), 2U);
  EXPECT_EQ(pages[0].name, "program");
  EXPECT_THAT(pages[0].text, StartsWith(".TH PROGRAM 1 "));
  EXPECT_THAT(pages[0].text, HasSubstr(".SH NAME\nprogram \\- does things\n"
                                       ".SH SYNOPSIS\n\\fBprogram\\fR [OPTIONS] COMMAND\n"
                                       ".SH DESCRIPTION\nDoes things. And more.\n"));
  EXPECT_THAT(pages[0].text,
              HasSubstr(".TP\n\\fB\\-f\\fR, \\fB\\-\\-file\\fR \\fIFILE\\fR\nWhich one\n"));
  EXPECT_THAT(pages[0].text,
              HasSubstr(".SH COMMANDS\n.SS Looking\n.TP\n\\fBlist\\fR\nList them.\n"));
  EXPECT_THAT(pages[0].text, HasSubstr(".BR program\\-list (1),\n"));

  EXPECT_EQ(pages[1].name, "program-list");
  EXPECT_THAT(pages[1].text, HasSubstr("List them.\n.PP\nIt looks.\n"));
  EXPECT_THAT(pages[1].text, HasSubstr(".SH EXAMPLES\n.nf\nprogram list\n.fi\n"));
  EXPECT_THAT(pages[1].text, Not(HasSubstr(".SH COMMANDS")));
}

}  // namespace
