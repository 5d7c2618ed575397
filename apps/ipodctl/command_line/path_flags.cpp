// SPDX-License-Identifier: MIT
// Reads and checks a walk into the library.
#include "command_line/path_flags.h"

#include "library/categories.h"

namespace ipodctl {

namespace {

void CheckPath(const Options& options) {
  if (!options.path.empty() && !CategoryByName(options.path.front())) {
    throw UsageProblem{"'" + options.path.front() + "' is not a category (" + CategoryNames() +
                       ")"};
  }
  if (!options.category.empty() && !CategoryByName(options.category)) {
    throw UsageProblem{"'" + options.category + "' is not a category (" + CategoryNames() + ")"};
  }
  if (!options.category.empty() && options.path.empty()) {
    throw UsageProblem{"--category lists inside a record, and none is named"};
  }
}

}  // namespace

void AddPathOptions(CommandLineParser& parser, CLI::App* command) {
  Options& options = parser.options();
  command->add_option("PATH", options.path);
  command
      ->add_option_function<std::string>(
          "--hierarchy",
          [&options](const std::string& name) { options.hierarchy = name == "audio" ? 1 : 2; },
          "Only audio, or only video")
      ->check(CLI::IsMember({"audio", "video"}))
      ->option_text("audio|video");
  std::vector<std::string> categories;
  for (const Category& category : AllCategories()) categories.emplace_back(category.name);
  parser.AddWords(command->get_name(), categories);
  parser.AddCheck([&options, command] {
    if (command->parsed()) CheckPath(options);
  });
}

}  // namespace ipodctl
