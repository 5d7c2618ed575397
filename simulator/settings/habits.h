// SPDX-License-Identifier: MIT
// The ways in which real iPods differ from the common one, each with a name that people can type.

#pragma once

#include <string_view>
#include <vector>

#include "settings.h"

namespace ipodsim {

struct Habit {
  const char* name;
  const char* description;
  void (*apply)(Settings*);
};

const std::vector<Habit>& AllHabits();
/// Changes the settings, of which the library must be there already. False when there is no habit
/// of this name.
bool ApplyHabit(std::string_view name, Settings* settings);

}  // namespace ipodsim
