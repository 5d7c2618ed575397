// SPDX-License-Identifier: MIT
// The commands about the iPod as a whole: ports, info, tour, selftest; and --legacy.
#include "command_line/flags.h"
#include "run.h"
#include "workout/recording.h"

namespace ipodctl {

namespace {

constexpr const char* kPortsFooter =
    "Lists the serial ports that have hardware behind them, with the names of their adapters. "
    "With\n"
    "--probe each is opened and asked, for some seconds, whether an iPod answers: it is told by "
    "its\n"
    "name and model, or 'nothing answers', 'busy' (another program has the port open), 'no\n"
    "permission'. 'ipodctl --port auto' takes the only port, or the only one on which an iPod "
    "answers.\n"
    "\n"
    "Examples:\n"
    "  ipodctl ports\n"
    "  ipodctl ports --probe --json\n"
    "  ipodctl --port auto info";

constexpr const char* kInfoFooter =
    "Examples:\n"
    "  ipodctl info\n"
    "  ipodctl --simulated=classic info --json";

constexpr const char* kTourFooter =
    "Runs on a simulated iPod unless --port names a dock. With the simulated one it ends by "
    "telling\n"
    "how many protocol mistakes the iPod saw, and fails if there was any.\n"
    "\n"
    "Examples:\n"
    "  ipodctl tour\n"
    "  ipodctl --port /dev/ttyUSB0 tour";

constexpr const char* kSelfTestFooter =
    "Runs the self-test of a console's service screen, through the legacy interface: connection,\n"
    "information, two tracks of the first album, play, pause and stop. It plays music for some\n"
    "seconds. Each step's title and its last action are shown when the step is done; of a step\n"
    "that failed it is the action that did. The exit status is 0 when every step passed, and 4\n"
    "when it did but the iPod is too old for anything but the legacy interface.\n"
    "\n"
    "Examples:\n"
    "  ipodctl selftest\n"
    "  ipodctl --simulated selftest --json";

[[noreturn]] void Refuse(const char* option, const char* instead) {
  throw UsageProblem{std::string(option) + " does not go with the legacy interface: " + instead};
}

// The legacy document is in kilometres, whatever the equipment.
void CheckWorkout(const Options& options) {
  if (EquipmentByName(options.workout.equipment)->distance_type == IPOD_DISTANCE_TYPE_KM) return;
  throw UsageProblem{"the legacy interface writes kilometres, and a " + options.workout.equipment +
                     " counts floors"};
}

void CheckLegacy(CommandLineParser& parser) {
  const Options& options = parser.options();
  if (!options.legacy) return;
  if (!IsLegacyCommand(options.command)) {
    throw UsageProblem{"the legacy interface has no '" + options.command + "', only " +
                       LegacyCommandNames()};
  }
  if (!options.conduct.empty() && options.command == "selftest") {
    throw UsageProblem{"--conduct does not go with the self-test: that is the library's own"};
  }
  if (!options.idps) Refuse("--no-idps", "it never identifies by tokens");
  // The document of a workout names a model, whichever interface writes it.
  if (!options.model.empty() && options.command != "workout") {
    Refuse("--model", "it introduces itself by a name of its own");
  }
  if (options.keep) Refuse("--keep", "its preferences hold until the iPod is undocked");
  if (options.follow) Refuse("--follow", "it is not told of changes; run 'now' again");
  if (options.command == "workout") CheckWorkout(options);
}

}  // namespace

void AddPortsCommand(CommandLineParser& parser) {
  CLI::App* ports = parser.AddCommand("ports", "Looking", "The serial ports, and where an iPod is",
                                      "[--probe]", kPortsFooter);
  ports->add_flag("--probe", parser.options().probe, "Ask on each port whether an iPod answers");
  parser.AddCheck([&parser, ports] {
    if (!ports->parsed() || !parser.options().simulation) return;
    throw UsageProblem{
        "a simulated iPod is on no serial port of this system; leave out "
        "--simulated"};
  });
}

void AddInfoCommand(CommandLineParser& parser) {
  parser.AddCommand("info", "Looking", "What is in the dock", "", kInfoFooter);
}

void AddTourCommand(CommandLineParser& parser) {
  parser.AddCommand("tour", "Looking", "A guided tour, on a simulated iPod unless --port is given",
                    "", kTourFooter);
}

void AddLegacyInterface(CommandLineParser& parser) {
  Options& options = parser.options();
  parser.app().add_flag("--legacy", options.legacy, "Use the legacy interface (see below)");
  const CLI::App* selftest = parser.AddCommand(
      "selftest", "Looking", "Test what is in the dock, step by step", "", kSelfTestFooter);
  parser.AddCheck([&parser, selftest] {
    if (selftest->parsed()) parser.options().legacy = true;
    CheckLegacy(parser);
  });
}

}  // namespace ipodctl
