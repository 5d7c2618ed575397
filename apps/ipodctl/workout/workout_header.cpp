// SPDX-License-Identifier: MIT
// Fills in the header, and escapes its names.
#include "workout/workout_header.h"

#include "console/text.h"
#include "workout/recording.h"

namespace ipodctl {

namespace {

constexpr const char* kManufacturerId = "ipodcomm";
constexpr const char* kModel = "ipodctl";  // unless told otherwise
constexpr const char* kReplacement = "\xEF\xBF\xBD";

}  // namespace

std::string EscapedText(const std::string& utf8) {
  // Converted to wide text and back, which replaces what is no UTF-8.
  const std::string text = Printable(Utf8(Wide(utf8).c_str()));
  std::string escaped;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool is_no_character =
        text.compare(i, 3, "\xEF\xBF\xBE") == 0 || text.compare(i, 3, "\xEF\xBF\xBF") == 0;
    if (is_no_character) {
      escaped += kReplacement;
      i += 2;
    } else if (text[i] == '&') {
      escaped += "&amp;";
    } else if (text[i] == '<') {
      escaped += "&lt;";
    } else if (text[i] == '>') {
      escaped += "&gt;";
    } else {
      escaped += text[i];
    }
  }
  return escaped;
}

WorkoutHeader HeaderFor(const Options& options) {
  const WorkoutOptions& workout = options.workout;
  return {kManufacturerId,
          EscapedText(workout.manufacturer),
          EscapedText(options.model.empty() ? kModel : options.model),
          EscapedText(workout.serial_number),
          EquipmentByName(workout.equipment)->type,
          workout.weight_kg};
}

}  // namespace ipodctl
