// SPDX-License-Identifier: MIT
// The options of ipodsim.
#pragma once

#include <CLI/CLI.hpp>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "usage/help.h"
#include "usage/manual_page.h"
#include "usage/values.h"

namespace ipodsim {

struct Options {
  std::string link;
  std::string profile = "nano";
  std::string library;
  std::optional<std::string> storage;
  std::string model_id;
  std::vector<std::string> faults;
  std::vector<std::string> habits;
  std::uint32_t baud = 0;
  std::string capture;
  std::uint64_t seed = 1;
  bool asks_during_session = false;
  bool trace = false;
  std::string completion;  // the shell to print a script for; empty: none
};

/// Lists for --fault help and --habit help, a line each.
std::string ListOfFaults();
std::string ListOfHabits();

class CommandLine {
 public:
  CommandLine();
  CommandLine(const CommandLine&) = delete;
  CommandLine& operator=(const CommandLine&) = delete;

  CLI::App& app() { return app_; }
  const Options& options() const { return options_; }
  const usage::Values& values() const { return values_; }
  std::vector<usage::ManualPage> ManualPages() const;

 private:
  void AddLine();
  void AddIpod();
  void AddTelling();

  CLI::App app_{
      "A simulated iPod on a pseudo-terminal. It serves until it is interrupted and\n"
      "then lists the protocol mistakes that it met."};
  std::shared_ptr<usage::HelpFormatter> formatter_ = std::make_shared<usage::HelpFormatter>();
  Options options_;
  usage::Values values_;
};

}  // namespace ipodsim
