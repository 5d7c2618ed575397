// SPDX-License-Identifier: MIT
// Shows Wireshark a recording that another program makes.
#pragma once

#include <string>

namespace ipodctl {

/// Copies a recording into Wireshark's pipe, and what is added to it, until Wireshark has seen
/// enough or the program is interrupted. A file that is not there yet is waited for. Throws a
/// CommandFailure when it is no recording, is damaged, or is begun anew.
void FollowForWireshark(const std::string& recording, const std::string& pipe);

}  // namespace ipodctl
