// SPDX-License-Identifier: MIT
// console, the screen.
#include "command_line/flags.h"

namespace ipodctl {

namespace {

constexpr const char* kConsoleFooter =
    "Shows, in the whole terminal, the library to walk through, what is playing, and a workout "
    "with\n"
    "its live figures and the curve of the heart rate. It never freezes: an iPod that is slow, "
    "silent\n"
    "or pulled out is named, and the screen goes on when one is docked again.\n"
    "\n"
    "Keys: arrows, PgUp, PgDn, Home and End move, Enter opens a list or plays a track, Left goes\n"
    "back; Space plays or pauses, n and p skip, s stops; w starts a workout, e ends it; ? shows "
    "all\n"
    "keys, q ends a workout that goes on and leaves. A mouse points, opens and scrolls.\n"
    "\n"
    "The options describe the workout that w starts, as they do for 'ipodctl workout'. What is "
    "written\n"
    "to standard error meanwhile comes when the screen is left. There is no screen on Windows.\n"
    "\n"
    "Examples:\n"
    "  ipodctl console\n"
    "  ipodctl --simulated console --equipment bike --duration 30:00\n"
    "  ipodctl --simulated --storage files console --speed 60";

}  // namespace

void AddConsoleCommand(CommandLineParser& parser) {
  CLI::App* command = parser.AddCommand("console", "Looking", "The console's screen, in a terminal",
                                        "[OPTIONS]", kConsoleFooter);
  AddWorkoutOptions(parser, command);
  parser.AddCheck([&parser, command] {
    if (!command->parsed()) return;
    if (parser.options().json) {
      throw UsageProblem{
          "--json does not go with a screen; 'now' and 'workout' print for machines"};
    }
    if (parser.options().workout.recording == "-") {
      throw UsageProblem{
          "--from - reads standard input, from which the screen takes its keys; "
          "name a file"};
    }
  });
}

}  // namespace ipodctl
