// SPDX-License-Identifier: MIT
// The terminal, full screen: frames out, keys and clicks in.
#pragma once

#include <chrono>
#include <cstdio>
#include <optional>

#include "screen/frame.h"

namespace ipodctl::screen {

/// What the user did; at most one of its parts is there.
struct Input {
  struct Place {
    int row;
    int column;
  };
  std::optional<char32_t> key;  // a character or a SpecialKey
  std::optional<Place> click;
  std::optional<bool> wheel_down;
};

class Terminal {
 public:
  /// Takes the terminal. Throws a CommandFailure when it cannot show a screen.
  explicit Terminal(std::FILE* output);
  /// Leaves it as it was found.
  ~Terminal();
  Terminal(const Terminal&) = delete;
  Terminal& operator=(const Terminal&) = delete;

  int rows() const;
  int columns() const;
  /// Waits for what the user does, `patience` at most.
  Input Read(std::chrono::milliseconds patience);
  void Show(const Frame& frame);
  /// False once its window is closed.
  bool is_there() const;

 private:
  void TakeStyles();

  struct Curses;
  Curses* curses_;
};

}  // namespace ipodctl::screen
