// SPDX-License-Identifier: MIT
// Draws the status line and the bar in it.
#include "console/progress.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <utility>

#include "console/clock.h"
#include "console/system.h"
#include "console/text.h"
#include "console/verbose_log.h"

namespace ipodctl {

namespace {

constexpr int kLongestBar = 40;
constexpr int kShortestBar = 5;
constexpr const char* kFull = "█";
constexpr const char* kEmpty = "░";

}  // namespace

std::string RenderBar(const std::string& label, std::uint64_t done, std::uint64_t total,
                      const std::string& figures, int columns) {
  // A full line would make some terminals scroll.
  const int around = static_cast<int>(Columns(label) + Columns(figures)) + 4;
  const int width = std::min(columns - 1 - around, kLongestBar);
  if (width < kShortestBar) return label + "  " + figures;  // which the line cuts
  const std::uint64_t shown = std::min(done, total);
  const int full =
      total == 0 ? 0 : static_cast<int>(shown * static_cast<std::uint64_t>(width) / total);
  std::string bar = label + "  ";
  for (int i = 0; i < width; ++i) bar += i < full ? kFull : kEmpty;
  return bar + "  " + figures;
}

// Verbose notes are lines on the same terminal; a line that redraws itself would garble them.
StatusLine::StatusLine() : terminal_(IsTerminal(stderr) && !Verbose()) {}

StatusLine::~StatusLine() { Hide(); }

void StatusLine::Show(const std::string& text) {
  if (!terminal_) return;
  // Asked each time: the window may have changed. One column stays free.
  const auto columns = static_cast<std::size_t>(TerminalColumns(stderr) - 1);
  std::fprintf(stderr, "\r%s\x1b[K", Cut(text, columns).c_str());
  std::fflush(stderr);
  shown_ = true;
}

void StatusLine::ShowBar(const std::string& label, std::uint64_t done, std::uint64_t total,
                         const std::string& figures) {
  if (terminal_) Show(RenderBar(label, done, total, figures, TerminalColumns(stderr)));
}

void StatusLine::Hide() {
  if (!shown_) return;
  std::fprintf(stderr, "\r\x1b[K");
  std::fflush(stderr);
  shown_ = false;
}

std::string ProgressFigures(std::uint64_t done, std::uint64_t total,
                            std::chrono::microseconds passed) {
  const std::string counts = std::to_string(done) + "/" + std::to_string(total);
  const double seconds = std::chrono::duration<double>(passed).count();
  // Before that the rate jumps about.
  constexpr double kLeastSeconds = 0.5;
  if (done == 0 || done >= total || seconds < kLeastSeconds) return counts;
  const double rate = static_cast<double>(done) / seconds;
  const double left_s = static_cast<double>(total - done) / rate;
  return counts + "  " + std::to_string(std::max(1L, std::lround(rate))) + "/s  " +
         Clock(static_cast<std::uint64_t>(std::ceil(left_s))) + " left";
}

ProgressBar::ProgressBar(std::string label, std::uint64_t total)
    : label_(std::move(label)), total_(total), start_(SteadyTime()) {
  Update(0);
}

void ProgressBar::Update(std::uint64_t done) {
  line_.ShowBar(label_, done, total_, ProgressFigures(done, total_, SteadyTime() - start_));
}

}  // namespace ipodctl
