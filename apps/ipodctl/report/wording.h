// SPDX-License-Identifier: MIT
// Texts, numbers and dates of a page in its language.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>

#include "report/phrases.h"

namespace ipodctl {

/// A day of the calendar: {2026, 3, 1} is the first of March.
struct Day {
  int year = 1970;
  int month = 1;
  int day = 1;
};

/// `pattern` with the first of `texts` in place of {1}, the second in place of {2}, and so on.
std::string Filled(const std::string& pattern, std::initializer_list<std::string> texts);

class Wording {
 public:
  explicit Wording(Language language = Language::kEnglish) : language_(language) {}

  /// "en", for the page's lang.
  const std::string& code() const;

  std::string Say(Phrase phrase) const { return PhraseText(phrase, language_); }
  std::string Say(Phrase phrase, std::initializer_list<std::string> texts) const {
    return Filled(Say(phrase), texts);
  }
  /// `one` or `many`, whichever goes with the number, with the number in it.
  std::string Count(std::uint64_t number, Phrase one, Phrase many) const;

  /// "1,234.50", as Fixed() of markup.h, with the language's own signs.
  std::string Fixed(double number, int decimals) const;
  /// The same without trailing zeros: "1,234.5".
  std::string Short(double number, int decimals) const;
  /// "1 March 2026".
  std::string Date(const Day& day) const;

 private:
  std::string Localised(const std::string& number) const;

  Language language_;
};

}  // namespace ipodctl
