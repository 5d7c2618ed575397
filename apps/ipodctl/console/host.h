// SPDX-License-Identifier: MIT
// What differs between the systems that the program runs on; one file implements it for each.
#pragma once

#include <cstdio>
#include <string>
#include <vector>

namespace ipodctl {

/// Command-line arguments as UTF-8, the program's own name left out.
std::vector<std::string> Utf8Arguments(int argc, char** argv);
/// Makes the console show UTF-8 where it does not by itself.
void PrepareConsole();

bool IsTerminal(std::FILE* stream);
/// Width of the terminal behind `stream`; 80 when unknown.
int TerminalColumns(std::FILE* stream);

void SetEnvironment(const char* name, const std::string& value);

/// The device that the library's port name stands for.
std::string PortDevice();
/// Makes it stand for `device`. False where the system fixes which device it is.
bool ChoosePortDevice(const std::string& device);
/// In place of the system's code where there is none.
constexpr long kUnknownReason = -1;
/// Why `device` could not be opened and what to do, given the system's code: the rest of a sentence
/// that starts with "cannot open DEVICE: ".
std::string WhyNotOpened(const std::string& device, long code);

}  // namespace ipodctl
