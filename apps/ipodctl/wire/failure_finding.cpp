// SPDX-License-Identifier: MIT
#include "wire/failure_finding.h"

#include <algorithm>
#include <cstdio>
#include <optional>
#include <string>

#include "wire/findings_view.h"
#include "wire/line_watch.h"

namespace ipodctl {

namespace {

using ipodwire::Finding;

bool IsOfTheLine(ExitStatus status) {
  return status == kPortUnavailable || status == kNothingDocked || status == kIpodTooOld;
}

// What the command knows itself comes first: it is what ended it.
std::optional<Finding> MostImportant(const std::string& known,
                                     const std::vector<Finding>& findings) {
  if (known.empty()) return findings.empty() ? std::nullopt : std::optional(findings.front());
  const auto found = std::find_if(findings.begin(), findings.end(),
                                  [&](const Finding& finding) { return finding.code == known; });
  return found != findings.end() ? *found : Finding{known, ipodwire::Certainty::kProved, "", {}};
}

// As a shell takes it.
std::string Quoted(const std::string& word) {
  const bool plain = !word.empty() && word.find_first_not_of(
                                          "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ"
                                          "0123456789_./:,+=@%-") == std::string::npos;
  if (plain) return word;
  std::string quoted = "'";
  for (const char character : word) {
    quoted += character == '\'' ? std::string("'\\''") : std::string(1, character);
  }
  return quoted + "'";
}

std::string Simulated(const SimulationOptions& simulation) {
  const SimulationOptions defaults;
  std::string words = " --simulated";
  if (simulation.profile != defaults.profile) words += "=" + Quoted(simulation.profile);
  for (const std::string& habit : simulation.habits) words += " --habit " + Quoted(habit);
  for (const std::string& fault : simulation.faults) words += " --fault " + Quoted(fault);
  if (simulation.seed != defaults.seed) words += " --seed " + std::to_string(simulation.seed);
  if (simulation.baud != defaults.baud) words += " --baud " + std::to_string(simulation.baud);
  return words;
}

// Where the line cannot be watched, the handshake has no more to tell than the finding's page. The
// recording of a port that did not open is empty.
std::string CommandThatTellsMore(const CommandFailure& failure, const Options& options,
                                 bool watched, const std::string& code) {
  const bool recorded = !options.capture.empty() && options.capture != "-";
  if (recorded && failure.status() != kPortUnavailable)
    return "ipodctl explain " + Quoted(options.capture);
  if (!watched) return "ipodctl explain " + code;
  return "ipodctl" + IpodArguments(options) + " diagnose";
}

}  // namespace

std::string ExplainFailure(const CommandFailure& failure, const Options& options) {
  if (!IsOfTheLine(failure.status())) return failure.finding();
  const std::optional<std::vector<Finding>> watched = FindingsOfWatchedLine();
  const std::optional<Finding> finding =
      MostImportant(failure.finding(), watched.value_or(std::vector<Finding>()));
  if (!finding) return {};
  std::fprintf(stderr, "  %s.\n  What that means and what to do: %s\n",
               HeadlineOf(*finding).c_str(),
               CommandThatTellsMore(failure, options, watched.has_value(), finding->code).c_str());
  return finding->code;
}

std::string IpodArguments(const Options& options) {
  if (options.simulation) return Simulated(*options.simulation);
  return options.port.empty() ? "" : " --port " + Quoted(options.port);
}

}  // namespace ipodctl
