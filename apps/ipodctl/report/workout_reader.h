// SPDX-License-Identifier: MIT
// Reads workout documents.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "report/workout_document.h"

namespace ipodctl {

/// Beyond these a file is no workout, and reading it stops there.
constexpr std::size_t kMostIntervals = 1000000;
constexpr std::size_t kLongestTag = 1 << 20;  // bytes
/// Longer texts (names) are cut there. In bytes.
constexpr std::size_t kLongestText = 1024;

/// Reads a document that is in memory. Never fails: what is wrong with the document is its problem.
WorkoutDocument ParseWorkoutDocument(std::string_view text);

/// Reads a document from a file, piece by piece.
/// @param path UTF-8; "-" is standard input
/// @throws CommandFailure when the file cannot be read or is no workout document. A damaged
///     workout document is returned, with its problem.
WorkoutDocument ReadWorkoutDocument(const std::string& path);

}  // namespace ipodctl
