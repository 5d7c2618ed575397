// SPDX-License-Identifier: MIT
// The command line: its options for every command, its help, and the sentences for wrong arguments.
#include "command_line/parser.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>

#include "command_line/configuration.h"
#include "command_line/flags.h"
#include "console/failure.h"
#include "ipod/ports.h"
#include "ipod/simulated_ipod.h"
#include "usage/build.h"
#include "usage/complete.h"
#include "usage/completion_script.h"
#include "usage/numbers.h"

namespace ipodctl {

namespace {

const std::vector<std::string> kConducts = {"field", "robust", "fast"};

constexpr const char* kProgramFooter =
    "Examples:\n"
    "  ipodctl tour                                  see it all on a simulated iPod\n"
    "  ipodctl --port /dev/ttyUSB0 info              what is in the dock\n"
    "  ipodctl --port /dev/ttyUSB0 browse artists    whose music is on it\n"
    "  ipodctl --simulated browse genres --json      no hardware, for a script\n"
    "\n"
    "The dock:\n"
    "  --port names it; else the environment variable IPODCTL_PORT does, else the configuration "
    "file,\n"
    "  else the variable IPODCOMM_COM2, else it is /dev/ttyS1.\n"
    "  --port auto takes the only serial port, and of several the one on which an iPod answers;\n"
    "  'ipodctl ports' lists them.\n"
    "  On Windows it is always COM2, and no simulated one takes its place.\n"
    "  --simulated puts a simulated iPod into this program, on a real pseudo-terminal. It is one "
    "of\n"
    "  nano (all services), classic (no token identification), old (too old), nosports, silent,\n"
    "  strict (wants transaction identifiers at once), echo (the line wired back to itself).\n"
    "  'ipodsim --help' lists the habits and faults that it can have.\n"
    "\n"
    "The configuration file:\n"
    "  ~/.config/ipodctl.toml (or $XDG_CONFIG_HOME/ipodctl.toml) gives options that the command "
    "line\n"
    "  does not: port = \"/dev/ttyUSB0\", and below the name of a command in brackets, such as\n"
    "  [workout], those of that command. What it says of the dock does not hold for --simulated.\n"
    "\n"
    "The legacy interface:\n"
    "  --legacy takes info, browse, play, pause, now, prefs and workout through the library's "
    "older,\n"
    "  synchronous interface and shows its display texts as they stand; selftest always does. "
    "With\n"
    "  --json the words are those of the other interface.\n"
    "\n"
    "Exit status:\n"
    "  0  done\n"
    "  1  the iPod refused, or what was asked for has not happened\n"
    "  2  the port cannot be opened\n"
    "  3  nothing is docked, the line echoes, or the iPod did not accept the accessory\n"
    "  4  the iPod is too old\n"
    "  64  wrong arguments\n"
    "  65  a file is damaged or cut short; what it holds is shown\n"
    "  66  a file is missing or malformed\n"
    "  73  the file of a recording cannot be made\n"
    "  130  interrupted before the command was done: by Ctrl-C, by closing the terminal, or "
    "because\n"
    "       nobody reads the output any more\n"
    "\n"
    "Data goes to standard output, everything else to standard error. With --json a failure goes "
    "to\n"
    "both, on standard output as an object with \"error\", \"message\" and \"status\". What the\n"
    "objects hold is in share/ipodcomm/ipodctl.schema.json, where the program is installed.\n"
    "'ipodctl help COMMAND' explains a command and shows examples.";

// What arguments that cannot be understood ask for all the same.
CommandLine Refused(const std::string& sentence, const std::vector<std::string>& arguments) {
  const auto end = std::find(arguments.begin(), arguments.end(), "--");
  const auto given = [&](const char* word) { return std::find(arguments.begin(), end, word); };
  const auto capture = given("--capture");
  const bool captures = given("--capture=-") != end ||
                        (capture != end && capture + 1 != end && *(capture + 1) == "-");
  return {{}, sentence, kUsage, given("--json") != end, captures};
}

}  // namespace

CommandLineParser::CommandLineParser() {
  app_.name("ipodctl");
  app_.formatter(formatter_);
  app_.require_subcommand(0, 1);
  app_.footer(kProgramFooter);
  formatter_->SetUsage(&app_, "ipodctl [OPTIONS] COMMAND ...");
  AddGlobalOptions();
  // In the order in which the help lists them.
  AddPortsCommand(*this);
  AddInfoCommand(*this);
  AddTourCommand(*this);
  AddBrowseCommand(*this);
  AddNowCommand(*this);
  AddPlayerCommands(*this);
  AddModeCommands(*this);
  AddPrefsCommand(*this);
  AddWorkoutCommand(*this);
  AddConsoleCommand(*this);
  AddUserdataCommand(*this);
  AddReportCommand(*this);
  AddWireCommands(*this);
  AddLegacyInterface(*this);
  AddHelpCommand(*this, &help_on_);
}

void CommandLineParser::AddGlobalOptions() {
  app_.set_help_flag("-h,--help", "Show this help, or a command's");
  app_.set_version_flag("--version", std::string("ipodctl ") + usage::kBuild,
                        "Show the version and the commit");
  port_option_ = app_.add_option("--port", options_.port, "The serial line of the dock, or auto")
                     ->option_text("DEVICE");
  simulated_option_ =
      app_.add_flag("--simulated{nano}", simulated_, "Use a simulated iPod (see below)")
          ->option_text("[=PROFILE]");
  simulation_options_ = {
      app_.add_option("--seed", simulation_.seed, "Its media library, by number")
          ->check(usage::WholeNumber())
          ->option_text("N"),
      app_.add_option("--library", simulation_.library_file, "Its media library, from a JSON file")
          ->option_text("FILE"),
      app_.add_option("--storage", simulation_.storage_folder, "Its files, kept in this folder")
          ->option_text("DIR"),
      app_.add_option("--habit", simulation_.habits, "How it differs from the common iPod")
          ->allow_extra_args(false)
          ->option_text("NAME"),
      app_.add_option("--fault", simulation_.faults, "What goes wrong with it")
          ->allow_extra_args(false)
          ->option_text("NAME"),
      app_.add_option("--baud", simulation_.baud, "The speed of its line; none when not given")
          ->check(CLI::Range(300u, 4000000u))
          ->option_text("N"),
  };
  const SimulationNames names = NamesForSimulation();
  values_.Add(port_option_, {kAnyPort});
  values_.Add(simulated_option_, names.profiles);
  values_.Add(app_.get_option("--habit"), names.habits);
  values_.Add(app_.get_option("--fault"), names.faults);
  app_.add_flag("--completion{bash}", completion_, "Print a script that completes commands")
      ->check(CLI::IsMember(usage::Shells()))
      ->option_text("[=" + CLI::detail::join(usage::Shells(), "|") + "]");
  app_.add_option("--timeout", options_.timeout_s, "End the command after so long, as Ctrl-C does")
      ->check(usage::NumberBetween(0.1, 86400))
      ->option_text("SECONDS");
  app_.add_flag("--json", options_.json, "Output for machines: one JSON object a line");
  app_.add_flag("-v,--verbose", options_.verbose,
                "Tell on standard error what goes on, and over the line");
  app_.add_flag("!--no-idps", options_.idps, "Identify without tokens, as old iPods need");
  app_.add_option("--model", options_.model, "Model number to introduce ourselves with")
      ->option_text("NAME");
  app_.add_option("--conduct", options_.conduct,
                  "field: the library's default; robust: tell answers apart (the default on a "
                  "port); fast: and at the speed of the line (with --simulated)")
      ->check(CLI::IsMember(kConducts))
      ->option_text(CLI::detail::join(kConducts, "|"));
  app_.add_option("--capture", options_.capture,
                  "Record the line, for Wireshark (-: on standard output)")
      ->option_text("FILE");
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
  SetUsage(command, "ipodctl " + std::string(name) + (usage.empty() ? "" : " ") + usage);
  return command;
}

void CommandLineParser::SetUsage(const CLI::App* command, std::string usage) {
  formatter_->SetUsage(command, std::move(usage));
}

std::vector<usage::ManualPage> CommandLineParser::ManualPages() const {
  return usage::ManualPages(app_, *formatter_);
}

CommandLine CommandLineParser::Parse(const std::vector<std::string>& arguments) {
  const auto refuse = [&](std::string sentence) {
    const bool starts_with_word = sentence.size() > 1 && std::islower(sentence[1]) != 0;
    if (starts_with_word) {
      sentence.front() = static_cast<char>(std::tolower(sentence.front()));
    }
    return Refused(sentence + "; see " + HelpHint(), arguments);
  };
  if (!arguments.empty() && arguments.front() == usage::kCompleteArgument) {
    return {{}, usage::Complete(app_, values_, {arguments.begin() + 1, arguments.end()}), kSuccess};
  }
  try {
    return Understand(arguments);
  } catch (const CLI::CallForHelp&) {
    return {{}, app_.help(), kSuccess};
  } catch (const CLI::CallForVersion& version) {
    return {{}, std::string(version.what()) + "\n", kSuccess};
  } catch (const CLI::ExtrasError&) {
    return refuse(NotExpected(app_, app_.remaining(true).front()));
  } catch (const CLI::ParseError& problem) {
    return refuse(problem.what());
  } catch (const UsageProblem& problem) {
    return refuse(problem.sentence);
  }
}

CommandLine CommandLineParser::Understand(const std::vector<std::string>& arguments) {
  // The parser takes arguments from the back.
  app_.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
  if (!completion_.empty()) {
    return {{}, usage::CompletionScript(app_.get_name(), completion_), kSuccess};
  }
  if (app_.got_subcommand("help")) return {{}, HelpOn(app_, help_on_), kSuccess};
  CompletePort();
  ReadConfiguration(ConfigurationFile(), app_);
  Complete();
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
  CompleteSimulation();
  if (!port_option_->empty() && options_.port.empty()) {
    throw UsageProblem{"--port needs the name of a device"};
  }
  for (const std::function<void()>& check : checks_) check();
}

// A tour goes to a dock only if the command line says so.
void CommandLineParser::CompletePort() {
  port_named_ = !port_option_->empty();
  const char* const port = std::getenv("IPODCTL_PORT");
  if (port_named_ || !simulated_option_->empty() || port == nullptr || *port == '\0') return;
  port_option_->add_result(port);
  port_option_->run_callback();
}

void CommandLineParser::CompleteSimulation() {
  const bool simulated_by_default = options_.command == "tour" && !port_named_;
  if (!simulated_option_->empty() || simulated_by_default) {
    if (!simulated_option_->empty()) simulation_.profile = simulated_;
    options_.simulation = simulation_;
    return;
  }
  for (const CLI::Option* option : simulation_options_) {
    if (option->empty()) continue;
    throw UsageProblem{option->get_name() + " describes a simulated iPod and needs --simulated"};
  }
}

CommandLine ParseCommandLine(const std::vector<std::string>& arguments) {
  return CommandLineParser().Parse(arguments);
}

}  // namespace ipodctl
