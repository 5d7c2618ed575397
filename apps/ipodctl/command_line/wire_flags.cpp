// SPDX-License-Identifier: MIT
// The commands that tell in words what went over the line.
#include "command_line/flags.h"

namespace ipodctl {

namespace {

constexpr const char* kDecodeFooter =
    "Tells a recording of the line, frame by frame: the packet's number, the seconds since the "
    "one\n"
    "before, > to the iPod or < from it, the lingo and the command, the transaction identifier, "
    "the\n"
    "fields, and behind ! what stands out. A * is an event of the line itself. It needs no iPod.\n"
    "Recordings are made with --capture FILE. One that is cut off or damaged is told as far as it\n"
    "goes; the exit status is then 65, and a sentence on standard error tells the place.\n"
    "\n"
    "Examples:\n"
    "  ipodctl --simulated --capture line.pcapng tour\n"
    "  ipodctl decode line.pcapng\n"
    "  ipodctl decode line.pcapng --json | jq 'select(.notes != [])'";

constexpr const char* kMonitorFooter =
    "Tells what goes over the line while it is being recorded, as 'ipodctl decode' does "
    "afterwards.\n"
    "A file that is still being written is followed until nothing is added to it for five "
    "seconds,\n"
    "a pipe until it is closed. - is standard input. In Wireshark's folder of extcap programs "
    "ipodctl\n"
    "shows sessions there.\n"
    "\n"
    "Examples:\n"
    "  ipodctl monitor --capture-from line.pcapng\n"
    "  ipodctl --capture - info | ipodctl monitor --capture-from -";

constexpr const char* kExplainFooter =
    "Says why a recorded session went as it did. Each finding has a code, what was seen of it and "
    "in\n"
    "which packets, how sure it is (proved, likely or not excluded), what it means and what to "
    "do;\n"
    "the most important one is the first. With a code it shows what the code stands for.\n"
    "\n"
    "Examples:\n"
    "  ipodctl --port /dev/ttyUSB0 --capture line.pcapng info\n"
    "  ipodctl explain line.pcapng\n"
    "  ipodctl explain E301";

constexpr const char* kDiagnoseFooter =
    "Identifies to what is docked, tells each step, and says what was found on the line "
    "meanwhile,\n"
    "as 'ipodctl explain' does of a recording. Where nothing accepts the accessory it tries again\n"
    "after some seconds, and without tokens. --capture FILE keeps the recording. The exit status "
    "is\n"
    "that of the first attempt.\n"
    "\n"
    "--baud hears the line at another rate, for a dock that is set to one. Every other command "
    "and\n"
    "the library itself always open the line at 57600 baud.\n"
    "\n"
    "Examples:\n"
    "  ipodctl --port /dev/ttyUSB0 diagnose\n"
    "  ipodctl --port /dev/ttyUSB0 diagnose --baud 19200\n"
    "  ipodctl --simulated=old diagnose --json";

}  // namespace

void AddWireCommands(CommandLineParser& parser) {
  Options& options = parser.options();
  CLI::App* decode = parser.AddCommand(
      "decode", "The line", "Tell a recording of the line in words", "FILE", kDecodeFooter);
  decode->add_option("FILE", options.recording)->required();
  CLI::App* monitor =
      parser.AddCommand("monitor", "The line", "Tell what goes over the line, as it is recorded",
                        "--capture-from FILE", kMonitorFooter);
  monitor->add_option("--capture-from", options.recording, "The recording; - is standard input")
      ->required()
      ->option_text("FILE");
  CLI::App* explain = parser.AddCommand("explain", "The line", "Say why a recorded session failed",
                                        "FILE|CODE", kExplainFooter);
  explain->add_option("WHAT", options.recording, "A recording, or a finding's code")
      ->required()
      ->option_text("FILE|CODE");
  CLI::App* diagnose = parser.AddCommand("diagnose", "The line",
                                         "Say why an iPod does not accept us", "", kDiagnoseFooter);
  diagnose->add_option("--baud", options.line_baud, "Hear the line at this rate (57600)")
      ->check(CLI::IsMember({9600, 19200, 38400, 57600, 115200}))
      ->option_text("N");
  parser.AddCheck([&options, diagnose] {
    if (!diagnose->parsed() || options.capture.empty()) return;
    if (options.capture == "-") {
      throw UsageProblem{"diagnose reads its recording again, so --capture needs a file"};
    }
    if (options.line_baud != 0) {
      throw UsageProblem{"a recording tells the library's rate, so --capture excludes --baud"};
    }
  });
  parser.AddCheck([&options, decode, monitor, explain] {
    const bool reads = decode->parsed() || monitor->parsed() || explain->parsed();
    if (reads && options.recording.empty()) {
      throw UsageProblem{"FILE needs the name of a recording"};
    }
  });
}

}  // namespace ipodctl
