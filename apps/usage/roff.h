// SPDX-License-Identifier: MIT
// Text in the language of man.
#pragma once

#include <string>

namespace usage {

/// `text` as it is: nothing in it is taken for a command.
std::string Roff(const std::string& text);
/// In bold, and in italics.
std::string RoffBold(const std::string& text);
std::string RoffItalic(const std::string& text);
/// How a page of this build begins: its name, its section and the date. Names are not hyphenated.
std::string RoffTitle(const std::string& name, int section, const std::string& manual);

}  // namespace usage
