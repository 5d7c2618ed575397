// SPDX-License-Identifier: MIT
// The keys: what each does, and how it is called on the screen.
#pragma once

#include <string>
#include <vector>

#include "screen/action.h"

namespace ipodctl::screen {

/// A key that is no character, by a number that no character has.
enum SpecialKey : char32_t {
  kKeyUp = 0x110000,
  kKeyDown,
  kKeyLeft,
  kKeyRight,
  kKeyPageUp,
  kKeyPageDown,
  kKeyHome,
  kKeyEnd,
  kKeyEnter,
  kKeyBackspace,
  kKeyEscape,
  kKeyF1,
};

struct KeyBinding {
  Action action;
  std::vector<char32_t> keys;
  const char* names;        // for the help: "↑ k"
  const char* short_name;   // for the line of keys; empty: not shown there
  const char* label;        // there
  const char* description;  // for the help
};

/// In the order in which they are shown.
const std::vector<KeyBinding>& AllKeys();
Action ActionOf(char32_t key);

}  // namespace ipodctl::screen
