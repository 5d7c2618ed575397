// SPDX-License-Identifier: MIT
// tshark, Wireshark's command-line program, with the dissector of share/ipodcomm/.
#pragma once

#include <string>
#include <vector>

namespace test {

extern const char* const kTshark;

/// Fails the test where there is none.
void RequireTshark();
/// What it prints of a recording, which it reads twice so that questions know of their answers.
std::string Tshark(const std::string& recording, const std::vector<std::string>& more);

std::vector<std::string> LinesOf(const std::string& text);

}  // namespace test
