// SPDX-License-Identifier: MIT
// A terminal of any size in which a program runs, and what stands on it: tmux, without a window.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "support/temporary_folder.h"

namespace test {

/// Looks every 20 ms until it is done; false when that takes more than a minute.
bool Await(const std::function<bool()>& done);

class TmuxTerminal {
 public:
  /// Runs `command`, a line for the shell, and stays when it has ended.
  TmuxTerminal(const std::string& command, int columns, int rows);
  /// Closes the terminal, which hangs up what still runs in it.
  ~TmuxTerminal();
  TmuxTerminal(const TmuxTerminal&) = delete;
  TmuxTerminal& operator=(const TmuxTerminal&) = delete;

  /// Presses keys: characters, or names as "Down" and "Enter".
  void Press(const std::vector<std::string>& keys);
  /// Sends bytes as the terminal itself does, such as a click.
  void Send(const std::string& bytes);
  void Resize(int columns, int rows);
  /// Closes the terminal's window.
  void Close();

  /// What stands on it, lines without spaces at their ends.
  std::vector<std::string> Lines();
  std::string Text();
  /// Waits until it holds `text`; false when that takes more than a minute.
  bool WaitFor(const std::string& text);
  /// Waits until it does not hold it.
  bool WaitUntilGone(const std::string& text);
  /// Whether a program has taken the whole screen.
  bool IsFullScreen();

 private:
  std::string Tmux(std::vector<std::string> arguments);

  TemporaryFolder folder_;
};

}  // namespace test
