// SPDX-License-Identifier: MIT
// The kinds of equipment, and what each of them counts.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "ipodcomm/IpodTypes.h"

namespace ipodctl {

struct Equipment {
  const char* name;  // on the command line
  tagIPOD_EQUIPMENT_TYPE type;
  tagIPOD_DISTANCE_TYPE distance_type;
  tagIPOD_SPEED_TYPE speed_type;
};

const std::vector<Equipment>& AllEquipment();
/// Nothing when there is no such equipment.
std::optional<Equipment> EquipmentByName(const std::string& name);
const Equipment& EquipmentByType(tagIPOD_EQUIPMENT_TYPE type);

}  // namespace ipodctl
