// SPDX-License-Identifier: MIT
// What hosts of the default conduct do, as scenarios whose every call on the seam is known.
#pragma once

#include <functional>
#include <ostream>
#include <string>
#include <vector>

#include "world/world.h"

namespace test {

struct Scenario {
  std::string name;
  /// Runs it in a world with the iPod in the dock. Whether everything succeeded.
  std::function<bool(ipodcomm::virtual_platform::World&)> run;
};

const std::vector<Scenario>& Scenarios();

/// GoogleTest prints a scenario by its name.
inline std::ostream& operator<<(std::ostream& out, const Scenario& scenario) {
  return out << scenario.name;
}

}  // namespace test
