// SPDX-License-Identifier: MIT
// What a program prints for other programs: one JSON object a line.
#pragma once

#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

namespace test {

inline std::vector<nlohmann::json> Objects(const std::string& lines) {
  std::vector<nlohmann::json> objects;
  std::istringstream stream(lines);
  for (std::string line; std::getline(stream, line);) {
    objects.push_back(nlohmann::json::parse(line));
  }
  return objects;
}

}  // namespace test
