// SPDX-License-Identifier: MIT
// A workout's figures for machines.
#pragma once

#include <nlohmann/json_fwd.hpp>

#include "report/workout_document.h"
#include "report/workout_figures.h"

namespace ipodctl {

/// The figures that are known, in the units of the document; those computed from the intervals are
/// named in "computed".
nlohmann::ordered_json SummaryJson(const WorkoutDocument& document, const WorkoutFigures& figures);

}  // namespace ipodctl
