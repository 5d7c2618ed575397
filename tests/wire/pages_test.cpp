// SPDX-License-Identifier: MIT
// What is made from the table of commands and checked in says what the table says.
#include "wire/pages/pages.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <set>
#include <sstream>

#include "wire/table.h"

namespace {

using testing::HasSubstr;

constexpr const char* kRemedy = "build the target write_wire_pages, which writes it anew";

std::string Content(const std::string& file) {
  std::ostringstream content;
  content << std::ifstream(std::string(SOURCE_FOLDER) + "/" + file, std::ios::binary).rdbuf();
  return content.str();
}

TEST(TheWirePage, IsWhatTheTableSays) {
  EXPECT_TRUE(Content("docs/wire.md") == ipodwire::WirePage()) << kRemedy;
}

TEST(TheWirePage, DescribesACommand) {
  const std::string page = Content("docs/wire.md");
  EXPECT_THAT(page, HasSubstr("\n## Extended Interface, lingo 0x04\n"));
  EXPECT_THAT(page,
              HasSubstr("\n### 0x001D ReturnPlayStatus\n\nFrom the iPod.\n\n"
                        "| field | bytes | meaning |\n|---|---|---|\n"
                        "| track length | 4 | ms |\n"
                        "| position | 4 | ms |\n"
                        "| state | 1 | 0 stopped, 1 playing, 2 paused, 3 fast forward, 4 fast "
                        "rewind, 5 ending fast forward or rewind |\n"));
  EXPECT_THAT(page, HasSubstr("\n### 0x001C GetPlayStatus\n\nFrom the accessory. Answered by "
                              "ReturnPlayStatus.\n"));
  EXPECT_THAT(page, HasSubstr("| change position: position | 4 | ms |\n"));
}

TEST(TheDissector, HasTheTableThatTheDecoderHas) {
  const std::string dissector = Content("share/ipodcomm/ipodcomm.lua");
  ASSERT_NE(dissector, "");
  EXPECT_TRUE(dissector == ipodwire::WithTable(dissector, ipodwire::DissectorTable())) << kRemedy;
}

TEST(TheDissector, WithoutAPlaceForTheTableIsLeftAlone) {
  EXPECT_EQ(ipodwire::WithTable("-- nothing\n", "table\n"), "");
}

TEST(TheTable, HasEveryCommandOfASideOnce) {
  for (const ipodwire::Lingo& lingo : ipodwire::Lingoes()) {
    std::set<std::pair<int, int>> seen;
    for (const ipodwire::Command& command : lingo.commands) {
      EXPECT_TRUE(seen.emplace(command.number, static_cast<int>(command.sender)).second)
          << lingo.name << " " << command.name;
    }
  }
}

TEST(TheTable, AnswersEachQuestionByACommandOfTheOtherSide) {
  for (const ipodwire::Lingo& lingo : ipodwire::Lingoes()) {
    for (const ipodwire::Command& command : lingo.commands) {
      if (command.reply.kind != ipodwire::Reply::Kind::kCommand &&
          command.reply.kind != ipodwire::Reply::Kind::kStream) {
        continue;
      }
      const ipodwire::Sender other = command.sender == ipodwire::Sender::kAccessory
                                         ? ipodwire::Sender::kIpod
                                         : ipodwire::Sender::kAccessory;
      const ipodwire::Command* reply =
          ipodwire::FindCommand(lingo.number, command.reply.command, other);
      ASSERT_NE(reply, nullptr) << command.name;
      EXPECT_EQ(reply->sender, other) << command.name;
    }
  }
}

}  // namespace
