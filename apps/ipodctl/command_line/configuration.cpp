// SPDX-License-Identifier: MIT
#include "command_line/configuration.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <sstream>

#include "command_line/flags.h"

namespace ipodctl {

namespace {

std::string Trimmed(const std::string& text) { return CLI::detail::trim_copy(text); }

class Configuration {
 public:
  Configuration(const std::string& file, CLI::App& app) : file_(file), app_(app) {}

  void Read();

 private:
  void ReadLine(const std::string& line);
  void Enter(const std::string& section);
  void Apply(const CLI::ConfigItem& item);
  [[noreturn]] void Fail(const std::string& problem) const;

  const std::string& file_;
  CLI::App& app_;
  CLI::App* section_ = &app_;
  unsigned line_ = 0;
};

void Configuration::Read() {
  std::ifstream stream(file_);
  std::string line;
  while (std::getline(stream, line)) {
    ++line_;
    ReadLine(Trimmed(line));
  }
}

// The parser's reader keeps no numbers of lines, so it gets them one by one.
void Configuration::ReadLine(const std::string& line) {
  if (line.empty() || line.front() == '#') return;
  if (line.front() == '[' && line.back() == ']') return Enter(line.substr(1, line.size() - 2));
  std::istringstream single(line);
  const std::vector<CLI::ConfigItem> items = CLI::ConfigTOML().from_config(single);
  if (items.size() != 1 || line.find('=') == std::string::npos) {
    Fail("'" + line + "' is neither a command in brackets nor an option, = and its value");
  }
  Apply(items.front());
}

void Configuration::Enter(const std::string& section) {
  const std::vector<CLI::App*> commands =
      app_.get_subcommands([&section](const CLI::App* each) { return each->check_name(section); });
  if (commands.empty()) Fail("there is no command '" + section + "'");
  section_ = commands.front();
}

bool ExcludedByAnother(const CLI::Option& option) {
  const auto& others = option.get_excludes();
  return std::any_of(others.begin(), others.end(),
                     [](const CLI::Option* other) { return !other->empty(); });
}

void Configuration::Apply(const CLI::ConfigItem& item) {
  CLI::Option* const option = section_->get_option_no_throw("--" + item.name);
  if (option == nullptr || !option->get_configurable()) {
    Fail("there is no option '" + item.name + "'");
  }
  const bool of_this_command = section_ == &app_ || section_->parsed();
  if (!of_this_command || !option->empty() || ExcludedByAnother(*option)) return;
  try {
    for (const std::string& input : item.inputs) option->add_result(input);
    option->run_callback();
  } catch (const CLI::ParseError& problem) {
    Fail(problem.what());
  }
}

void Configuration::Fail(const std::string& problem) const {
  throw UsageProblem{file_ + ", line " + std::to_string(line_) + ": " + problem};
}

std::string Variable(const char* name) {
  const char* const value = std::getenv(name);
  return value == nullptr ? "" : value;
}

}  // namespace

std::string ConfigurationFile() {
  const std::string folder = Variable("XDG_CONFIG_HOME");
  if (!folder.empty()) return folder + "/ipodctl.toml";
  const std::string home = Variable("HOME");
  return home.empty() ? "" : home + "/.config/ipodctl.toml";
}

void ReadConfiguration(const std::string& file, CLI::App& app) {
  if (!file.empty()) Configuration(file, app).Read();
}

}  // namespace ipodctl
