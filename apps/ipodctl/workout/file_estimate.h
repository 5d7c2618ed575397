// SPDX-License-Identifier: MIT
// How long a workout's document will be, to refuse early what the iPod has no room for. The library
// writes the document, and tells how much of it is written.
#pragma once

#include <cstddef>
#include <vector>

#include "workout/recording.h"
#include "workout/workout_header.h"

namespace ipodctl {

// Sizes in bytes.

struct HeaderSize {
  std::size_t total = 0;
  std::size_t largest_line = 0;
};
HeaderSize SizeOfHeader(const WorkoutHeader& header);
std::size_t SizeOfInterval(const Recording& recording, const Interval& interval);
std::size_t SizeOfSummary(const Recording& recording, const Summary& summary);

struct FileEstimate {
  std::size_t largest_piece = 0;  // of those that are written at a time
  std::size_t total = 0;          // with what the iPod adds
};
FileEstimate EstimateFile(const WorkoutHeader& header, const Recording& recording,
                          const std::vector<Interval>& intervals, const Summary& summary);

}  // namespace ipodctl
