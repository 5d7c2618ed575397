// SPDX-License-Identifier: MIT
// Received packets as tests write and print them, and the names of table rows.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "ipodcomm/IpodTypes.h"
#include "support/bytes.h"

namespace test {

inline tagSERIAL_PACKET Packet(std::string_view text) {
  tagSERIAL_PACKET packet = {};
  for (const std::uint8_t byte : Hex(text)) packet.data[packet.length++] = byte;
  return packet;
}

inline std::string Text(const tagSERIAL_PACKET& packet) {
  return ToHex(packet.data, packet.length);
}

/// Names the rows of an INSTANTIATE_TEST_SUITE_P whose parameter has a member `name`.
struct RowName {
  template <class Row>
  std::string operator()(const ::testing::TestParamInfo<Row>& tested) const {
    return tested.param.name;
  }
};

}  // namespace test
