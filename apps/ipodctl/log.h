// SPDX-License-Identifier: MIT
// What the program tells on standard error about its doings when asked to be verbose.
#pragma once

#include <cstdio>
#include <string>

namespace ipodctl {

void SetVerbose(bool verbose);
bool Verbose();

/// Standard error, wherever the program has put it: messages to the user go here.
std::FILE* Messages();
void SetMessages(std::FILE* stream);

/// One line on standard error when verbose. Any thread.
void Note(const std::string& text);

}  // namespace ipodctl
