// SPDX-License-Identifier: MIT
// Takes lines apart.
#include "text/lines.h"

#include <algorithm>
#include <sstream>

namespace truth {

Lines::Lines(const std::string& text) {
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines_.push_back(line);
}

std::optional<std::vector<std::string>> Lines::TakeIf(const std::regex& pattern) {
  std::smatch match;
  if (empty() || !std::regex_match(front(), match, pattern)) return std::nullopt;
  std::vector<std::string> groups(match.begin(), match.end());
  ++next_;
  return groups;
}

std::optional<std::pair<std::string, std::string>> Lines::TakeFact() {
  constexpr std::size_t kIndentation = 2;
  constexpr std::size_t kLabelWidth = 20;
  if (empty() || front().size() < kIndentation + kLabelWidth) return std::nullopt;
  const std::string label = front().substr(kIndentation, kLabelWidth);
  const std::size_t end = label.find_last_not_of(' ');
  const bool is_fact = front().compare(0, kIndentation, "  ") == 0 && label.front() != ' ' &&
                       end != std::string::npos && end + 1 < kLabelWidth;
  if (!is_fact) return std::nullopt;
  return std::pair(label.substr(0, end + 1), Take().substr(kIndentation + kLabelWidth));
}

Json Named(const std::string& shown) {
  if (shown == "(not told)" || shown == "(cannot be read)") return nullptr;
  return shown == "(no name)" ? "" : shown;
}

int Seconds(const std::string& clock) {
  int seconds = 0;
  std::istringstream stream(clock);
  for (std::string part; std::getline(stream, part, ':');) seconds = seconds * 60 + std::stoi(part);
  return seconds;
}

int Number(std::string grouped) {
  grouped.erase(std::remove(grouped.begin(), grouped.end(), ','), grouped.end());
  return std::stoi(grouped);
}

}  // namespace truth
