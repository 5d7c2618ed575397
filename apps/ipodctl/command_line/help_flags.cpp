// SPDX-License-Identifier: MIT
// The command help, and what to say about words that nothing is known by.
#include "command_line/flags.h"
#include "usage/similar.h"

namespace ipodctl {

namespace {

constexpr const char* kHelpFooter =
    "Examples:\n"
    "  ipodctl help browse\n"
    "  ipodctl help prefs set";

std::vector<std::string> CommandNames(const CLI::App& app) {
  std::vector<std::string> names;
  for (const CLI::App* command : app.get_subcommands({})) names.push_back(command->get_name());
  return names;
}

// The names of the options that a command takes, those of the program included.
std::vector<std::string> OptionNames(const CLI::App* app) {
  std::vector<std::string> names;
  for (; app != nullptr; app = app->get_parent()) {
    for (const CLI::Option* option : app->get_options()) {
      for (const std::string& name : option->get_lnames()) names.push_back("--" + name);
    }
  }
  return names;
}

std::string Suggestion(const std::string& word, const std::vector<std::string>& words) {
  const std::string meant = usage::MostSimilar(word, words);
  return meant.empty() ? "" : " (did you mean '" + meant + "'?)";
}

std::string NoCommand(const std::string& word, const CLI::App& app) {
  return "there is no command '" + word + "'" + Suggestion(word, CommandNames(app));
}

}  // namespace

void AddHelpCommand(CommandLineParser& parser, std::vector<std::string>* command) {
  CLI::App* help = parser.AddCommand("help", "Help", "Explain a command", "[COMMAND]", kHelpFooter);
  parser.values().Add(help->add_option("COMMAND", *command), CommandNames(parser.app()));
}

std::string HelpOn(const CLI::App& app, const std::vector<std::string>& command) {
  const CLI::App* explained = &app;
  for (const std::string& word : command) {
    const std::vector<const CLI::App*> named = explained->get_subcommands(
        [&word](const CLI::App* each) { return each->check_name(word); });
    if (named.empty()) throw UsageProblem{NoCommand(word, *explained)};
    explained = named.front();
  }
  // The program's own help() would be that of the command that was given, which is help.
  return explained->get_formatter()->make_help(explained, explained->get_name(),
                                               CLI::AppFormatMode::Normal);
}

std::string NotExpected(const CLI::App& app, const std::string& word) {
  const std::vector<const CLI::App*> commands =
      app.get_subcommands([](const CLI::App* command) { return command->parsed(); });
  const CLI::App* command = commands.empty() ? &app : commands.front();
  if (word.size() > 1 && word.front() == '-') {
    return "there is no option '" + word + "'" +
           Suggestion(word.substr(0, word.find('=')), OptionNames(command));
  }
  // A command that consists of others takes nothing else.
  const bool parts = !command->get_subcommands({}).empty();
  const bool chosen =
      !command->get_subcommands([](const CLI::App* each) { return each->parsed(); }).empty();
  if (parts && !chosen) return NoCommand(word, *command);
  return "the following argument was not expected: " + word;
}

}  // namespace ipodctl
