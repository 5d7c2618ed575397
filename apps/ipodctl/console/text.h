// SPDX-License-Identifier: MIT
// Text between the library (wide) and the outside world (UTF-8), and small formatting.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace ipodctl {

/// Wide text (UTF-16 or UTF-32, as the platform's wchar_t is) to valid UTF-8.
std::string Utf8(const wchar_t* text);
/// UTF-8 to wide text. What is no UTF-8 becomes U+FFFD.
std::wstring Wide(const std::string& utf8);
/// UTF-8 with control characters replaced: a name from the iPod must not steer the terminal.
std::string Printable(const std::string& utf8);
/// Without the blanks, tabs and line ends around it.
std::string Trimmed(const std::string& utf8);
/// What is printable of a name, and "(no name)" for a blank one.
std::string ShownName(const std::string& utf8);
/// The same, and "(not told)" where the iPod refused to tell it.
std::string ToldName(const std::optional<std::string>& utf8);
/// Whether two names are equal but for the case of their letters and how these are composed.
bool SameName(const std::string& left, const std::string& right);
/// Whether `part` occurs in `whole`, in any case.
bool Contains(const std::string& whole, const std::string& part);
/// "3:07" or "1:02:03".
std::string Clock(std::uint64_t seconds);
/// "1,234,567".
std::string Grouped(std::uint64_t number);
/// "1 track", "2 tracks". @param noun singular, with a regular plural
std::string Counted(std::uint64_t count, const std::string& noun);
/// `text` filled up with spaces to `width` columns.
std::string Padded(std::string text, std::size_t width);
/// How many columns of a terminal a text takes.
std::size_t Columns(const std::string& utf8);
/// The text, or as much of it as fits into `columns` with an ellipsis behind.
std::string Cut(const std::string& utf8, std::size_t columns);

}  // namespace ipodctl
