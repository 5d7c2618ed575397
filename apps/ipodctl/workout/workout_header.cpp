// SPDX-License-Identifier: MIT
// Fills in the header, and escapes its names.
#include "workout/workout_header.h"

#include "console/text.h"
#include "ipodcomm/DocumentText.h"
#include "workout/recording.h"

namespace ipodctl {

namespace {

constexpr const char* kManufacturerId = "ipodcomm";
constexpr const char* kModel = "ipodctl";  // unless told otherwise

}  // namespace

std::string EscapedText(const std::string& utf8) {
  return Utf8(ipodcomm::DocumentText(Wide(utf8)).c_str());
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
