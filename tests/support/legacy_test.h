// SPDX-License-Identifier: MIT
// The legacy interface on a docked, scripted iPod: the ground of its tests.
#pragma once

#include <cstddef>
#include <string>

#include "ipodcomm/ipod.h"
#include "support/legacy_times.h"
#include "support/session_test.h"

namespace test {

/// An open legacy interface, `legacy_`, beside what a dock has. Arrive is not for it, which reads
/// only when it is asked to: have the iPod send instead.
class LegacyTest : public DockTest {
 protected:
  LegacyTest();
  ~LegacyTest() override;

  /// Has the iPod send these bytes from now on.
  void Send(std::string_view bytes) { ipod_.Send(Hex(bytes)); }
  /// All bytes sent since the last look, as one text; frames of any kind.
  std::string DrainSentBytes();
  /// The payload area's bytes from its front on.
  std::string Payload(std::size_t count);
  /// Leaves every byte of the payload area holding its own position, for tests of what a command
  /// leaves behind.
  void NumberPayload();

  ipod legacy_;
};

/// Characters as numbers, in hexadecimal: "5A 6F EB 0".
std::string Units(const wchar_t* text, std::size_t count);

}  // namespace test
