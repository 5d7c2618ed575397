// SPDX-License-Identifier: MIT
// What a workout's document says about the equipment and its user, made fit to stand in it.
#pragma once

#include <string>

#include "ipodcomm/IpodTypes.h"
#include "options.h"

namespace ipodctl {

struct WorkoutHeader {
  std::string manufacturer_id;  // UTF-8, escaped
  std::string manufacturer_name;
  std::string model;
  std::string serial_number;
  tagIPOD_EQUIPMENT_TYPE equipment = IPOD_EQUIPMENT_TYPE_TREADMILL;
  double weight_kg = 0;
};

/// UTF-8 text as it may stand between two tags: markup characters escaped; characters that no
/// document may hold, and bytes that are no UTF-8, replaced.
std::string EscapedText(const std::string& utf8);

WorkoutHeader HeaderFor(const Options& options);

}  // namespace ipodctl
