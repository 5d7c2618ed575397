// SPDX-License-Identifier: MIT
// The lines that a command printed for people, taken one by one.
#pragma once

#include <nlohmann/json.hpp>
#include <optional>
#include <regex>
#include <string>
#include <vector>

namespace truth {

using Json = nlohmann::json;

class Lines {
 public:
  explicit Lines(const std::string& text);

  bool empty() const { return next_ == lines_.size(); }
  const std::string& front() const { return lines_[next_]; }
  std::string Take() { return lines_[next_++]; }
  /// Takes the next line if all of it matches. @return what its groups hold, the whole line first
  std::optional<std::vector<std::string>> TakeIf(const std::regex& pattern);
  /// Takes the next line if it is a label in its column with a value behind: "  Label     value".
  std::optional<std::pair<std::string, std::string>> TakeFact();

 private:
  std::vector<std::string> lines_;
  std::size_t next_ = 0;
};

/// A name as it is shown: "(no name)" for a blank one. Null where it was not told.
Json Named(const std::string& shown);
/// "1:02:03" in seconds.
int Seconds(const std::string& clock);
/// "1,234" as a number.
int Number(std::string grouped);

}  // namespace truth
