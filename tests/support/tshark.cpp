// SPDX-License-Identifier: MIT
#include "support/tshark.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>

#include "support/process.h"

namespace test {

const char* const kTshark = "/usr/bin/tshark";

void RequireTshark() {
  ASSERT_TRUE(std::filesystem::exists(kTshark))
      << "tshark is missing; script/bootstrap installs it";
}

std::string Tshark(const std::string& recording, const std::vector<std::string>& more) {
  std::vector<std::string> arguments = {"-2", "-X", "lua_script:" DISSECTOR, "-r", recording};
  arguments.insert(arguments.end(), more.begin(), more.end());
  const Ended ended = RunProgram(kTshark, arguments);
  EXPECT_EQ(ended.status, 0) << ended.err;
  return ended.out;
}

std::vector<std::string> LinesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

}  // namespace test
