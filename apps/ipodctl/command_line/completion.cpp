// SPDX-License-Identifier: MIT
// Writes the completion script.
#include "command_line/completion.h"

namespace ipodctl {

namespace {

// A command's own --help stands for that of the program, and is listed with its options.
std::string OptionNames(const CLI::App& app) {
  std::string names;
  for (const CLI::Option* option : app.get_options()) {
    if (app.get_parent() != nullptr && option == app.get_help_ptr()) continue;
    for (const std::string& name : option->get_lnames()) names += " --" + name;
  }
  return names;
}

std::string Case(const std::string& command, const std::string& words) {
  return "    " + command + ") words=\"" + words + "\" ;;\n";
}

}  // namespace

std::string BashCompletion(const CLI::App& app, const CommandWords& words,
                           const OptionValues& values) {
  std::string commands;
  std::string alternatives;
  std::string cases;
  for (const CLI::App* command : app.get_subcommands({})) {
    const std::string& name = command->get_name();
    commands += (commands.empty() ? "" : " ") + name;
    alternatives += (alternatives.empty() ? "" : "|") + name;
    std::string taken;
    const auto own = words.find(name);
    if (own != words.end()) taken = CLI::detail::join(own->second, " ");
    cases += Case(name, taken + OptionNames(*command) + OptionNames(app));
  }
  std::string options;
  for (const auto& [option, taken] : values) {
    options += Case(option, CLI::detail::join(taken, " "));
  }
  // bash parts words at an equals sign, which then is a word of its own.
  return "# Completion for ipodctl; to use it: source <(ipodctl --completion)\n"
         "_ipodctl() {\n"
         "  local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD-1]}\n"
         "  local command= words= i\n"
         "  case $word in =) before+==; word= ;; esac\n"
         "  case $before in =) before=${COMP_WORDS[COMP_CWORD-2]}= ;; esac\n"
         "  for ((i = 1; i < COMP_CWORD; i++)); do\n"
         "    case ${COMP_WORDS[i]} in\n"
         "      " +
         alternatives +
         ") command=${COMP_WORDS[i]}; break ;;\n"
         "    esac\n"
         "  done\n"
         "  case $command in\n" +
         Case("''", commands + OptionNames(app)) + cases +
         "  esac\n"
         "  case $before in\n" +
         options +
         "  esac\n"
         "  COMPREPLY=($(compgen -W \"$words\" -- \"$word\"))\n"
         "}\n"
         "complete -o default -F _ipodctl ipodctl\n";
}

}  // namespace ipodctl
