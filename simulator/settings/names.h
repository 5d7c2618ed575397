// SPDX-License-Identifier: MIT
// The names of profiles, habits and faults, for programs that let people choose among them.
#pragma once

#include <algorithm>
#include <string>
#include <vector>

namespace ipodsim {

/// The names of things that have one, in their order.
template <typename Things>
std::vector<std::string> NamesOf(const Things& things) {
  std::vector<std::string> names(things.size());
  std::transform(things.begin(), things.end(), names.begin(),
                 [](const auto& thing) { return thing.name; });
  return names;
}

}  // namespace ipodsim
