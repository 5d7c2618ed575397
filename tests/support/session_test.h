// SPDX-License-Identifier: MIT
// A session on a docked, scripted iPod in a virtual world: the ground of the library's tests.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "ipodcomm/CIpodComm.h"
#include "support/bytes.h"
#include "support/chosen_conduct.h"
#include "support/peers.h"
#include "support/trace_log.h"
#include "world/line/scripted_device.h"
#include "world/world.h"

namespace test {

using ipodcomm::virtual_platform::kMillisecond;
using ipodcomm::virtual_platform::kSecond;
using ipodcomm::virtual_platform::ScriptedDevice;
using ipodcomm::virtual_platform::World;

/// The first and the last of some texts, an empty one when there are none.
inline std::string First(const std::vector<std::string>& texts) {
  return texts.empty() ? "" : texts.front();
}
inline std::string Last(const std::vector<std::string>& texts) {
  return texts.empty() ? "" : texts.back();
}

/// A world whose COM2: has a scripted iPod, with the library's threads under readable names
/// ("read", "routing", "notification").
class DockTest : public ::testing::Test {
 protected:
  DockTest();
  ~DockTest() override;

  /// Frames that the iPod has received since the last call, as text; a lone sync byte stands for
  /// itself.
  std::vector<std::string> DrainSent();
  /// Has the iPod send these bytes, and lets time pass until the session has dealt with them.
  void Arrive(std::string_view bytes);
  /// When `request` arrives at the iPod it sends `reply` after `delay_us`.
  void Answer(std::string_view request, std::string_view reply, std::int64_t delay_us = 0);
  /// Virtual time that `action` takes.
  template <class Action>
  std::int64_t Elapsed(Action action) {
    const std::int64_t start_us = world_.now_us();
    action();
    return world_.now_us() - start_us;
  }
  /// What has been written to the debug output since the last call.
  std::vector<std::string> DrainDebugOutput();

  World world_;
  ScriptedDevice ipod_;

 private:
  std::size_t debug_lines_taken_ = 0;
};

/// An open session on it, under the chosen conduct; its construction lies more than a driver
/// restart back.
class SessionTest : public DockTest {
 protected:
  SessionTest();

  /// Turns transaction identifiers on, as an accepted StartIDPS does; the next one is `own`.
  void TurnOnTransactionIds(std::uint16_t own = 0);

  CIpodComm session_;
};

}  // namespace test
