// SPDX-License-Identifier: MIT
// What the exported classes are made of; hosts have no use for it.
#pragma once

#include <cstdint>

namespace ipodcomm {

/// The transaction identifiers of an exchange's attempts, from the first to the latest. Identifiers
/// in between belong to answers of the accessory, which no iPod answers.
struct SentIds {
  bool any;  ///< false while frames carry none
  std::uint16_t first;
  std::uint16_t latest;

  void Add(std::uint16_t id) {
    if (!any) first = id;
    any = true;
    latest = id;
  }
  bool Contain(std::uint16_t id) const {
    return any &&
           static_cast<std::uint16_t>(id - first) <= static_cast<std::uint16_t>(latest - first);
  }
};

}  // namespace ipodcomm
