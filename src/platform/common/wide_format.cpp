// SPDX-License-Identifier: MIT
// printf for wide text after the Windows rules, independent of the C library's locale.
#include "platform/common/wide_format.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <cwchar>
#include <string_view>

#include "platform/common/utf8.h"

namespace ipodcomm::platform {
namespace {

// Widths and precisions come from format strings and `*` arguments; a wild one must not exhaust
// memory. The longest text formatted by anyone is far below this.
constexpr int kMaxField = 32768;

enum class Size { kDefault, kChar, kShort, kLong, kLongLong, kPointer, k32 };

// One conversion as written in the format: %[flags][width][.precision][size]letter
struct Conversion {
  bool left = false;
  bool plus = false;
  bool space = false;
  bool alternate = false;
  bool zero = false;
  int width = 0;
  int precision = -1;
  Size size = Size::kDefault;
  wchar_t letter = 0;
};

class Formatter {
 public:
  std::wstring Run(const wchar_t* format, std::va_list arguments) {
    va_copy(arguments_, arguments);
    next_ = format;
    while (*next_ != 0) {
      if (*next_ != L'%') {
        text_.push_back(*next_++);
        continue;
      }
      ++next_;
      const Conversion conversion = ParseConversion();
      if (conversion.letter == 0) break;
      Convert(conversion);
    }
    va_end(arguments_);
    return std::move(text_);
  }

 private:
  Conversion ParseConversion() {
    Conversion c;
    ParseFlags(c);
    c.width = ParseField();
    if (c.width < 0) {  // a negative `*` means the same as the flag
      c.left = true;
      c.width = -c.width;
    }
    if (*next_ == L'.') {
      ++next_;
      c.precision = std::max(ParseField(), -1);
    }
    c.size = ParseSize();
    c.letter = *next_;
    if (c.letter != 0) ++next_;
    return c;
  }

  void ParseFlags(Conversion& c) {
    for (;; ++next_) {
      switch (*next_) {
        case L'-':
          c.left = true;
          break;
        case L'+':
          c.plus = true;
          break;
        case L' ':
          c.space = true;
          break;
        case L'#':
          c.alternate = true;
          break;
        case L'0':
          c.zero = true;
          break;
        default:
          return;
      }
    }
  }

  // A number or `*`.
  int ParseField() {
    if (*next_ == L'*') {
      ++next_;
      return std::clamp(va_arg(arguments_, int), -kMaxField, kMaxField);
    }
    int field = 0;
    for (; *next_ >= L'0' && *next_ <= L'9'; ++next_) {
      field = std::min(field * 10 + static_cast<int>(*next_ - L'0'), kMaxField);
    }
    return field;
  }

  bool Skip(std::wstring_view prefix) {
    if (std::wcsncmp(next_, prefix.data(), prefix.size()) != 0) return false;
    next_ += prefix.size();
    return true;
  }

  Size ParseSize() {
    if (Skip(L"I64") || Skip(L"ll") || Skip(L"j")) return Size::kLongLong;
    if (Skip(L"I32")) return Size::k32;
    if (Skip(L"I") || Skip(L"z") || Skip(L"t")) return Size::kPointer;
    if (Skip(L"l") || Skip(L"w")) return Size::kLong;
    if (Skip(L"hh")) return Size::kChar;
    if (Skip(L"h")) return Size::kShort;
    return Size::kDefault;
  }

  void Convert(const Conversion& c) {
    switch (c.letter) {
      case L's':
        return c.size == Size::kShort ? ConvertNarrow(c) : ConvertWide(c);
      case L'S':
        return c.size == Size::kLong ? ConvertWide(c) : ConvertNarrow(c);
      case L'c':
        return ConvertCharacter(c, c.size == Size::kShort);
      case L'C':
        return ConvertCharacter(c, c.size != Size::kLong);
      case L'd':
      case L'i':
        return ConvertSigned(c);
      case L'u':
      case L'x':
      case L'X':
      case L'o':
        return ConvertUnsigned(c);
      case L'p':
        return ConvertPointer(c);
      case L'f':
      case L'F':
      case L'e':
      case L'E':
      case L'g':
      case L'G':
        return ConvertDouble(c);
      default:
        text_.push_back(c.letter);
    }
  }

  void ConvertWide(const Conversion& c) {
    const wchar_t* argument = va_arg(arguments_, const wchar_t*);
    if (argument == nullptr) argument = L"(null)";
    // With a precision the argument need not be terminated; nothing is read past it.
    const std::size_t length = c.precision >= 0
                                   ? wcsnlen(argument, static_cast<std::size_t>(c.precision))
                                   : std::wcslen(argument);
    Pad(c, {}, {argument, length});
  }

  void ConvertNarrow(const Conversion& c) {
    const char* argument = va_arg(arguments_, const char*);
    if (argument == nullptr) argument = "(null)";
    const std::size_t length = c.precision >= 0
                                   ? strnlen(argument, static_cast<std::size_t>(c.precision))
                                   : std::strlen(argument);
    Pad(c, {}, Utf8ToWide({argument, length}));
  }

  void ConvertCharacter(const Conversion& c, bool narrow) {
    const int argument = va_arg(arguments_, int);  // both kinds are passed as int
    if (narrow) {
      const char byte = static_cast<char>(argument);
      return Pad(c, {}, Utf8ToWide({&byte, 1}));
    }
    const auto character = static_cast<wchar_t>(argument);
    Pad(c, {}, {&character, 1});
  }

