// SPDX-License-Identifier: MIT
#include "usage/similar.h"

#include <algorithm>
#include <cstddef>

namespace usage {

namespace {

constexpr std::size_t kLongest = 64;

using Row = std::vector<std::size_t>;

// How many letters must be added, left out, replaced or exchanged with the next one.
std::size_t Distance(const std::string& a, const std::string& b) {
  std::vector<Row> rows(a.size() + 1, Row(b.size() + 1));
  for (std::size_t i = 0; i <= a.size(); ++i) rows[i][0] = i;
  for (std::size_t j = 0; j <= b.size(); ++j) rows[0][j] = j;
  for (std::size_t i = 1; i <= a.size(); ++i) {
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const std::size_t replaced = rows[i - 1][j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1);
      rows[i][j] = std::min({rows[i - 1][j] + 1, rows[i][j - 1] + 1, replaced});
      const bool exchanged = i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1];
      if (exchanged) rows[i][j] = std::min(rows[i][j], rows[i - 2][j - 2] + 1);
    }
  }
  return rows[a.size()][b.size()];
}

}  // namespace

std::string MostSimilar(const std::string& word, const std::vector<std::string>& words) {
  std::string best;
  if (word.size() > kLongest) return best;
  const auto begins = [&word](const std::string& candidate) {
    return candidate.compare(0, word.size(), word) == 0;
  };
  if (word.size() > 2 && std::count_if(words.begin(), words.end(), begins) == 1) {
    return *std::find_if(words.begin(), words.end(), begins);
  }
  // One letter in three may be wrong.
  std::size_t limit = (word.size() + 2) / 3;
  for (const std::string& candidate : words) {
    const std::size_t distance = Distance(word, candidate);
    if (distance > limit || (distance == limit && !best.empty())) continue;
    best = candidate;
    limit = distance;
  }
  return best;
}

}  // namespace usage
