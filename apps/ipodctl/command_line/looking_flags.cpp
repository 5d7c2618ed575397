// SPDX-License-Identifier: MIT
// The commands that look: info, tour, browse, now.
#include "command_line/flags.h"
#include "command_line/path_flags.h"

namespace ipodctl {

namespace {

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

void AddBrowse(CommandLineParser& parser) {
  Options& options = parser.options();
  CLI::App* browse = parser.AddCommand("browse", "Looking", "List the media on the iPod",
                                       "[CATEGORY [NAME...]] [OPTIONS]", kBrowseFooter);
  browse->add_option("--from", options.from, "First record to list, counted from 0")
      ->check(CLI::NonNegativeNumber)
      ->option_text("N");
  browse->add_option("--count", options.count, "How many records to list")
      ->check(CLI::NonNegativeNumber)
      ->option_text("N");
  AddPathOptions(parser, browse);
  browse->add_option("--category", options.category, "List this category inside the last NAME")
      ->option_text("CATEGORY");
}

void AddNow(CommandLineParser& parser) {
  Options& options = parser.options();
  CLI::App* now = parser.AddCommand("now", "Looking", "What is playing",
                                    "[--follow | --for SECONDS]", kNowFooter);
  now->add_flag("-f,--follow", options.follow, "Keep showing it until Ctrl-C");
  now->add_option("--for", options.follow_seconds, "Keep showing it for so long")
      ->check(CLI::Range(0U, 86400U))
      ->option_text("SECONDS");
  parser.AddCheck([&options] {
    if (options.follow_seconds) options.follow = true;
  });
}

}  // namespace

void AddLookingCommands(CommandLineParser& parser) {
  parser.AddCommand("info", "Looking", "What is in the dock", "", kInfoFooter);
  parser.AddCommand("tour", "Looking", "A guided tour, on a simulated iPod unless --port is given",
                    "", kTourFooter);
  AddBrowse(parser);
  AddNow(parser);
}

}  // namespace ipodctl
