// SPDX-License-Identifier: MIT
// Examples and explanations at the end of each command's help.
#pragma once

namespace ipodctl {

constexpr const char* kProgramFooter =
    "Examples:\n"
    "  ipodctl tour                                  see it all on a simulated iPod\n"
    "  ipodctl --port /dev/ttyUSB0 info              what is in the dock\n"
    "  ipodctl --port /dev/ttyUSB0 browse artists    whose music is on it\n"
    "  ipodctl --simulated browse genres --json      no hardware, for a script\n"
    "\n"
    "The dock:\n"
    "  --port names it; else the environment variable IPODCOMM_COM2 does, else it is /dev/ttyS1.\n"
    "  --simulated puts a simulated iPod into this program, on a real pseudo-terminal. It is one "
    "of\n"
    "  nano (all services), classic (no token identification), old (too old), nosports, silent.\n"
    "\n"
    "Exit status:\n"
    "  0  done\n"
    "  1  the iPod refused, or the operation failed\n"
    "  2  the port cannot be opened\n"
    "  3  nothing is docked, or the iPod did not accept the accessory\n"
    "  4  the iPod is too old\n"
    "  64  wrong arguments        66  a file is missing or malformed\n"
    "  130  interrupted before the command was done\n"
    "\n"
    "Data goes to standard output, everything else to standard error.\n"
    "'ipodctl COMMAND --help' explains a command and shows examples.";

constexpr const char* kInfoFooter =
    "Examples:\n"
    "  ipodctl info\n"
    "  ipodctl --simulated=classic info --json";

constexpr const char* kBrowseFooter =
    "Each record's own list follows it: genres hold artists, artists and composers hold albums,\n"
    "and everything else holds tracks. Without a category, every category is counted.\n"
    "A NAME may be in any case, or a part that only one record has; @N is the record numbered N.\n"
    "\n"
    "Examples:\n"
    "  ipodctl browse\n"
    "  ipodctl browse artists --from 20 --count 10\n"
    "  ipodctl browse artists \"Some Artist\" \"Some Album\"       the album's tracks\n"
    "  ipodctl browse artists \"Some Artist\" --category tracks  all of the artist's tracks\n"
    "  ipodctl browse genres @0 --hierarchy video --json";

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

constexpr const char* kNowFooter =
    "--follow shows changes as the iPod tells of them, until Ctrl-C. With --json each is an "
    "object\n"
    "on a line of its own: first \"event\":\"start\" with the state as it is, then \"track\", "
    "\"state\"\n"
    "and \"position\".\n"
    "\n"
    "Examples:\n"
    "  ipodctl now\n"
    "  ipodctl now --follow\n"
    "  ipodctl now --for 10 --json";

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

constexpr const char* kPrefsFooter =
    "A preference that is set holds until the iPod is taken out of the dock.\n"
    "\n"
    "Examples:\n"
    "  ipodctl prefs                     all of them\n"
    "  ipodctl prefs get line-out\n"
    "  ipodctl prefs set aspect 16:9";

constexpr const char* kTourFooter =
    "Runs on a simulated iPod unless --port names a dock. With the simulated one it ends by "
    "telling\n"
    "how many protocol mistakes the iPod saw, and fails if there was any.\n"
    "\n"
    "Examples:\n"
    "  ipodctl tour\n"
    "  ipodctl --port /dev/ttyUSB0 tour";

}  // namespace ipodctl
