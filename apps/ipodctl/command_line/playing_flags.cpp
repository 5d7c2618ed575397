// SPDX-License-Identifier: MIT
// The player's commands: now; play, pause, stop, next, previous, seek; shuffle, repeat.
#include "command_line/flags.h"
#include "usage/numbers.h"

namespace ipodctl {

namespace {

constexpr double kLongestSeekSeconds = 600;

constexpr const char* kNowFooter =
    "--follow shows changes as the iPod tells of them, until Ctrl-C; when the iPod is taken out "
    "of\n"
    "the dock it waits and goes on once it is back. --once ends then, with 1, and so does --for.\n"
    "With --json each is an object\n"
    "on a line of its own: first \"event\":\"start\" with the state as it is, then \"track\", "
    "\"state\"\n"
    "and \"position\".\n"
    "\n"
    "Examples:\n"
    "  ipodctl now\n"
    "  ipodctl now --follow\n"
    "  ipodctl now --for 10 --json";

constexpr const char* kPlayFooter =
    "Without arguments, goes on with what was playing. A walk that ends before a track plays the\n"
    "list it leads to from its first track. A NAME may be in any case, or a part that only one\n"
    "record has; @N is the record numbered N, counted from 0 as 'browse' shows it. The exit status "
    "is\n"
    "0 once the iPod plays that track, by its title and its place, and 1 when it plays another or\n"
    "none.\n"
    "\n"
    "Examples:\n"
    "  ipodctl play\n"
    "  ipodctl play playlists \"Morning Run\"\n"
    "  ipodctl play artists \"Some Artist\" \"Some Album\" @3\n"
    "  ipodctl play tracks @17";

constexpr const char* kSeekFooter =
    "Winds for SECONDS of real time (2 unless told otherwise), then plays on. The exit status is "
    "1\n"
    "when the iPod has not wound.\n"
    "\n"
    "Examples:\n"
    "  ipodctl seek forward\n"
    "  ipodctl seek back 0.5";

constexpr const char* kShuffleFooter =
    "Examples:\n"
    "  ipodctl shuffle             what it is set to\n"
    "  ipodctl shuffle albums\n"
    "  ipodctl shuffle off --keep  also after the iPod is taken out of the dock";

constexpr const char* kRepeatFooter =
    "Examples:\n"
    "  ipodctl repeat             what it is set to\n"
    "  ipodctl repeat one\n"
    "  ipodctl repeat off --keep  also after the iPod is taken out of the dock";

void AddSeek(CommandLineParser& parser) {
  Options& options = parser.options();
  CLI::App* seek = parser.AddCommand("seek", "Playing", "Wind forward or back",
                                     "forward|back [SECONDS]", kSeekFooter);
  const std::vector<std::string> directions = {"forward", "back"};
  CLI::Option* direction = seek->add_option_function<std::string>(
      "DIRECTION", [&options](const std::string& name) { options.forward = name == "forward"; });
  direction->check(CLI::IsMember(directions))->required();
  parser.values().Add(direction, directions);
  seek->add_option("SECONDS", options.seek_seconds)
      ->check(usage::NumberBetween(0.1, kLongestSeekSeconds));
}

void AddMode(CommandLineParser& parser, const char* name, const char* description,
             const std::vector<std::string>& modes, const char* footer) {
  Options& options = parser.options();
  CLI::App* command = parser.AddCommand(
      name, "Settings", description, "[" + CLI::detail::join(modes, "|") + "] [OPTIONS]", footer);
  CLI::Option* mode = command->add_option("MODE", options.mode)->check(CLI::IsMember(modes));
  parser.values().Add(mode, modes);
  command->add_flag("--keep", options.keep, "Let it hold after undocking");
}

}  // namespace

void AddNowCommand(CommandLineParser& parser) {
  Options& options = parser.options();
  CLI::App* now = parser.AddCommand("now", "Looking", "What is playing",
                                    "[--follow | --once | --for SECONDS]", kNowFooter);
  now->add_flag("-f,--follow", options.follow, "Keep showing it until Ctrl-C");
  now->add_option("--for", options.follow_seconds, "Keep showing it for so long")
      ->check(CLI::Range(0U, 86400U))
      ->option_text("SECONDS");
  now->add_flag("--once", options.follow_once, "Keep showing it until the iPod is taken out");
  parser.AddCheck([&options] {
    if (options.follow_seconds || options.follow_once) options.follow = true;
  });
}

void AddPlayerCommands(CommandLineParser& parser) {
  CLI::App* play = parser.AddCommand("play", "Playing", "Play something, or go on playing",
                                     "[CATEGORY [NAME...]] [OPTIONS]", kPlayFooter);
  AddPathFlags(parser, play);
  parser.AddCommand("pause", "Playing", "Pause", "", "Examples:\n  ipodctl pause");
  parser.AddCommand("stop", "Playing", "Stop", "", "Examples:\n  ipodctl stop");
  parser.AddCommand("next", "Playing", "Skip to the next track", "",
                    "Examples:\n  ipodctl next --json");
  parser.AddCommand("previous", "Playing", "Skip to the previous track, or this one's start", "",
                    "Examples:\n  ipodctl previous");
  AddSeek(parser);
}

void AddModeCommands(CommandLineParser& parser) {
  AddMode(parser, "shuffle", "Show or set shuffling", {"off", "tracks", "albums"}, kShuffleFooter);
  AddMode(parser, "repeat", "Show or set repeating", {"off", "one", "all"}, kRepeatFooter);
}

}  // namespace ipodctl
