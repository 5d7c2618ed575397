// SPDX-License-Identifier: MIT
// Workout documents, and the page that is made of them.
#include <string_view>

#include "fuzz.h"
#include "report/page.h"
#include "report/workout_figures.h"
#include "report/workout_reader.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const ipodctl::WorkoutDocument document = ipodctl::ParseWorkoutDocument(text);
  if (size > 4096) return 0;  // pages of long documents take long
  ipodctl::Presentation presentation;
  const ipodctl::WorkoutFigures figures = FiguresOf(document);
  fuzz::Require(!RenderPage(document, figures, "workout.xml", presentation).empty());
  presentation.words = ipodctl::Wording(ipodctl::Language::kFrench);
  presentation.measures = ipodctl::Measures(ipodctl::Units::kImperial);
  presentation.max_heart_rate = 185;
  fuzz::Require(!RenderPage(document, figures, "workout.xml", presentation).empty());
  return 0;
}
