// SPDX-License-Identifier: MIT
// The sessions that the dissector is shown.
#pragma once

#include <string>
#include <vector>

#include "simulator/settings/settings.h"

namespace dissector {

/// A command of ipodctl on a simulated iPod.
struct Scenario {
  std::string name;
  ipodsim::Settings settings;
  std::vector<std::string> arguments;
};

/// Every kind of iPod, every habit, every fault, and the commands that send what others do not.
std::vector<Scenario> Scenarios();

}  // namespace dissector
