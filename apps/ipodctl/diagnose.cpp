// SPDX-License-Identifier: MIT
// Identifies, tells each step, and tries what might help.
#include "diagnose.h"

#include <cstdio>
#include <nlohmann/json.hpp>
#include <optional>

#include "console/failure.h"
#include "console/interrupt.h"
#include "console/system.h"
#include "console/text.h"
#include "ipod/dock_line.h"
#include "ipod/refusal.h"
#include "ipod/session.h"
#include "wire/failure_finding.h"
#include "wire/findings_view.h"
#include "wire/line_watch.h"
#include "wire/table.h"

namespace ipodctl {

namespace {

constexpr unsigned kWaitMs = 5000;

struct Outcome {
  ExitStatus status = kSuccess;
  std::string sentence;
  std::string finding;  // its code, where it is known without the recording
  tagIPOD_IDENTIFY_REPORT steps = {};
};

bool AnythingCame(const Outcome& outcome) {
  for (std::uint32_t i = 0; i < outcome.steps.steps; ++i) {
    if (outcome.steps.step[i].result != IPOD_EXCHANGE_UNANSWERED) return true;
  }
  return false;
}

void ListenAt(std::uint32_t baud, LineSpeed* speed) {
  if (baud == 0 || speed->Set(baud)) return;
  throw CommandFailure(
      kFailed, "this line cannot be heard at " + std::to_string(baud) + " baud; leave out --baud");
}

// Identifies, and looks whether the iPod may be controlled.
Outcome Attempt(const Options& options, const DockLine& dock) {
  Outcome outcome;
  std::optional<LineSpeed> speed;
  if (options.line_baud != 0) speed.emplace(dock.device());
  std::optional<Session> session;
  try {
    session.emplace(options, dock);
    if (speed) ListenAt(options.line_baud, &*speed);
    session->Identify();
    session->EnterRemoteUi();
    outcome.sentence = "the iPod accepted the accessory by " + session->IdentifiedBy();
  } catch (const CommandFailure& failure) {
    if (failure.status() == kInterrupted) throw;
    outcome.status = failure.status();
    outcome.sentence = failure.what();
    outcome.finding = failure.finding();
  }
  if (session) session->ipod().GetIdentifyReport(&outcome.steps);
  return outcome;
}

// ---- What is shown ------------------------------------------------------------------------------

std::string NameOf(const tagIPOD_EXCHANGE& step) {
  constexpr std::uint16_t kAsksForAVersion = 0x0F;
  constexpr std::uint16_t kAsksForOptions = 0x4B;
  const std::string name =
      ipodwire::CommandName(step.lingo, step.command, ipodwire::Sender::kAccessory);
  const bool is_about_a_lingo =
      step.lingo == 0 && (step.command == kAsksForAVersion || step.command == kAsksForOptions);
  return is_about_a_lingo ? name + " " + ipodwire::LingoName(step.argument) : name;
}

// In words, for people.
const char* TextFor(tagIPOD_EXCHANGE_RESULT result) {
  switch (result) {
    case IPOD_EXCHANGE_ANSWERED:
      return "answered";
    case IPOD_EXCHANGE_REFUSED:
      return "refused";
    case IPOD_EXCHANGE_DAMAGED:
      return "damaged answer";
    case IPOD_EXCHANGE_ECHOED:
      return "came back as it was sent";
    default:
      return "no answer";
  }
}

// In one word, for machines.
const char* WordFor(tagIPOD_EXCHANGE_RESULT result) {
  switch (result) {
    case IPOD_EXCHANGE_ANSWERED:
      return "answered";
    case IPOD_EXCHANGE_REFUSED:
      return "refused";
    case IPOD_EXCHANGE_DAMAGED:
      return "damaged";
    case IPOD_EXCHANGE_ECHOED:
      return "echoed";
    default:
      return "unanswered";
  }
}

nlohmann::ordered_json ToJson(const tagIPOD_EXCHANGE& step) {
  nlohmann::ordered_json json = {{"step", NameOf(step)}, {"result", WordFor(step.result)}};
  if (step.result == IPOD_EXCHANGE_REFUSED) json["ack"] = step.status;
  json["attempts"] = step.attempts;
  json["took_ms"] = step.took_ms;
  return json;
}

void ShowStep(const tagIPOD_EXCHANGE& step, Output& output) {
  std::string result = TextFor(step.result);
  if (step.result == IPOD_EXCHANGE_REFUSED) result += " (" + StatusText(step.status) + ")";
  if (step.attempts > 1) result += ", asked " + std::to_string(step.attempts) + " times";
  if (step.took_ms > 0) result += ", " + std::to_string(step.took_ms) + " ms";
  output.Line("  " + Padded(NameOf(step), 46) + result);
  output.Object(ToJson(step));
}

void ShowAttempt(const Outcome& outcome, const char* what, Output& output) {
  for (std::uint32_t i = 0; i < outcome.steps.steps; ++i) ShowStep(outcome.steps.step[i], output);
  output.Line("Outcome: " + outcome.sentence + ".");
  output.Object({{"attempt", what},
                 {"outcome", outcome.sentence},
                 {"status", static_cast<int>(outcome.status)}});
}

// ---- What might help ----------------------------------------------------------------------------

struct Remedy {
  const char* what;
  const char* advice;  // when it helped
  bool needs_answers;  // of no use where nothing comes at all
  unsigned wait_ms;
  void (*change)(Options& options);
};

constexpr Remedy kRemedies[] = {
    {"again, after five seconds",
     "The iPod needs time: wait some seconds after docking it, or try a failed command again.",
     false, kWaitMs, [](Options& /*options*/) {}},
    {"without tokens", "Leave the tokens out: give every command --no-idps.", true, 0,
     [](Options& options) { options.idps = false; }},
};

void TryRemedies(const Options& options, const DockLine& dock, const Outcome& first,
                 Output& output) {
  for (const Remedy& remedy : kRemedies) {
    Options changed = options;
    remedy.change(changed);
    if (remedy.needs_answers && (!AnythingCame(first) || !options.idps)) continue;
    output.Line("");
    output.Line(std::string("Identifying ") + remedy.what + " ...");
    if (!PauseMs(remedy.wait_ms)) StopIfInterrupted();
    const Outcome outcome = Attempt(changed, dock);
    ShowAttempt(outcome, remedy.what, output);
    if (outcome.status != kSuccess) continue;
    output.Line(remedy.advice);
    output.Object({{"advice", remedy.advice}});
    return;
  }
}

// What the evidence suggests that only this command can do.
void OfferRate(const std::vector<ipodwire::Finding>& findings, const Options& options,
               Output& output) {
  for (const ipodwire::Finding& finding : findings) {
    if (finding.rate == 0) continue;
    const std::string command =
        "ipodctl" + IpodArguments(options) + " diagnose --baud " + std::to_string(finding.rate);
    output.Line("");
    output.Line("Try it at that rate: " + command);
    output.Line("The library itself always opens the line at 57600 baud, so set the dock to that.");
    output.Object({{"try", command}});
  }
}

// Shows what explains the outcome. @return its finding's code, where there is one
std::string Explain(const Outcome& outcome, const Options& options, Output& output) {
  if (outcome.status == kPortUnavailable) {
    if (!outcome.finding.empty()) ShowPage(*ipodwire::FindFindingPage(outcome.finding), output);
    return outcome.finding;
  }
  const auto findings = FindingsOfWatchedLine();
  if (!findings) {
    output.Line("The line could not be recorded, so there is no more to tell.");
    return outcome.finding;
  }
  ShowFindings(*findings, output);
  OfferRate(*findings, options, output);
  return findings->empty() ? outcome.finding : findings->front().code;
}

}  // namespace

int RunDiagnose(const Options& options, Output& output) {
  WatchLine(options.verbose, options.line_baud);
  DockLine dock(options);
  output.Line("Identifying to what is docked on " + dock.device() + " ...");
  const Outcome outcome = Attempt(options, dock);
  ShowAttempt(outcome, "first", output);
  if (outcome.status == kNothingDocked) TryRemedies(options, dock, outcome, output);
  output.Line("");
  const std::string finding = Explain(outcome, options, output);
  if (outcome.status == kSuccess) return kSuccess;
  output.Object(ToJson(CommandFailure(outcome.status, outcome.sentence, finding)));
  return outcome.status;
}

}  // namespace ipodctl
