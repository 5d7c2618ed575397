// SPDX-License-Identifier: MIT
// What a program prints for other programs: one JSON object a line, each with a time stamp.
#pragma once

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

namespace test {

/// The objects, whose time stamps are checked and left out.
inline std::vector<nlohmann::json> Objects(const std::string& lines) {
  static const std::regex rfc_3339(R"(\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{3}Z)");
  std::vector<nlohmann::json> objects;
  std::istringstream stream(lines);
  for (std::string line; std::getline(stream, line);) {
    objects.push_back(nlohmann::json::parse(line));
    const std::string time = objects.back().value("time", "none");
    EXPECT_TRUE(std::regex_match(time, rfc_3339)) << line;
    objects.back().erase("time");
  }
  return objects;
}

/// The only one.
inline nlohmann::json Object(const std::string& line) {
  const std::vector<nlohmann::json> objects = Objects(line);
  EXPECT_EQ(objects.size(), 1U) << line;
  return objects.empty() ? nlohmann::json() : objects.front();
}

}  // namespace test
