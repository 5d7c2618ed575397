// SPDX-License-Identifier: MIT
// UTF-8 encoding and small formatting.
#include "console/text.h"

#include <cstdio>

#include "console/unicode.h"

namespace ipodctl {

namespace {

constexpr std::uint32_t kReplacement = 0xFFFD;

bool IsHighSurrogate(std::uint32_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
bool IsLowSurrogate(std::uint32_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

void Append(std::uint32_t point, std::string* utf8) {
  const auto put = [utf8](std::uint32_t byte) { utf8->push_back(static_cast<char>(byte)); };
  if (point > 0x10FFFF || IsHighSurrogate(point) || IsLowSurrogate(point)) point = kReplacement;
  if (point < 0x80) {
    put(point);
  } else if (point < 0x800) {
    put(0xC0 | point >> 6);
    put(0x80 | (point & 0x3F));
  } else if (point < 0x10000) {
    put(0xE0 | point >> 12);
    put(0x80 | (point >> 6 & 0x3F));
    put(0x80 | (point & 0x3F));
  } else {
    put(0xF0 | point >> 18);
    put(0x80 | (point >> 12 & 0x3F));
    put(0x80 | (point >> 6 & 0x3F));
    put(0x80 | (point & 0x3F));
  }
}

// The character that starts at `*i`, which moves to the next. Overlong forms, surrogates and bytes
// that begin nothing are replaced, a byte at a time.
std::uint32_t ReadPoint(const std::string& utf8, std::size_t* i) {
  const auto byte = [&utf8](std::size_t at) {
    return at < utf8.size() ? static_cast<unsigned char>(utf8[at]) : 0U;
  };
  const std::uint32_t first = byte((*i)++);
  if (first < 0x80) return first;
  const std::size_t following = first >= 0xF0 ? 3 : first >= 0xE0 ? 2 : 1;
  constexpr std::uint32_t kLeast[] = {0, 0x80, 0x800, 0x10000};
  if (first < 0xC2 || first > 0xF4) return kReplacement;
  std::uint32_t point = first & (0x3FU >> following);
  for (std::size_t k = 0; k < following; ++k) {
    if ((byte(*i + k) & 0xC0) != 0x80) return kReplacement;
    point = point << 6 | (byte(*i + k) & 0x3F);
  }
  if (point < kLeast[following] || point > 0x10FFFF || (point >= 0xD800 && point <= 0xDFFF)) {
    return kReplacement;
  }
  *i += following;
  return point;
}

}  // namespace

std::string Utf8(const wchar_t* text) {
  std::string utf8;
  for (; *text != L'\0'; ++text) {
    // NOLINTBEGIN(bugprone-signed-char-misuse): a wide character is not a byte
    auto point = static_cast<std::uint32_t>(*text);
    const auto next = static_cast<std::uint32_t>(text[1]);
    // NOLINTEND(bugprone-signed-char-misuse)
    if (IsHighSurrogate(point) && IsLowSurrogate(next)) {
      point = 0x10000 + ((point - 0xD800) << 10) + (next - 0xDC00);
      ++text;
    }
    Append(point, &utf8);
  }
  return utf8;
}

std::wstring Wide(const std::string& utf8) {
  std::wstring wide;
  std::size_t i = 0;
  while (i < utf8.size()) {
    const std::uint32_t point = ReadPoint(utf8, &i);
    // Two units where wide characters have 16 bits.
    if (sizeof(wchar_t) == 2 && point > 0xFFFF) {
      wide.push_back(static_cast<wchar_t>(0xD800 + ((point - 0x10000) >> 10)));
      wide.push_back(static_cast<wchar_t>(0xDC00 + ((point - 0x10000) & 0x3FF)));
    } else {
      wide.push_back(static_cast<wchar_t>(point));
    }
  }
  return wide;
}

std::string Printable(const std::string& utf8) {
  std::string printable;
  for (std::size_t i = 0; i < utf8.size(); ++i) {
    const auto byte = static_cast<unsigned char>(utf8[i]);
    const bool upper_control =
        byte == 0xC2 && i + 1 < utf8.size() && static_cast<unsigned char>(utf8[i + 1]) < 0xA0;
    if (byte < 0x20 || byte == 0x7F || upper_control) {
      Append(kReplacement, &printable);
      if (upper_control) ++i;
    } else {
      printable.push_back(utf8[i]);
    }
  }
  return printable;
}

std::string Trimmed(const std::string& utf8) {
  constexpr const char* kSpace = " \t\r\n";
  const std::size_t begin = utf8.find_first_not_of(kSpace);
  if (begin == std::string::npos) return {};
  return utf8.substr(begin, utf8.find_last_not_of(kSpace) + 1 - begin);
}

std::string ShownName(const std::string& utf8) {
  const bool blank = utf8.find_first_not_of(' ') == std::string::npos;
  return blank ? "(no name)" : Printable(utf8);
}

std::string ToldName(const std::optional<std::string>& utf8) {
  return utf8 ? ShownName(*utf8) : "(not told)";
}

bool SameName(const std::string& left, const std::string& right) {
  return CaseFolded(left) == CaseFolded(right);
}

bool Contains(const std::string& whole, const std::string& part) {
  return CaseFolded(whole).find(CaseFolded(part)) != std::string::npos;
}

std::string Clock(std::uint64_t seconds) {
  char text[40];
  const auto minutes = static_cast<unsigned long long>(seconds / 60);
  const auto rest = static_cast<unsigned long long>(seconds % 60);
  if (minutes < 60) {
    std::snprintf(text, sizeof text, "%llu:%02llu", minutes, rest);
  } else {
    std::snprintf(text, sizeof text, "%llu:%02llu:%02llu", minutes / 60, minutes % 60, rest);
  }
  return text;
}

std::string Grouped(std::uint64_t number) {
  std::string text = std::to_string(number);
  for (std::size_t end = text.size(); end > 3; end -= 3) text.insert(end - 3, ",");
  return text;
}

std::string Counted(std::uint64_t count, const std::string& noun) {
  return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

std::string Padded(std::string text, std::size_t width) {
  const std::size_t columns = Columns(text);
  if (columns < width) text.append(width - columns, ' ');
  return text;
}

std::size_t Columns(const std::string& utf8) {
  std::size_t columns = 0;
  for (std::size_t i = 0; i < utf8.size();) columns += ColumnsOf(ReadPoint(utf8, &i));
  return columns;
}

std::string Cut(const std::string& utf8, std::size_t columns) {
  if (Columns(utf8) <= columns) return utf8;
  if (columns == 0) return {};
  std::size_t end = 0;
  std::size_t taken = 1;  // by the ellipsis
  for (std::size_t i = 0; i < utf8.size(); end = i) {
    taken += ColumnsOf(ReadPoint(utf8, &i));
    if (taken > columns) break;
  }
  return utf8.substr(0, end) + "…";
}

}  // namespace ipodctl
