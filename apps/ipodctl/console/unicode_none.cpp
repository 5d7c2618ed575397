// SPDX-License-Identifier: MIT
// For a build that has no library for Unicode: the letters of ASCII have a case, and every
// character takes a column.
#include "console/unicode.h"

namespace ipodctl {

std::string CaseFolded(const std::string& utf8) {
  std::string folded = utf8;
  for (char& letter : folded) {
    if (letter >= 'A' && letter <= 'Z') letter = static_cast<char>(letter - 'A' + 'a');
  }
  return folded;
}

std::size_t ColumnsOf(std::uint32_t /*character*/) { return 1; }

}  // namespace ipodctl
