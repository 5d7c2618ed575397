// SPDX-License-Identifier: MIT
// Where the line cannot be recorded it cannot be watched either.
#include "wire/line_watch.h"

namespace ipodctl {

void WatchLine(bool /*shown*/, std::uint32_t /*baud*/) {}

std::optional<std::vector<ipodwire::Finding>> FindingsOfWatchedLine() { return std::nullopt; }

}  // namespace ipodctl
