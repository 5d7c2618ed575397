// SPDX-License-Identifier: MIT
// Text measured as a terminal shows it: in cells, of which a wide character takes two.
#pragma once

#include <string>
#include <vector>

namespace ipodctl::screen {

/// Has characters outside of ASCII measured and shown, whatever the user's locale: the program
/// writes UTF-8 in any. To be called before anything is measured.
void UseUtf8();

/// UTF-8 that can do no more than stand in its place: control characters are replaced, and what
/// turns the direction of writing or joins characters to one is left out.
std::string Harmless(const std::string& utf8);

// Each takes harmless text.

int Width(const std::string& text);
/// As much of `text` as has room, with "…" at its end when that is not all.
std::string Cut(const std::string& text, int columns);
/// The same, filled up with spaces.
std::string Fit(const std::string& text, int columns);
/// `text` in lines, parted between words where it can be.
std::vector<std::string> Wrapped(const std::string& text, int columns);

}  // namespace ipodctl::screen
