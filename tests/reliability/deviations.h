// SPDX-License-Identifier: MIT
// A schedule told by where it leaves the plain course of things, in which the running thread goes
// on until it waits and then the one with the lowest number runs: the form in which a failing
// schedule can be made shorter, piece by piece.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "world/threads/next_thread.h"

namespace reliability {

/// At decision `step` this thread runs instead.
struct Deviation {
  std::uint64_t step;
  int thread;
};
using Deviations = std::vector<Deviation>;

/// "12:3,40:1"; "none" for no deviation.
std::string ToText(const Deviations& deviations);
std::optional<Deviations> DeviationsOf(const std::string& text);

/// Follows these, where they fit.
std::unique_ptr<ipodcomm::virtual_platform::Schedule> Deviating(Deviations deviations);

/// Follows another schedule, and notes its deviations where also another process of this program
/// reads them: NotedDeviations, those of the last one made.
std::unique_ptr<ipodcomm::virtual_platform::Schedule> Noted(
    std::unique_ptr<ipodcomm::virtual_platform::Schedule> schedule);
Deviations NotedDeviations();

/// Leaves out what can be left out while `fails` says that it still fails, halves first and single
/// ones at last.
Deviations Shortest(Deviations deviations, const std::function<bool(const Deviations&)>& fails);

}  // namespace reliability
