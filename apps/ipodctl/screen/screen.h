// SPDX-License-Identifier: MIT
// The screen as the user works it, without a terminal: what keys and clicks do, and what is shown.
#pragma once

#include <functional>
#include <string>

#include "screen/browser.h"
#include "screen/frame.h"
#include "screen/layout.h"
#include "screen/snapshot.h"
#include "screen/wish.h"

namespace ipodctl::screen {

class Screen {
 public:
  /// @param ask is given what the session is to do
  explicit Screen(std::function<void(Wish)> ask) : ask_(std::move(ask)) {}

  // Each returns at once, whatever the iPod does.

  void Press(char32_t key, const Snapshot& snapshot);
  /// A click on the frame that was drawn last.
  void Click(int row, int column, const Snapshot& snapshot);
  /// Turns the mouse's wheel in the library.
  void Scroll(bool down, const Snapshot& snapshot);

  /// What stands on the screen.
  const Frame& Draw(const Snapshot& snapshot, int rows, int columns, std::chrono::microseconds now);
  /// What of the library does.
  View view() const { return browser_.view(); }
  /// Whether the user has had enough.
  bool left() const { return left_; }

 private:
  void Do(Action action, const Snapshot& snapshot);

  std::function<void(Wish)> ask_;
  Browser browser_;
  Frame frame_{0, 0};
  bool help_ = false;
  bool left_ = false;
};

}  // namespace ipodctl::screen
