// SPDX-License-Identifier: MIT
// Performs the regression test step by step.
#include "selftest.h"

#include <nlohmann/json.hpp>
#include <optional>

#include "console/failure.h"
#include "console/interrupt.h"
#include "console/progress.h"
#include "console/text.h"
#include "console/verbose_log.h"
#include "ipod/ctrl_c.h"
#include "ipod/display_text.h"
#include "ipod/identify_evidence.h"
#include "ipod/legacy_exchange.h"
#include "ipod/legacy_session.h"
#include "playing/player.h"

namespace ipodctl {

namespace {

constexpr int kConnectionStep = 0;
constexpr int kInformationStep = 1;
constexpr int kPlayerStep = 3;

struct Step {
  int number = 0;
  std::string title;
  std::string detail;  // the action done last; of a failed step the one that failed
  bool passed = false;
  bool last = false;
};

// What the step of that number shows when all its answers were whole.
std::optional<std::string> ToldInformation(ipod& docked) {
  constexpr std::size_t kModelBytes = 4;
  constexpr std::size_t kMostCharacters = 255;
  const LegacyAnswer name = AskLegacyShort(docked, NameQuestion());
  const LegacyAnswer model = AskLegacyShort(docked, ModelQuestion());
  const LegacyAnswer serial = AskLegacyShort(docked, SerialNumberQuestion());
  const LegacyAnswer software = AskLegacyShort(docked, SoftwareVersionQuestion());
  for (const LegacyAnswer* answer : {&name, &model, &serial, &software}) {
    if (!answer->answered()) return std::nullopt;
  }
  const std::string text = "Ipod Information " + TextIn(name) + " " + TextIn(model, kModelBytes) +
                           " " + ShownModelNumber(model.data) + " " + TextIn(serial) + " " +
                           Dotted(software.data, ".");
  return Utf8(Wide(text).substr(0, kMostCharacters).c_str());
}

class SelfTest {
 public:
  explicit SelfTest(const Context& context) : dock_(context.dock), output_(context.output) {
    ipod_.SetKeepGoing(CtrlC::MayGoOn, &ctrl_c_);
  }
  ~SelfTest() { ipod_.closeport(); }
  SelfTest(const SelfTest&) = delete;
  SelfTest& operator=(const SelfTest&) = delete;

  void Run();

 private:
  Step Perform(int number);
  void Verify(Step* step);
  void VerifyInformation(Step* step);
  void VerifyPlayer(Step* step);
  void Show(const Step& step);
  void ExplainFailure(const Step& step);
  void RequireRecentVersion() const;
  std::optional<tagIPOD_VERSION> GeneralVersion();

