// SPDX-License-Identifier: MIT
// The command line: its commands, options and help, and the sentences for wrong arguments.
#include <CLI/CLI.hpp>
#include <cctype>
#include <memory>

#include "categories.h"
#include "completion.h"
#include "exit_status.h"
#include "help_formatter.h"
#include "help_texts.h"
#include "options.h"
#include "preferences.h"

namespace ipodctl {

namespace {

constexpr double kLongestSeekSeconds = 600;

/// A complaint about the arguments that the parser itself does not have.
struct UsageProblem {
  std::string sentence;
};

class CommandLineParser {
 public:
  CommandLineParser();

  CommandLine Parse(const std::vector<std::string>& arguments);

 private:
  CLI::App* AddCommand(const char* name, const char* group, const char* description,
                       const std::string& usage, const char* footer);
  void AddGlobalOptions();
  void AddLookingCommands();
  void AddPlayingCommands();
  void AddSettingCommands();
  void AddMode(const char* name, const char* description, const std::vector<std::string>& modes,
               const char* footer);
  void AddPreferences();
  static void AddHierarchy(CLI::App* command, Options* options);
  void Complete();
  void CheckPath() const;
  void CheckPreference() const;
  std::string HelpHint() const;

  CLI::App app_{"Drives a docked iPod over a serial line."};
  std::shared_ptr<HelpFormatter> formatter_ = std::make_shared<HelpFormatter>();
  Options options_;
  SimulationOptions simulation_;
  std::string simulated_;
  bool completion_ = false;
  CommandWords words_;  // that each command takes besides its options
  CLI::Option* port_option_ = nullptr;
  CLI::Option* simulated_option_ = nullptr;
  CLI::Option* seed_option_ = nullptr;
  CLI::Option* library_option_ = nullptr;
};

CommandLineParser::CommandLineParser() {
  app_.name("ipodctl");
  app_.formatter(formatter_);
  app_.require_subcommand(0, 1);
  app_.footer(kProgramFooter);
  formatter_->SetUsage(&app_, "ipodctl [OPTIONS] COMMAND ...");
  AddGlobalOptions();
  AddLookingCommands();
  AddPlayingCommands();
  AddSettingCommands();
  for (const Category& category : AllCategories()) {
    words_["browse"].push_back(category.name);
    words_["play"].push_back(category.name);
  }
}

void CommandLineParser::AddGlobalOptions() {
  app_.set_help_flag("-h,--help", "Show this help, or a command's");
  app_.set_version_flag("--version", std::string("ipodctl " IPODCTL_VERSION), "Show the version");
  port_option_ = app_.add_option("--port", options_.port, "The serial line of the dock")
                     ->option_text("DEVICE");
  simulated_option_ =
      app_.add_flag("--simulated{nano}", simulated_, "Use a simulated iPod (see below)")
          ->option_text("[=PROFILE]");
  seed_option_ = app_.add_option("--seed", simulation_.seed, "Its media library, by number")
                     ->check(CLI::NonNegativeNumber)
                     ->option_text("N");
  library_option_ =
      app_.add_option("--library", simulation_.library_file, "Its media library, from a JSON file")
          ->option_text("FILE");
  app_.add_flag("--completion", completion_, "Print a script that completes commands in bash");
  app_.add_flag("--json", options_.json, "Output for machines: one JSON object a line");
  app_.add_flag("-v,--verbose", options_.verbose, "Tell on standard error what goes on");
  app_.add_flag("!--no-idps", options_.idps, "Identify without tokens, as old iPods need");
  app_.add_option("--model", options_.model, "Model number to introduce ourselves with")
      ->option_text("NAME");
  port_option_->excludes(simulated_option_);
}

CLI::App* CommandLineParser::AddCommand(const char* name, const char* group,
                                        const char* description, const std::string& usage,
                                        const char* footer) {
  CLI::App* command = app_.add_subcommand(name, description);
  command->group(group);
  command->fallthrough();
  command->set_help_flag("-h,--help", "Show this help");
  command->footer(std::string(footer) + (*footer == '\0' ? "" : "\n\n") +
                  "Options for every command are in 'ipodctl --help'.");
  formatter_->SetUsage(command,
                       "ipodctl " + std::string(name) + (usage.empty() ? "" : " ") + usage);
  return command;
}

void CommandLineParser::AddHierarchy(CLI::App* command, Options* options) {
  command
      ->add_option_function<std::string>(
          "--hierarchy",
          [options](const std::string& name) { options->hierarchy = name == "audio" ? 1 : 2; },
          "Only audio, or only video")
      ->check(CLI::IsMember({"audio", "video"}))
      ->option_text("audio|video");
}

void CommandLineParser::AddLookingCommands() {
  AddCommand("info", "Looking", "What is in the dock", "", kInfoFooter);
  AddCommand("tour", "Looking", "A guided tour, on a simulated iPod unless --port is given", "",
             kTourFooter);

  CLI::App* browse = AddCommand("browse", "Looking", "List the media on the iPod",
                                "[CATEGORY [NAME...]] [OPTIONS]", kBrowseFooter);
  browse->add_option("PATH", options_.path);
  browse->add_option("--from", options_.from, "First record to list, counted from 0")
      ->check(CLI::NonNegativeNumber)
      ->option_text("N");
  browse->add_option("--count", options_.count, "How many records to list")
      ->check(CLI::NonNegativeNumber)
      ->option_text("N");
  AddHierarchy(browse, &options_);
  browse->add_option("--category", options_.category, "List this category inside the last NAME")
      ->option_text("CATEGORY");

  CLI::App* now =
      AddCommand("now", "Looking", "What is playing", "[--follow | --for SECONDS]", kNowFooter);
  now->add_flag("-f,--follow", options_.follow, "Keep showing it until Ctrl-C");
  now->add_option("--for", options_.follow_seconds, "Keep showing it for so long")
      ->check(CLI::Range(0U, 86400U))
      ->option_text("SECONDS");
}

void CommandLineParser::AddPlayingCommands() {
  CLI::App* play = AddCommand("play", "Playing", "Play something, or go on playing",
                              "[CATEGORY [NAME...]] [OPTIONS]", kPlayFooter);
  play->add_option("PATH", options_.path);
  AddHierarchy(play, &options_);
  AddCommand("pause", "Playing", "Pause", "", "Examples:\n  ipodctl pause");
  AddCommand("stop", "Playing", "Stop", "", "Examples:\n  ipodctl stop");
  AddCommand("next", "Playing", "Skip to the next track", "", "Examples:\n  ipodctl next --json");
  AddCommand("previous", "Playing", "Skip to the previous track, or this one's start", "",
             "Examples:\n  ipodctl previous");
  CLI::App* seek =
      AddCommand("seek", "Playing", "Wind forward or back", "forward|back [SECONDS]", kSeekFooter);
  words_["seek"] = {"forward", "back"};
  seek->add_option_function<std::string>(
          "DIRECTION", [this](const std::string& name) { options_.forward = name == "forward"; })
      ->check(CLI::IsMember({"forward", "back"}))
      ->required();
  seek->add_option("SECONDS", options_.seek_seconds)->check(CLI::Range(0.1, kLongestSeekSeconds));
}

void CommandLineParser::AddSettingCommands() {
  AddMode("shuffle", "Show or set shuffling", {"off", "tracks", "albums"}, kShuffleFooter);
  AddMode("repeat", "Show or set repeating", {"off", "one", "all"}, kRepeatFooter);
  AddPreferences();
}

void CommandLineParser::AddMode(const char* name, const char* description,
                                const std::vector<std::string>& modes, const char* footer) {
  CLI::App* command = AddCommand(name, "Settings", description,
                                 "[" + CLI::detail::join(modes, "|") + "] [OPTIONS]", footer);
  words_[name] = modes;
  command->add_option("MODE", options_.mode)->check(CLI::IsMember(modes));
  command->add_flag("--keep", options_.keep, "Let it hold after undocking");
}

void CommandLineParser::AddPreferences() {
  CLI::App* prefs = AddCommand("prefs", "Settings", "Show or set the iPod's preferences",
                               "[get NAME | set NAME VALUE]", kPrefsFooter);
  prefs->require_subcommand(0, 1);
  words_["prefs"] = {"get", "set"};
  std::string names = "Preferences:\n";
  for (const Preference& preference : AllPreferences()) {
    std::string name = preference.name;
    name.resize(18, ' ');
    words_["prefs"].push_back(preference.name);
    names += "  " + name + preference.description + ": " + SettingNames(preference) + "\n";
  }
  prefs->footer(names + "\n" + prefs->get_footer());
  for (const char* action : {"get", "set"}) {
    const bool sets = std::string(action) == "set";
    CLI::App* command = prefs->add_subcommand(action, sets ? "Set one" : "Show one");
    command->fallthrough();
    command->group("Actions");
    command->set_help_flag("-h,--help", "Show this help");
    command->footer(prefs->get_footer());
    command->add_option("NAME", options_.preference)->required();
    if (sets) command->add_option("VALUE", options_.setting)->required();
    formatter_->SetUsage(command, sets ? "ipodctl prefs set NAME VALUE" : "ipodctl prefs get NAME");
  }
}

CommandLine CommandLineParser::Parse(const std::vector<std::string>& arguments) {
  const auto refuse = [this](std::string sentence) {
    const bool starts_with_word = sentence.size() > 1 && std::islower(sentence[1]) != 0;
    if (starts_with_word) {
      sentence.front() = static_cast<char>(std::tolower(sentence.front()));
    }
    return CommandLine{{}, sentence + "; see " + HelpHint(), kUsage};
  };
  try {
    // The parser takes arguments from the back.
    app_.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
    if (completion_) return {{}, BashCompletion(app_, words_), kSuccess};
    Complete();
  } catch (const CLI::CallForHelp&) {
    return {{}, app_.help(), kSuccess};
  } catch (const CLI::CallForVersion& version) {
    return {{}, std::string(version.what()) + "\n", kSuccess};
  } catch (const CLI::ParseError& problem) {
    return refuse(problem.what());
  } catch (const UsageProblem& problem) {
    return refuse(problem.sentence);
  }
  return {options_, {}, kSuccess};
}

std::string CommandLineParser::HelpHint() const {
  const std::vector<CLI::App*> commands = app_.get_subcommands();
  const std::string command = commands.empty() ? "" : commands.front()->get_name() + " ";
  return "'ipodctl " + command + "--help'";
}

void CommandLineParser::Complete() {
  const std::vector<CLI::App*> commands = app_.get_subcommands();
  if (commands.empty()) throw UsageProblem{"no command given"};
  options_.command = commands.front()->get_name();
  const bool simulated_by_default = options_.command == "tour" && port_option_->empty();
  if (!simulated_option_->empty() || simulated_by_default) {
    if (!simulated_option_->empty()) simulation_.profile = simulated_;
    options_.simulation = simulation_;
  } else if (!seed_option_->empty() || !library_option_->empty()) {
    throw UsageProblem{std::string(seed_option_->empty() ? "--library" : "--seed") +
                       " describes a simulated iPod and needs --simulated"};
  }
  if (!port_option_->empty() && options_.port.empty()) {
    throw UsageProblem{"--port needs the name of a device"};
  }
  if (options_.follow_seconds) options_.follow = true;
  CheckPath();
  CheckPreference();
}

void CommandLineParser::CheckPath() const {
  if (!options_.path.empty() && !CategoryByName(options_.path.front())) {
    throw UsageProblem{"'" + options_.path.front() + "' is not a category (" + CategoryNames() +
                       ")"};
  }
  if (!options_.category.empty() && !CategoryByName(options_.category)) {
    throw UsageProblem{"'" + options_.category + "' is not a category (" + CategoryNames() + ")"};
  }
  if (!options_.category.empty() && options_.path.empty()) {
    throw UsageProblem{"--category lists inside a record, and none is named"};
  }
}

void CommandLineParser::CheckPreference() const {
  if (options_.preference.empty()) return;
  const Preference* preference = PreferenceByName(options_.preference);
  if (preference == nullptr) {
    throw UsageProblem{"'" + options_.preference + "' is not a preference (" + PreferenceNames() +
                       ")"};
  }
  if (!options_.setting.empty() && !SettingByName(*preference, options_.setting)) {
    throw UsageProblem{"'" + options_.setting + "' is not a setting of " + preference->name + " (" +
                       SettingNames(*preference) + ")"};
  }
}

}  // namespace

CommandLine ParseCommandLine(const std::vector<std::string>& arguments) {
  return CommandLineParser().Parse(arguments);
}

}  // namespace ipodctl
