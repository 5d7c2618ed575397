// SPDX-License-Identifier: MIT
// How help looks: one usage line that says it all, then options and commands in aligned columns.
#pragma once

#include <CLI/CLI.hpp>
#include <map>
#include <string>

namespace usage {

class HelpFormatter : public CLI::Formatter {
 public:
  HelpFormatter() { column_width(27); }

  /// Sets what follows "Usage: " for one command.
  void SetUsage(const CLI::App* app, std::string usage) { usages_[app] = std::move(usage); }
  /// What follows "Usage: "; empty for a command that has none.
  std::string Usage(const CLI::App* app) const {
    const auto usage = usages_.find(app);
    return usage == usages_.end() ? "" : usage->second;
  }

  std::string make_usage(const CLI::App* app, std::string /*name*/) const override {
    const std::string usage = Usage(app);
    return usage.empty() ? "" : "\nUsage: " + usage + "\n";
  }

  // The options' own texts say what their values are; the parser's type names say less.
  std::string make_option_name(const CLI::Option* option, bool is_positional) const override {
    const std::string name = CLI::Formatter::make_option_name(option, is_positional);
    return name.substr(0, name.find('{'));
  }
  std::string make_option_opts(const CLI::Option* option) const override {
    const std::string& text = option->get_option_text();
    return text.empty() || text.front() == '[' ? text : " " + text;
  }

  std::string make_positionals(const CLI::App* /*app*/) const override { return {}; }

 private:
  std::map<const CLI::App*, std::string> usages_;
};

}  // namespace usage