  const DockLine& dock_;
  Output& output_;
  ipod ipod_;
  CtrlC ctrl_c_;
  int failures_ = 0;
  std::optional<tagIPOD_VERSION> general_;
  std::string first_failure_;
};

void SelfTest::Run() {
  DisplayText detail;
  if (ipod_.startregressiontest(detail.buffer()) == 0) dock_.FailToOpen();
  output_.Line(detail.text());
  int number = 0;
  for (bool more = true; more; ++number) {
    StopIfInterrupted();
    Step step = Perform(number);
    if (step.passed) Verify(&step);
    // One that was cut off in the middle has not failed.
    StopIfInterrupted();
    Show(step);
    if (!step.passed) ExplainFailure(step);
    // The test's last step closes the port.
    if (number == kInformationStep && step.passed) general_ = GeneralVersion();
    more = !step.last;
  }
  output_.Object({{"steps", number}, {"failures", failures_}});
  if (failures_ == 0) {
    output_.Line("All " + std::to_string(number) + " steps passed");
    RequireRecentVersion();
    return;
  }
  throw CommandFailure(kFailed, "the self-test failed in " + std::to_string(failures_) + " of " +
                                    std::to_string(number) + " steps, first at '" + first_failure_ +
                                    "'");
}

Step SelfTest::Perform(int number) {
  StatusLine status;
  const LiveText detail([&status, number](const std::string& action) {
    status.Show("Step " + std::to_string(number) + ": " + Printable(action) + " ...");
  });
  DisplayText title;
  int passed = 0;
  const bool more = ipod_.nextregressiontest(title.buffer(), &passed, detail.buffer()) != 0;
  return {number, title.text(), detail.text(), passed != 0, !more};
}

void SelfTest::Verify(Step* step) {
  if (step->number == kInformationStep) VerifyInformation(step);
  if (step->number == kPlayerStep) VerifyPlayer(step);
}

// The step believes the first answer to each of its questions, also one that was cut short.
void SelfTest::VerifyInformation(Step* step) {
  const std::optional<std::string> told = ToldInformation(ipod_);
  if (told && step->title == *told) return;
  step->passed = false;
  step->detail = told ? "Asked again, it told: " + *told : "Asked again, it did not tell them all";
}

// The step sends its last command and takes any state that is told then.
void SelfTest::VerifyPlayer(Step* step) {
  bool told = true;
  const auto look = [this, &told] {
    NowPlaying now;
    const LegacyAnswer status = AskLegacy(ipod_, StatusQuestion());
    told = status.answered();
    if (told) now.state = StateIn(status);
    return now;
  };
  const NowPlaying now =
      AwaitLook(look, [&told](const NowPlaying& seen) { return !told || seen.state == kStopped; });
  if (told && now.state == kStopped) return;
  step->passed = false;
  step->detail = told ? "Set to stop, it is " + StateName(now.state)
                      : "Set to stop, it did not tell its state";
}

void SelfTest::Show(const Step& step) {
  output_.Object({{"step", step.title},
                  {"number", step.number},
                  {"detail", step.detail},
                  {"passed", step.passed}});
  output_.Line(std::string(step.passed ? "pass" : "FAIL") + "  " +
               output_.Bold(Printable(step.title)));
  if (!step.detail.empty()) output_.Line("      " + output_.Dim(Printable(step.detail)));
}

// Without an iPod the later steps need not be run.
void SelfTest::ExplainFailure(const Step& step) {
  ++failures_;
  if (first_failure_.empty()) first_failure_ = step.detail.empty() ? step.title : step.detail;
  StopIfInterrupted();
  if (step.last || Answers(ipod_)) return;
  if (step.number == kConnectionStep) {
    FailToFindIpod(ipod_, dock_, "no answer to its connection test");
  }
  if (!SendsFrames(ipod_)) dock_.FailToReachIpod();
}

// What this interface can still drive may be too old for the other one.
void SelfTest::RequireRecentVersion() const {
  const std::string too_old = WhatIsTooOld([this](unsigned char lingo) {
    return lingo == ipod::IPOD_LINGO_GENERAL ? general_ : std::nullopt;
  });
  if (too_old.empty()) return;
  throw CommandFailure(kIpodTooOld,
                       "the self-test passed, but beyond the legacy interface this iPod is too old "
                       "to be controlled (" +
                           too_old + "); update its software or dock a newer one",
                       "E306");
}

// The interface asks for that of General alone. None when the iPod does not tell it.
std::optional<tagIPOD_VERSION> SelfTest::GeneralVersion() {
  constexpr std::size_t kVersionBytes = 3;  // the lingo, then its version
  // What is asked next goes out under the lingo of the command before.
  AskLegacyShort(ipod_, NameQuestion());
  const LegacyAnswer answer = AskLegacyShort(
      ipod_, {[](ipod& docked) { return docked.command_requestlingoprotocolversion(0); },
              ipod::IPOD_COMMAND_REQUESTLINGOPROTOCOLVERSION,
              ipod::IPOD_COMMAND_RETURNLINGOPROTOCOLVERSION,
              kVersionBytes,
              false,
              {ipod::IPOD_LINGO_GENERAL}});
  if (!answer.answered()) return std::nullopt;
  return tagIPOD_VERSION{answer.data[1], answer.data[2]};
}

}  // namespace

void RunSelfTest(const Context& context) {
  Note("testing through the legacy interface");
  SelfTest(context).Run();
}

}  // namespace ipodctl
