// SPDX-License-Identifier: MIT
// ipodctl: drives a docked iPod from the command line.
#include <cstdio>
#include <cstdlib>
#include <initializer_list>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "command_line/command_line.h"
#include "console/failure.h"
#include "console/interrupt.h"
#include "console/system.h"
#include "console/text.h"
#include "console/verbose_log.h"
#include "diagnose.h"
#include "ipod/ports.h"
#include "ipod/simulated_ipod.h"
#include "report/report.h"
#include "run.h"
#include "screen/console.h"
#include "wire/decode_command.h"
#include "wire/explain_command.h"
#include "wire/extcap_follower.h"
#include "wire/extcap_interfaces.h"
#include "wire/extcap_session.h"
#include "wire/failure_finding.h"
#include "wire/line_watch.h"

namespace ipodctl {

namespace {

int Fail(const CommandFailure& failure) {
  std::fprintf(stderr, "ipodctl: %s.\n", failure.what());
  return failure.status();
}

std::string SentenceAbout(const std::string& mistake) {
  return "the simulated iPod saw a protocol mistake: " + mistake;
}

// Takes the simulated iPod out of the dock and reports the protocol mistakes that it saw.
std::vector<std::string> ReportMistakes(const Context& context) {
  const std::vector<std::string> mistakes = context.dock.Undock();
  for (const std::string& mistake : mistakes) {
    std::fprintf(stderr, "ipodctl: %s.\n", SentenceAbout(mistake).c_str());
  }
  if (context.options.command == "tour" && context.dock.simulated()) {
    context.output.Line("");
    context.output.Line("Protocol mistakes seen by the simulated iPod: " +
                        std::to_string(mistakes.size()));
    context.output.BeginStep("undock");
    context.output.Object({{"protocol_mistakes", mistakes.size()}});
  }
  return mistakes;
}

// Who watches a session knows that it has been ended.
int Fail(const CommandFailure& failure, const Options& options) {
  const bool as_asked = options.watched && failure.status() == kInterrupted;
  return as_asked ? static_cast<int>(kSuccess) : Fail(failure);
}

// Tells a failure to people, and with the finding that explains it to machines.
int FailOnDock(const CommandFailure& failure, const Context& context) {
  const int status = Fail(failure, context.options);
  const std::string finding = ExplainFailure(failure, context.options);
  if (status != kSuccess) {
    context.output.Object(ToJson(CommandFailure(failure.status(), failure.what(), finding)));
  }
  return status;
}

int RunOnDock(const Options& options, Output& output) {
  WatchLine(options.verbose);
  DockLine dock(options);
  const Context context{options, dock, output};
  int status = kSuccess;
  try {
    options.command == "console" ? RunConsole(context) : RunCommand(context);
  } catch (const CommandFailure& failure) {
    status = FailOnDock(failure, context);
  }
  const std::vector<std::string> mistakes = ReportMistakes(context);
  if (status != kSuccess || mistakes.empty()) return status;
  output.Object(ToJson(CommandFailure(kFailed, SentenceAbout(mistakes.front()))));
  return kFailed;
}

void BeginCapture(const std::string& file, std::FILE* output) {
  if (file.empty()) return;
  const std::string reason = CaptureLine(file, output);
  if (!reason.empty())
    throw CommandFailure(kCannotCreate, "cannot record to " + file + ": " + reason);
}

// Whether the command opens the dock.
bool OpensDock(const Options& options) {
  for (const char* other : {"report", "decode", "monitor", "explain", "ports"}) {
    if (options.command == other) return false;
  }
  return true;
}

// The standard output that the library's variable names is kept from the library, whose own prints
// must not stand among what the command says.
std::string CaptureAskedFor(const Options& options) {
  const bool records = OpensDock(options) && options.command != "diagnose";
  if (!options.capture.empty() || !records) return options.capture;
  return Environment("IPODCOMM_CAPTURE") == "-" ? "-" : "";
}

// With the port found that was left to be found.
Options Completed(const Options& options) {
  Options completed = options;
  const bool is_sought = options.port == kAnyPort && !options.simulation && OpensDock(options);
  if (is_sought) completed.port = FindPort(options);
  return completed;
}

int RunPortList(const Options& options, Output& output) {
  RunPorts(options, output);
  return kSuccess;
}

int RunAny(const Options& options, Output& output) {
  if (options.command == "ports") return RunPortList(options, output);
  if (options.command == "report") return RunReport(options, output);
  if (options.command == "decode" || options.command == "monitor")
    return RunDecode(options, output);
  if (options.command == "explain") return RunExplain(options, output);
  if (options.command == "diagnose") return RunDiagnose(options, output);
  return RunOnDock(options, output);
}

// A terminal that was closed and a reader who left have interrupted the program.
[[noreturn]] void FailToWrite() {
  if (Interrupted()) throw CommandFailure(kInterrupted, "nobody reads the output any more");
  throw CommandFailure(kFailed, "cannot write the output; perhaps the disk is full");
}

int Run(const Options& options) {
  SetVerbose(options.verbose);
  if (options.verbose) {
    SetEnvironment("IPODCOMM_DEBUG", "1");
    // Identification looks for the host's version again for each thing that it tells.
    SayOnce("Failed to extract file version from ");
  } else {
    // The sentence with which a command fails says what a logged error would.
    SetEnvironment("IPODCOMM_TRACE", "off");
  }
  const StdoutGuard guard(options.verbose ? StdoutGuard::Others::kToStandardError
                                          : StdoutGuard::Others::kDropped);
  const std::string capture = CaptureAskedFor(options);
  Output output(capture == "-" ? stderr : guard.stream(), options.json);
  CatchInterrupts();
  if (options.timeout_s) InterruptAfter(*options.timeout_s);
  try {
    const Options completed = Completed(options);
    BeginCapture(capture, guard.stream());
    const int status = RunAny(completed, output);
    if (status == kSuccess && !output.Good()) FailToWrite();
    return status;
  } catch (const CommandFailure& failure) {
    const int status = Fail(failure, options);
    if (status != kSuccess) output.Object(ToJson(failure));
    return status;
  }
}

int Run(const CommandLine& line) {
  if (line.options) return Run(*line.options);
  if (line.status == kSuccess) {
    std::fputs(line.text.c_str(), stdout);
    return kSuccess;
  }
  const CommandFailure failure(kUsage, line.text);
  const int status = Fail(failure);
  Output(line.captures ? stderr : stdout, line.json).Object(ToJson(failure));
  return status;
}

// Wireshark shows what comes on standard error, and reads nothing else than the recording.
int RunForWireshark(const ExtcapCapture& capture) {
  CatchInterrupts();
  DropStandardOutput();
  if (!capture.recording.empty()) {
    FollowForWireshark(capture.recording, capture.pipe);
    return kSuccess;
  }
  CommandLine line = ParseCommandLine(capture.session);
  if (line.options) line.options->watched = true;
  RecordForWireshark(capture.pipe);
  return Run(line);
}

int AnswerWireshark(const ExtcapArguments& arguments) {
  Options watched;
  watched.watched = true;
  try {
    const ExtcapSurroundings here = {IPODCTL_VERSION, PortDevice(), NamesForSimulation().profiles};
    std::fputs(AnswerExtcap(arguments, here).c_str(), stdout);
    if (!arguments.Has("capture")) return kSuccess;
    return RunForWireshark(CaptureForExtcap(arguments, here));
  } catch (const CommandFailure& failure) {
    return Fail(failure, watched);
  }
}

}  // namespace

}  // namespace ipodctl

int main(int argc, char** argv) {
  ipodctl::PrepareConsole();
  const std::vector<std::string> arguments = ipodctl::Utf8Arguments(argc, argv);
  const ipodctl::ExtcapArguments extcap(arguments);
  if (extcap.any()) return ipodctl::AnswerWireshark(extcap);
  return ipodctl::Run(ipodctl::ParseCommandLine(arguments));
}
