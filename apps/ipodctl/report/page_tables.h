// SPDX-License-Identifier: MIT
// The tables of a workout's page that are computed from its intervals.
#pragma once

#include <string>

#include "report/presentation.h"
#include "report/workout_document.h"

namespace ipodctl {

/// A section of the page; empty where there is nothing to show.
std::string SplitsTable(const WorkoutDocument& document, const Presentation& presentation);
/// Empty also where the highest heart rate is not known.
std::string HeartZonesTable(const WorkoutDocument& document, const Presentation& presentation);

}  // namespace ipodctl
