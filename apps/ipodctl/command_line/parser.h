// SPDX-License-Identifier: MIT
// The parser of the command line, to which each subject adds its commands.
#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "command_line/command_line.h"
#include "options.h"
#include "usage/help.h"
#include "usage/manual_page.h"
#include "usage/values.h"

namespace ipodctl {

/// Wrong arguments that the parser itself accepts.
struct UsageProblem {
  std::string sentence;
};

class CommandLineParser {
 public:
  CommandLineParser();
  CommandLineParser(const CommandLineParser&) = delete;
  CommandLineParser& operator=(const CommandLineParser&) = delete;

  CommandLine Parse(const std::vector<std::string>& arguments);
  std::vector<usage::ManualPage> ManualPages() const;

  /// Adds a command.
  /// @param group heading under which the program's help lists it
  /// @param usage what follows the command's name
  /// @param footer explanation and examples
  CLI::App* AddCommand(const char* name, const char* group, const char* description,
                       const std::string& usage, const char* footer);
  void SetUsage(const CLI::App* command, std::string usage);
  /// Runs `check` once everything is parsed; it may throw a UsageProblem.
  void AddCheck(std::function<void()> check) { checks_.push_back(std::move(check)); }

  /// The whole program, for options that every command takes.
  CLI::App& app() { return app_; }
  /// What the options set.
  Options& options() { return options_; }
  /// What can be offered for the options' values.
  usage::Values& values() { return values_; }

 private:
  void AddGlobalOptions();
  void Complete();
  void CompletePort();
  void CompleteSimulation();
  CommandLine Understand(const std::vector<std::string>& arguments);
  std::string HelpHint() const;

  CLI::App app_{"Drives a docked iPod over a serial line."};
  std::shared_ptr<usage::HelpFormatter> formatter_ = std::make_shared<usage::HelpFormatter>();
  Options options_;
  SimulationOptions simulation_;
  std::string simulated_;
  std::string completion_;  // the shell
  std::vector<std::string> help_on_;
  usage::Values values_;
  std::vector<std::function<void()>> checks_;
  CLI::Option* port_option_ = nullptr;
  bool port_named_ = false;  // on the command line
  CLI::Option* simulated_option_ = nullptr;
  std::vector<const CLI::Option*> simulation_options_;  // that describe the simulated iPod
};

}  // namespace ipodctl
