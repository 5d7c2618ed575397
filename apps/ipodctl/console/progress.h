// SPDX-License-Identifier: MIT
// One line at the bottom of the terminal that shows how far something slow has come.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>

namespace ipodctl {

/// "Reading artists  ███████░░░░░░  45/143" in less than `columns`, or without the bar where there
/// is no room for one.
std::string RenderBar(const std::string& label, std::uint64_t done, std::uint64_t total,
                      const std::string& figures, int columns);

/// The line itself, on standard error. Without a terminal there it shows nothing.
class StatusLine {
 public:
  StatusLine();
  ~StatusLine();
  StatusLine(const StatusLine&) = delete;
  StatusLine& operator=(const StatusLine&) = delete;

  bool visible() const { return terminal_; }
  /// Cut to the width that the terminal has now.
  void Show(const std::string& text);
  void ShowBar(const std::string& label, std::uint64_t done, std::uint64_t total,
               const std::string& figures);
  /// Clears the line, for a line of output to take its place.
  void Hide();

 private:
  bool terminal_;
  bool shown_ = false;
};

/// "45/143", and once there is a rate to tell "45/143  31/s  0:03 left".
std::string ProgressFigures(std::uint64_t done, std::uint64_t total,
                            std::chrono::microseconds passed);

/// A bar that counts, such as names read.
class ProgressBar {
 public:
  ProgressBar(std::string label, std::uint64_t total);

  void Update(std::uint64_t done);
  void Hide() { line_.Hide(); }

 private:
  std::string label_;
  std::uint64_t total_;
  std::chrono::microseconds start_;
  StatusLine line_;
};

}  // namespace ipodctl