  void ConvertSigned(const Conversion& c) {
    const std::int64_t value = ReadSigned(c.size);
    const bool negative = value < 0;
    const std::uint64_t magnitude =
        negative ? 0 - static_cast<std::uint64_t>(value) : static_cast<std::uint64_t>(value);
    std::wstring_view sign;
    if (negative) {
      sign = L"-";
    } else if (c.plus) {
      sign = L"+";
    } else if (c.space) {
      sign = L" ";
    }
    PadNumber(c, sign, Digits(magnitude, 10, false));
  }

  void ConvertUnsigned(const Conversion& c) {
    const std::uint64_t value = ReadUnsigned(c.size);
    const bool upper = c.letter == L'X';
    std::wstring_view prefix;
    int base = 10;
    if (c.letter == L'o') {
      base = 8;
      if (c.alternate && value != 0) prefix = L"0";
    } else if (c.letter != L'u') {
      base = 16;
      if (c.alternate && value != 0) prefix = upper ? L"0X" : L"0x";
    }
    PadNumber(c, prefix, Digits(value, base, upper));
  }

  void ConvertPointer(Conversion c) {
    c.precision = 2 * sizeof(void*);
    const auto value = reinterpret_cast<std::uintptr_t>(va_arg(arguments_, void*));
    PadNumber(c, {}, Digits(value, 16, true));
  }

  void ConvertDouble(const Conversion& c) {
    const double value = va_arg(arguments_, double);
    std::wstring_view sign;
    if (std::signbit(value)) {
      sign = L"-";
    } else if (c.plus) {
      sign = L"+";
    } else if (c.space) {
      sign = L" ";
    }
    const bool upper = c.letter == L'F' || c.letter == L'E' || c.letter == L'G';
    Conversion padding = c;
    if (!std::isfinite(value)) padding.zero = false;
    Pad(padding, sign, DoubleDigits(std::fabs(value), c, upper));
  }

  static std::wstring DoubleDigits(double magnitude, const Conversion& c, bool upper) {
    std::chars_format style = std::chars_format::fixed;
    int precision = c.precision < 0 ? 6 : c.precision;
    if (c.letter == L'e' || c.letter == L'E') style = std::chars_format::scientific;
    if (c.letter == L'g' || c.letter == L'G') {
      style = std::chars_format::general;
      precision = std::max(precision, 1);
    }
    // The largest double has 309 digits before its point.
    std::string digits(static_cast<std::size_t>(precision) + 320, '\0');
    const auto end =
        std::to_chars(digits.data(), digits.data() + digits.size(), magnitude, style, precision);
    digits.resize(static_cast<std::size_t>(end.ptr - digits.data()));
    return Widen(digits, upper);
  }

  std::int64_t ReadSigned(Size size) {
    switch (size) {
      case Size::kChar:
        return static_cast<signed char>(va_arg(arguments_, int));
      case Size::kShort:
        return static_cast<short>(va_arg(arguments_, int));
      case Size::kLong:
        return va_arg(arguments_, long);
      case Size::kLongLong:
        return va_arg(arguments_, long long);
      case Size::kPointer:
        return va_arg(arguments_, std::ptrdiff_t);
      default:
        return va_arg(arguments_, int);
    }
  }

  std::uint64_t ReadUnsigned(Size size) {
    switch (size) {
      case Size::kChar:
        return static_cast<unsigned char>(va_arg(arguments_, unsigned));
      case Size::kShort:
        return static_cast<unsigned short>(va_arg(arguments_, unsigned));
      case Size::kLong:
        return va_arg(arguments_, unsigned long);
      case Size::kLongLong:
        return va_arg(arguments_, unsigned long long);
      case Size::kPointer:
        return va_arg(arguments_, std::size_t);
      default:
        return va_arg(arguments_, unsigned);
    }
  }

  static std::wstring Digits(std::uint64_t value, int base, bool upper) {
    char digits[32];
    const auto end = std::to_chars(digits, digits + sizeof digits, value, base);
    return Widen({digits, static_cast<std::size_t>(end.ptr - digits)}, upper);
  }

  static std::wstring Widen(std::string_view ascii, bool upper) {
    std::wstring wide;
    for (const char c : ascii) {
      const bool raise = upper && c >= 'a' && c <= 'z';
      wide.push_back(static_cast<wchar_t>(raise ? c - 'a' + 'A' : c));
    }
    return wide;
  }

  // An integer's precision is its least number of digits; it overrides the zero flag, and 0 prints
  // nothing for a zero.
  void PadNumber(Conversion c, std::wstring_view prefix, std::wstring digits) {
    if (c.precision >= 0) {
      c.zero = false;
      if (c.precision == 0 && digits == L"0") digits.clear();
      const auto least = static_cast<std::size_t>(c.precision);
      if (digits.size() < least) digits.insert(0, least - digits.size(), L'0');
    }
    Pad(c, prefix, digits);
  }

  // Zeros go between the prefix and the body, before texts too.
  void Pad(const Conversion& c, std::wstring_view prefix, std::wstring_view body) {
    const std::size_t length = prefix.size() + body.size();
    const auto width = static_cast<std::size_t>(c.width);
    const std::size_t missing = width > length ? width - length : 0;
    if (!c.left && !c.zero) text_.append(missing, L' ');
    text_.append(prefix);
    if (!c.left && c.zero) text_.append(missing, L'0');
    text_.append(body);
    if (c.left) text_.append(missing, L' ');
  }

  std::wstring text_;
  const wchar_t* next_ = nullptr;
  std::va_list arguments_;
};

}  // namespace

std::wstring FormatWide(const wchar_t* format, std::va_list arguments) {
  return Formatter().Run(format, arguments);
}

}  // namespace ipodcomm::platform
