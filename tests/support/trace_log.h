// SPDX-License-Identifier: MIT
// The tests' own trace library: it keeps what the library logs.
#pragma once

#include <string>
#include <vector>

namespace test {

/// Lines logged since the last call, as "source: message", in the order in which they were logged.
std::vector<std::string> DrainTraceLog();

}  // namespace test
