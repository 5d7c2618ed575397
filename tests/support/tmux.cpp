// SPDX-License-Identifier: MIT
#include "support/tmux.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <sstream>
#include <thread>

#include "support/process.h"

namespace test {

namespace {

constexpr const char* kTmux = "/usr/bin/tmux";
constexpr const char* kPane = "=terminal:0.0";

}  // namespace

bool Await(const std::function<bool()>& done) {
  const auto end = std::chrono::steady_clock::now() + std::chrono::minutes(1);
  while (!done()) {
    if (std::chrono::steady_clock::now() > end) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
  return true;
}

TmuxTerminal::TmuxTerminal(const std::string& command, int columns, int rows) {
  EXPECT_TRUE(std::filesystem::exists(kTmux)) << "tmux is missing; script/bootstrap installs it";
  Tmux({"-f", "/dev/null", "new-session", "-d", "-s", "terminal", "-x", std::to_string(columns),
        "-y", std::to_string(rows), command + "; exec sleep 600"});
}

TmuxTerminal::~TmuxTerminal() { Tmux({"kill-server"}); }

void TmuxTerminal::Press(const std::vector<std::string>& keys) {
  std::vector<std::string> arguments = {"send-keys", "-t", kPane};
  arguments.insert(arguments.end(), keys.begin(), keys.end());
  Tmux(arguments);
}

void TmuxTerminal::Send(const std::string& bytes) { Tmux({"send-keys", "-t", kPane, "-l", bytes}); }

void TmuxTerminal::Resize(int columns, int rows) {
  Tmux({"resize-window", "-t", kPane, "-x", std::to_string(columns), "-y", std::to_string(rows)});
}

void TmuxTerminal::Close() { Tmux({"kill-server"}); }

std::vector<std::string> TmuxTerminal::Lines() {
  std::vector<std::string> lines;
  std::istringstream text(Text());
  for (std::string line; std::getline(text, line);) lines.push_back(line);
  return lines;
}

std::string TmuxTerminal::Text() { return Tmux({"capture-pane", "-p", "-t", kPane}); }

bool TmuxTerminal::WaitFor(const std::string& text) {
  return Await([&] { return Text().find(text) != std::string::npos; });
}

bool TmuxTerminal::WaitUntilGone(const std::string& text) {
  return Await([&] { return Text().find(text) == std::string::npos; });
}

bool TmuxTerminal::IsFullScreen() {
  return Tmux({"display-message", "-p", "-t", kPane, "#{alternate_on}"}) == "1\n";
}

// In a locale whose characters are any.
std::string TmuxTerminal::Tmux(std::vector<std::string> arguments) {
  arguments.insert(arguments.begin(), {"LC_ALL=C.UTF-8", kTmux, "-u", "-S", folder_.path("tmux")});
  return RunProgram("/usr/bin/env", arguments).out;
}

}  // namespace test
