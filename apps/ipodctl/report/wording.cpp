// SPDX-License-Identifier: MIT
// Fills patterns, and sets the signs in numbers.
#include "report/wording.h"

#include <cctype>

#include "report/markup.h"

namespace ipodctl {

namespace {

struct NumberSigns {
  const char* decimal;
  const char* group;
  std::size_t fewest_grouped;  // digits from which on a number is grouped
};

// In the order of Language.
constexpr NumberSigns kSigns[kLanguages] = {
    {".", ",", 4}, {",", ".", 4}, {",", "\u202F", 4}, {",", ".", 5}};

std::string Grouped(const std::string& digits, const NumberSigns& signs) {
  if (digits.size() < signs.fewest_grouped) return digits;
  std::string grouped;
  for (std::size_t i = 0; i < digits.size(); ++i) {
    if (i != 0 && (digits.size() - i) % 3 == 0) grouped += signs.group;
    grouped.push_back(digits[i]);
  }
  return grouped;
}

// French and English differ in what they make of zero.
bool IsSingular(std::uint64_t number, Language language) {
  return number == 1 || (number == 0 && language == Language::kFrench);
}

}  // namespace

std::string Filled(const std::string& pattern, std::initializer_list<std::string> texts) {
  std::string filled;
  for (std::size_t at = 0; at < pattern.size(); ++at) {
    const bool place = pattern[at] == '{' && at + 2 < pattern.size() && pattern[at + 2] == '}';
    const auto number = place ? static_cast<std::size_t>(pattern[at + 1] - '1') : texts.size();
    if (number < texts.size()) {
      filled += texts.begin()[number];
      at += 2;
    } else {
      filled.push_back(pattern[at]);
    }
  }
  return filled;
}

const std::string& Wording::code() const {
  return LanguageCodes()[static_cast<std::size_t>(language_)];
}

std::string Wording::Count(std::uint64_t number, Phrase one, Phrase many) const {
  const std::string digits =
      Grouped(std::to_string(number), kSigns[static_cast<std::size_t>(language_)]);
  return Say(IsSingular(number, language_) ? one : many, {digits});
}

std::string Wording::Localised(const std::string& number) const {
  const NumberSigns& signs = kSigns[static_cast<std::size_t>(language_)];
  const std::size_t first = number.find_first_of("0123456789");
  const std::size_t end = number.find_first_not_of("0123456789", first);
  std::string text = number.substr(0, first) + Grouped(number.substr(first, end - first), signs);
  if (end == std::string::npos) return text;
  if (number[end] != '.') return text + number.substr(end);
  return text + signs.decimal + number.substr(end + 1);
}

std::string Wording::Fixed(double number, int decimals) const {
  return Localised(ipodctl::Fixed(number, decimals));
}

std::string Wording::Short(double number, int decimals) const {
  return Localised(ipodctl::Short(number, decimals));
}

std::string Wording::Date(const Day& day) const {
  const auto month = static_cast<Phrase>(static_cast<int>(Phrase::kJanuary) + day.month - 1);
  return Say(Phrase::kDayMonthYear,
             {day.day == 1 ? Say(Phrase::kFirstDay) : std::to_string(day.day), Say(month),
              std::to_string(day.year)});
}

}  // namespace ipodctl
