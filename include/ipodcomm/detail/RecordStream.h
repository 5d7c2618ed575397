// SPDX-License-Identifier: MIT
// What the exported classes are made of; hosts have no use for it.
#pragma once

#include <cstdint>

#include "ipodcomm/detail/SentIds.h"

namespace ipodcomm {

/// The records that a host has asked for and has yet to take.
struct RecordStream {
  std::uint8_t category;
  std::uint32_t next;  ///< index of the record that comes next
  std::uint32_t left;  ///< records to come
  SentIds sent;
};

}  // namespace ipodcomm
