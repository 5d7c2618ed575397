// SPDX-License-Identifier: MIT
#include "usage/numbers.h"

#include <charconv>
#include <optional>
#include <string>

namespace usage {

namespace {

// A decimal number that is the whole text. Nothing when it is none, or does not fit.
template <class Number>
std::optional<Number> Parsed(const std::string& text) {
  Number number = {};
  const char* const end = text.data() + text.size();
  const std::from_chars_result result = std::from_chars(text.data(), end, number);
  if (result.ec != std::errc() || result.ptr != end) return std::nullopt;
  return number;
}

bool AllDigits(const std::string& text) {
  return !text.empty() && text.find_first_not_of("0123456789") == std::string::npos;
}

std::string Shortest(double number) {
  char text[32];
  return {text, std::to_chars(text, text + sizeof text, number).ptr};
}

}  // namespace

CLI::Validator WholeNumber(std::uint64_t most) {
  return CLI::Validator(
      [most](const std::string& text) -> std::string {
        if (!AllDigits(text)) return "'" + text + "' is not a whole number, 0 or more";
        const std::optional<std::uint64_t> number = Parsed<std::uint64_t>(text);
        if (number && *number <= most) return {};
        return text + " is too large; " + std::to_string(most) + " is the largest";
      },
      "");
}

CLI::Validator NumberBetween(double least, double most) {
  return CLI::Validator(
      [least, most](const std::string& text) -> std::string {
        const std::optional<double> number = Parsed<double>(text);
        // NaN is outside, too.
        if (number && *number >= least && *number <= most) return {};
        return "'" + text + "' is not a number from " + Shortest(least) + " to " + Shortest(most);
      },
      "");
}

}  // namespace usage
