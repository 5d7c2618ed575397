// SPDX-License-Identifier: MIT
// The line that a program draws again and again on a terminal.
#pragma once

#include <algorithm>
#include <string>
#include <vector>

namespace e2e {

/// How many columns each drawing took, in a terminal's output. Every character of these lines takes
/// one; bytes of the form 10xxxxxx go on with a character.
inline std::vector<std::size_t> ColumnsOfLiveLines(const std::string& terminal) {
  const std::string end = "\x1b[K";
  std::vector<std::size_t> columns;
  for (std::size_t at = terminal.find(end); at != std::string::npos;
       at = terminal.find(end, at + 1)) {
    const std::string line = terminal.substr(0, at).substr(terminal.rfind('\r', at) + 1);
    const auto starts = [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0) != 0x80; };
    columns.push_back(static_cast<std::size_t>(std::count_if(line.begin(), line.end(), starts)));
  }
  return columns;
}

}  // namespace e2e
