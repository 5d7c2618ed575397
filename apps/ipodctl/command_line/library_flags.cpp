// SPDX-License-Identifier: MIT
// The walk into the library, which browsing and playing share; browse.
#include "command_line/flags.h"
#include "library/categories.h"
#include "library/record_number.h"
#include "usage/numbers.h"

namespace ipodctl {

namespace {

constexpr const char* kBrowseFooter =
    "Each record's own list follows it: genres hold artists, artists and composers hold albums,\n"
    "and everything else holds tracks. Without a category, every category is counted.\n"
    "A NAME may be in any case, or a part that only one record has; @N is the record numbered N.\n"
    "With --json the first line tells of the list, \"total\" and how many follow, and each record "
    "is\n"
    "an object on a line of its own, shown as it comes.\n"
    "\n"
    "Examples:\n"
    "  ipodctl browse\n"
    "  ipodctl browse artists --from 20 --count 10\n"
    "  ipodctl browse artists \"Some Artist\" \"Some Album\"       the album's tracks\n"
    "  ipodctl browse artists \"Some Artist\" --category tracks  all of the artist's tracks\n"
    "  ipodctl browse genres @0 --hierarchy video --json";

void CheckPath(const Options& options) {
  if (!options.path.empty() && !CategoryByName(options.path.front())) {
    throw UsageProblem{"'" + options.path.front() + "' is not a category (" + CategoryNames() +
                       ")"};
  }
  for (std::size_t i = 1; i < options.path.size(); ++i) {
    const std::string& step = options.path[i];
    if (NamesRecord(step)) continue;
    throw UsageProblem{"'" + step +
                       "' names no record (a name does, or @ and its number from 0 on)"};
  }
  if (!options.category.empty() && !CategoryByName(options.category)) {
    throw UsageProblem{"'" + options.category + "' is not a category (" + CategoryNames() + ")"};
  }
  if (!options.category.empty() && options.path.empty()) {
    throw UsageProblem{"--category lists inside a record, and none is named"};
  }
}

std::vector<std::string> NamesOfCategories() {
  std::vector<std::string> names;
  for (const Category& category : AllCategories()) names.emplace_back(category.name);
  return names;
}

}  // namespace

void AddPathFlags(CommandLineParser& parser, CLI::App* command) {
  Options& options = parser.options();
  command
      ->add_option_function<std::string>(
          "--hierarchy",
          [&options](const std::string& name) { options.hierarchy = name == "audio" ? 1 : 2; },
          "Only audio, or only video")
      ->check(CLI::IsMember({"audio", "video"}))
      ->option_text("audio|video");
  parser.values().Add(command->add_option("PATH", options.path), NamesOfCategories());
  parser.AddCheck([&options, command] {
    if (command->parsed()) CheckPath(options);
  });
}

void AddBrowseCommand(CommandLineParser& parser) {
  Options& options = parser.options();
  CLI::App* browse = parser.AddCommand("browse", "Looking", "List the media on the iPod",
                                       "[CATEGORY [NAME...]] [OPTIONS]", kBrowseFooter);
  browse->add_option("--from", options.from, "First record to list, counted from 0")
      ->check(usage::WholeNumber(std::numeric_limits<unsigned long>::max()))
      ->option_text("N");
  browse->add_option("--count", options.count, "How many records to list")
      ->check(usage::WholeNumber(std::numeric_limits<unsigned long>::max()))
      ->option_text("N");
  AddPathFlags(parser, browse);
  CLI::Option* category =
      browse->add_option("--category", options.category, "List this category inside the last NAME");
  category->option_text("CATEGORY");
  parser.values().Add(category, NamesOfCategories());
}

}  // namespace ipodctl
