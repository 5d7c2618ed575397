// SPDX-License-Identifier: MIT
// The commands that play: play, pause, stop, next, previous, seek.
#include "command_line/flags.h"
#include "command_line/path_flags.h"

namespace ipodctl {

namespace {

constexpr double kLongestSeekSeconds = 600;

constexpr const char* kPlayFooter =
    "Without arguments, goes on with what was playing. A walk that ends before a track plays the\n"
    "list it leads to from its first track. A NAME may be in any case, or a part that only one\n"
    "record has; @N is the record numbered N, counted from 0 as 'browse' shows it.\n"
    "\n"
    "Examples:\n"
    "  ipodctl play\n"
    "  ipodctl play playlists \"Morning Run\"\n"
    "  ipodctl play artists \"Some Artist\" \"Some Album\" @3\n"
    "  ipodctl play tracks @17";

constexpr const char* kSeekFooter =
    "Winds for SECONDS of real time (2 unless told otherwise), then plays on.\n"
    "\n"
    "Examples:\n"
    "  ipodctl seek forward\n"
    "  ipodctl seek back 0.5";

void AddSeek(CommandLineParser& parser) {
  Options& options = parser.options();
  CLI::App* seek = parser.AddCommand("seek", "Playing", "Wind forward or back",
                                     "forward|back [SECONDS]", kSeekFooter);
  parser.AddWords("seek", {"forward", "back"});
  seek->add_option_function<std::string>(
          "DIRECTION", [&options](const std::string& name) { options.forward = name == "forward"; })
      ->check(CLI::IsMember({"forward", "back"}))
      ->required();
  seek->add_option("SECONDS", options.seek_seconds)->check(CLI::Range(0.1, kLongestSeekSeconds));
}

}  // namespace

void AddPlayingCommands(CommandLineParser& parser) {
  CLI::App* play = parser.AddCommand("play", "Playing", "Play something, or go on playing",
                                     "[CATEGORY [NAME...]] [OPTIONS]", kPlayFooter);
  AddPathOptions(parser, play);
  parser.AddCommand("pause", "Playing", "Pause", "", "Examples:\n  ipodctl pause");
  parser.AddCommand("stop", "Playing", "Stop", "", "Examples:\n  ipodctl stop");
  parser.AddCommand("next", "Playing", "Skip to the next track", "",
                    "Examples:\n  ipodctl next --json");
  parser.AddCommand("previous", "Playing", "Skip to the previous track, or this one's start", "",
                    "Examples:\n  ipodctl previous");
  AddSeek(parser);
}

}  // namespace ipodctl
