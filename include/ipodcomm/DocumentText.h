// SPDX-License-Identifier: MIT
// Makes a host's texts fit to stand in a workout document. Whole in this header: a host that does
// not include it has none of it.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace ipodcomm {

/// One character of a wide text, which takes two units where wide characters have 16 bits.
struct DocumentCharacter {
  std::uint32_t code;  ///< U+FFFD for what no document may hold
  std::size_t units;   ///< 1 or 2
};

/// The character that begins a text which is not empty. Controls, halves of a surrogate pair,
/// U+FFFE, U+FFFF and codes beyond U+10FFFF come as U+FFFD.
inline DocumentCharacter FirstDocumentCharacter(std::wstring_view text) {
  constexpr std::uint32_t kReplacement = 0xFFFD;
  const auto unit = [text](std::size_t at) {
    return at < text.size() ? static_cast<std::uint32_t>(text[at]) : 0;
  };
  const auto within = [](std::uint32_t code, std::uint32_t first, std::uint32_t last) {
    return code >= first && code <= last;
  };
  const std::uint32_t code = unit(0);
  if (within(code, 0xD800, 0xDBFF) && within(unit(1), 0xDC00, 0xDFFF)) {
    return {0x10000 + ((code - 0xD800) << 10U) + (unit(1) - 0xDC00), 2};
  }
  const bool is_control = code < 0x20 || within(code, 0x7F, 0x9F);
  const bool is_none = within(code, 0xD800, 0xDFFF) || within(code, 0xFFFE, 0xFFFF);
  return {is_control || is_none || code > 0x10FFFF ? kReplacement : code, 1};
}

/// A text as it may stand between two tags of a workout document: `&`, `<` and `>` become entities,
/// and characters that a document or a line of it cannot hold become U+FFFD. For the names that
/// CIpodComm::Sports_StartWorkout takes; a text that went through it once goes through it no more.
/// Any thread. Throws std::bad_alloc when memory is out, as texts do.
inline std::wstring DocumentText(std::wstring_view text) {
  std::wstring safe;
  while (!text.empty()) {
    const DocumentCharacter character = FirstDocumentCharacter(text);
    switch (character.code) {
      case L'&':
        safe += L"&amp;";
        break;
      case L'<':
        safe += L"&lt;";
        break;
      case L'>':
        safe += L"&gt;";
        break;
      case 0xFFFD:
        safe += L'\xFFFD';
        break;
      default:
        safe += text.substr(0, character.units);
    }
    text.remove_prefix(character.units);
  }
  return safe;
}

/// The same for ipod::startworkout, which sends the low byte of each character: the text's UTF-8, a
/// byte in each character. A name makes a line of at most 245 of them, its element included.
inline std::wstring LegacyDocumentText(std::wstring_view text) {
  const std::wstring safe = DocumentText(text);
  std::wstring bytes;
  for (std::wstring_view rest = safe; !rest.empty();) {
    const auto [code, units] = FirstDocumentCharacter(rest);
    const auto put = [&bytes](std::uint32_t byte) { bytes += static_cast<wchar_t>(byte); };
    if (code < 0x80) {
      put(code);
    } else {
      if (code < 0x800) put(0xC0 | code >> 6U);
      if (code >= 0x800 && code < 0x10000) put(0xE0 | code >> 12U);
      if (code >= 0x10000) put(0xF0 | code >> 18U);
      if (code >= 0x10000) put(0x80 | (code >> 12U & 0x3FU));
      if (code >= 0x800) put(0x80 | (code >> 6U & 0x3FU));
      put(0x80 | (code & 0x3FU));
    }
    rest.remove_prefix(units);
  }
  return bytes;
}

}  // namespace ipodcomm
