// SPDX-License-Identifier: MIT
// The table of equipment.
#include "workout/equipment.h"

namespace ipodctl {

const std::vector<Equipment>& AllEquipment() {
  // In the order of their numbers.
  static const std::vector<Equipment> equipment = {
      {"treadmill", IPOD_EQUIPMENT_TYPE_TREADMILL, IPOD_DISTANCE_TYPE_KM, IPOD_SPEED_TYPE_PACE},
      {"elliptical", IPOD_EQUIPMENT_TYPE_ELLIPTICAL, IPOD_DISTANCE_TYPE_KM, IPOD_SPEED_TYPE_SPM},
      {"stepper", IPOD_EQUIPMENT_TYPE_STEPPER, IPOD_DISTANCE_TYPE_FLOORS, IPOD_SPEED_TYPE_SPM},
      {"bike", IPOD_EQUIPMENT_TYPE_BIKE, IPOD_DISTANCE_TYPE_KM, IPOD_SPEED_TYPE_RPM},
      {"other", IPOD_EQUIPMENT_TYPE_OTHER, IPOD_DISTANCE_TYPE_KM, IPOD_SPEED_TYPE_PACE},
  };
  return equipment;
}

std::optional<Equipment> EquipmentByName(const std::string& name) {
  for (const Equipment& equipment : AllEquipment()) {
    if (name == equipment.name) return equipment;
  }
  return std::nullopt;
}

const Equipment& EquipmentByType(tagIPOD_EQUIPMENT_TYPE type) {
  return AllEquipment()[static_cast<std::size_t>(type)];
}

}  // namespace ipodctl
