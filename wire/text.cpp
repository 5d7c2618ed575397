// SPDX-License-Identifier: MIT
#include "wire/text.h"

#include <array>
#include <cstdio>

namespace ipodwire {
namespace {

// Bytes of the UTF-8 character that begins at `at`; 0 when none does, or one that is not shown: a
// control character, or one that turns the direction of the text.
std::size_t ShownBytes(const std::string& text, std::size_t at) {
  const auto byte = [&](std::size_t i) {
    return at + i < text.size() ? static_cast<unsigned char>(text[at + i]) : 0U;
  };
  const unsigned first = byte(0);
  if (first < 0x80) return first < 0x20 || first == 0x7F ? 0 : 1;
  const std::size_t size = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
  if (first < 0xC2 || first > 0xF4) return 0;
  unsigned code = first & (0xFFU >> (size + 1));
  for (std::size_t i = 1; i < size; ++i) {
    if ((byte(i) & 0xC0) != 0x80) return 0;
    code = (code << 6) | (byte(i) & 0x3F);
  }
  const bool too_long = (size == 3 && code < 0x800) || (size == 4 && code < 0x10000);
  const bool none = (code >= 0xD800 && code <= 0xDFFF) || code > 0x10FFFF;
  const bool control = code < 0xA0;
  const bool turns = (code >= 0x202A && code <= 0x202E) || (code >= 0x2066 && code <= 0x2069) ||
                     code == 0x200E || code == 0x200F || code == 0x2028 || code == 0x2029;
  return too_long || none || control || turns ? 0 : size;
}

std::string Join(const std::vector<std::vector<DecodedField>>& items) {
  std::string text;
  for (const std::vector<DecodedField>& item : items) {
    if (!text.empty()) text += ", ";
    if (item.size() == 1 && item[0].kind == DecodedField::Kind::kPlain) {
      text += item[0].value;
      if (!item[0].unit.empty()) text += " " + item[0].unit;
    } else {
      text += "{" + Describe(item) + "}";
    }
  }
  return "[" + text + "]";
}

std::string ValueOf(const DecodedField& field) {
  switch (field.kind) {
    case DecodedField::Kind::kPlain:
      return field.unit.empty() ? field.value : field.value + " " + field.unit;
    case DecodedField::Kind::kText:
      return Quoted(field.value);
    case DecodedField::Kind::kList:
      return Join(field.items);
  }
  return {};
}

}  // namespace

std::string Quoted(const std::string& text) {
  std::string quoted = "\"";
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t shown = ShownBytes(text, at);
    if (shown > 0) {
      if (text[at] == '"' || text[at] == '\\') quoted += '\\';
      quoted += text.substr(at, shown);
      at += shown;
      continue;
    }
    std::array<char, 8> escape{};
    std::snprintf(escape.data(), escape.size(), "\\x%02X",
                  unsigned{static_cast<unsigned char>(text[at])});
    quoted += escape.data();
    ++at;
  }
  return quoted + '"';
}

std::string Describe(const std::vector<DecodedField>& fields) {
  std::string text;
  for (const DecodedField& field : fields) {
    if (!text.empty()) text += ", ";
    text += field.name + " " + ValueOf(field);
  }
  return text;
}

std::string Describe(const DecodedFrame& frame) {
  std::string text = frame.lingo_name() + " " + frame.command_name();
  if (frame.identifier) {
    std::array<char, 16> identifier{};
    std::snprintf(identifier.data(), identifier.size(), " id 0x%04X", unsigned{*frame.identifier});
    text += identifier.data();
  }
  const std::string fields = Describe(frame.fields);
  return fields.empty() ? text : text + ": " + fields;
}

std::string HexBytes(const std::vector<std::uint8_t>& bytes, std::size_t most) {
  std::string text;
  for (std::size_t i = 0; i < bytes.size() && i < most; ++i) {
    std::array<char, 4> digits{};
    std::snprintf(digits.data(), digits.size(), "%02X", unsigned{bytes[i]});
    if (i > 0) text += ' ';
    text += digits.data();
  }
  if (bytes.size() > most) text += " ... (" + std::to_string(bytes.size()) + " bytes)";
  return text;
}

}  // namespace ipodwire
