// SPDX-License-Identifier: MIT
// A recorded workout, as comma-separated values.
#pragma once

#include <istream>
#include <string>
#include <vector>

#include "workout/recording.h"

namespace ipodctl {

/// Reads a header line that names the columns, in any order, and a line of numbers for each
/// reading, with commas, semicolons or tabs between them. Columns are:
///   seconds                 since the start, more in every line
///   distance                kilometres or floors, as the equipment counts; or "km", "floors"
///   energy                  kilocalories since the start; or "kcal"
///   pace, spm or rpm        seconds per kilometre, steps or revolutions per minute
///   incline                 per cent
///   heart rate              beats per minute; or "bpm"
///   level
///   event                   "pause" or "resume"
/// The first four are needed. Those that follow may be left out or empty.
/// Throws a CommandFailure that names the line which is wrong.
/// @param name of the file, for the failure
/// @param[out] unknown_columns the others, which are ignored
Recording ReadCsvRecording(std::istream& stream, const std::string& name,
                           const Equipment& equipment, std::vector<std::string>* unknown_columns);

/// The same from a file, which may be missing, or from standard input if `path` is "-". Says on
/// standard error what it ignores.
Recording LoadCsvRecording(const std::string& path, const Equipment& equipment);

}  // namespace ipodctl
