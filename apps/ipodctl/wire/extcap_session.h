// SPDX-License-Identifier: MIT
// Sessions of this program that Wireshark looks on at.
#pragma once

#include <string>

namespace ipodctl {

/// Writes what the library records from now on into Wireshark's pipe, to the end of the process.
/// When Wireshark has seen enough the program is interrupted, as by Ctrl-C. Throws the
/// CommandFailure that says what is wrong with the pipe.
void RecordForWireshark(const std::string& pipe);

}  // namespace ipodctl
