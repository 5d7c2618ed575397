// SPDX-License-Identifier: MIT
// The recording of the line that ipodsim --capture asks for.
#pragma once

#include <cstdint>
#include <string>

#include "simulator/pty/pty_server.h"

/// What to call with the bytes of the line. Their direction is the accessory's, as in its own
/// recording.
/// @param file a path; "-" is standard output
/// @param baud the line's speed, 0 for none
/// @return empty when the file cannot be made, with the reason in `*error`
ipodsim::PtyServer::Tap RecordLine(const std::string& file, std::uint32_t baud, std::string* error);
