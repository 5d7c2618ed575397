// SPDX-License-Identifier: MIT
// Which conduct a command line chooses, for both interfaces.
#include "ipod/conduct.h"

#include <gtest/gtest.h>

#include "command_line/command_line.h"

namespace ipodctl {
namespace {

Options Parsed(std::vector<std::string> arguments) {
  arguments.emplace_back("info");
  const CommandLine line = ParseCommandLine(arguments);
  EXPECT_TRUE(line.options) << line.text;
  return line.options.value_or(Options{});
}

bool IsFast(const std::vector<std::string>& arguments) {
  return ConductOf(Parsed(arguments)).sync_pause_until_answered != 0;
}

bool LegacyIsFast(const std::vector<std::string>& arguments) {
  return LegacyConductOf(Parsed(arguments)).sync_pause_until_answered != 0;
}

TEST(Conduct, IsRobustOnAPortAndFastOnASimulatedIpod) {
  EXPECT_FALSE(IsFast({"--port", "/dev/ttyUSB0"}));
  EXPECT_TRUE(IsFast({"--simulated"}));
  EXPECT_FALSE(LegacyIsFast({"--legacy", "--port", "/dev/ttyUSB0"}));
  EXPECT_TRUE(LegacyIsFast({"--legacy", "--simulated"}));
}

TEST(Conduct, IsTheOneChosen) {
  EXPECT_TRUE(IsFast({"--port", "/dev/ttyUSB0", "--conduct", "fast"}));
  EXPECT_FALSE(IsFast({"--simulated", "--conduct", "robust"}));
  EXPECT_TRUE(LegacyIsFast({"--legacy", "--port", "/dev/ttyUSB0", "--conduct", "fast"}));
  EXPECT_FALSE(LegacyIsFast({"--legacy", "--simulated", "--conduct", "robust"}));
}

TEST(Conduct, OfTheLegacyInterfaceIsThatOfTheName) {
  EXPECT_EQ(LegacyConductOf(Parsed({"--legacy", "--conduct", "field"})).line_pause_ms, 0U);
  for (const char* name : {"robust", "fast"}) {
    const tagIPOD_LEGACY_CONDUCT conduct = LegacyConductOf(Parsed({"--legacy", "--conduct", name}));
    EXPECT_EQ(conduct.line_pause_ms, 10U) << name;
    EXPECT_EQ(conduct.answers_questions, 1) << name;
  }
}

}  // namespace
}  // namespace ipodctl
