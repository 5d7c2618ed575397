// SPDX-License-Identifier: MIT
// The page of a workout: one file that needs nothing else, for screens, phones and paper.
#pragma once

#include <string>

#include "report/presentation.h"
#include "report/workout_document.h"
#include "report/workout_figures.h"

namespace ipodctl {

/// @param source name of the document, for the page's last line
/// @returns HTML that is well-formed XML too
std::string RenderPage(const WorkoutDocument& document, const WorkoutFigures& figures,
                       const std::string& source, const Presentation& presentation = {});

/// "Treadmill workout", in the page's language. May hold a name from the document.
std::string WorkoutTitle(const WorkoutDocument& document, const Wording& words);

/// What is wrong with the document, the rest of a sentence that starts with its name: "is cut short
/// at line 3, column 4".
std::string ProblemText(const DocumentProblem& problem);

}  // namespace ipodctl
