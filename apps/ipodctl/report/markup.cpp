// SPDX-License-Identifier: MIT
// Escapes text and formats numbers.
#include "report/markup.h"

#include <cmath>
#include <cstddef>
#include <cstdio>

#include "console/text.h"

namespace ipodctl {

namespace {

constexpr double kLongestNumber = 1e7;
constexpr const char* kReplacement = "\xEF\xBF\xBD";

unsigned char ByteAt(const std::string& text, std::size_t at) {
  return at < text.size() ? static_cast<unsigned char>(text[at]) : 0;
}

// Length of the UTF-8 sequence at `at`; 0 when there is none.
std::size_t SequenceLength(const std::string& text, std::size_t at) {
  const unsigned char lead = ByteAt(text, at);
  if (lead < 0x80) return 1;
  const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  if (lead < 0xC2 || lead > 0xF4) return 0;
  const unsigned char second = ByteAt(text, at + 1);
  const bool overlong = (lead == 0xE0 && second < 0xA0) || (lead == 0xF0 && second < 0x90);
  const bool no_character = (lead == 0xED && second > 0x9F) || (lead == 0xF4 && second > 0x8F);
  if (overlong || no_character) return 0;
  for (std::size_t i = 1; i < length; ++i) {
    if ((ByteAt(text, at + i) & 0xC0U) != 0x80U) return 0;
  }
  // U+FFFE and U+FFFF are no characters of a document.
  const bool none = lead == 0xEF && second == 0xBF && ByteAt(text, at + 2) >= 0xBE;
  return none ? 0 : length;
}

std::string ValidUtf8(const std::string& text) {
  std::string valid;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t length = SequenceLength(text, at);
    if (length == 0) {
      valid += kReplacement;
      ++at;
    } else {
      valid.append(text, at, length);
      at += length;
    }
  }
  return valid;
}

}  // namespace

std::string Escaped(const std::string& text) {
  std::string escaped;
  for (const char letter : Printable(ValidUtf8(text))) {
    switch (letter) {
      case '&':
        escaped += "&amp;";
        break;
      case '<':
        escaped += "&lt;";
        break;
      case '>':
        escaped += "&gt;";
        break;
      case '"':
        escaped += "&quot;";
        break;
      case '\'':
        escaped += "&#39;";
        break;
      default:
        escaped.push_back(letter);
    }
  }
  return escaped;
}

std::string Fixed(double number, int decimals) {
  char text[40];
  const bool fits = std::abs(number) < kLongestNumber;
  std::snprintf(text, sizeof text, fits ? "%.*f" : "%.*g", fits ? decimals : 2, number);
  return text;
}

std::string Short(double number, int decimals) {
  std::string text = Fixed(number, decimals);
  if (text.find('.') == std::string::npos || text.find('e') != std::string::npos) return text;
  text.erase(text.find_last_not_of('0') + 1);
  if (text.back() == '.') text.pop_back();
  return text;
}

std::string ClockText(double seconds) {
  return Clock(static_cast<std::uint64_t>(std::llround(seconds)));
}

}  // namespace ipodctl
