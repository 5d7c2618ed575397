// SPDX-License-Identifier: MIT
// Where debug output goes to a debugger, nothing is heard.
#include "debug_listener.h"

namespace ipodctl {

class DebugListener::Pipe {};

DebugListener::DebugListener() = default;

DebugListener::~DebugListener() = default;

std::size_t DebugListener::TakeFailedFileWrites() { return 0; }

}  // namespace ipodctl
