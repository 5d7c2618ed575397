// SPDX-License-Identifier: MIT
// Numbers on a command line: the parser's own checks let through what is none, such as nan, and
// what is too large to be kept.
#pragma once

#include <CLI/CLI.hpp>
#include <cstdint>
#include <limits>

namespace usage {

/// A whole number from 0 on.
CLI::Validator WholeNumber(std::uint64_t most = std::numeric_limits<std::uint64_t>::max());

/// A number from `least` to `most`, both included.
CLI::Validator NumberBetween(double least, double most);

}  // namespace usage
