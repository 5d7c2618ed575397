// SPDX-License-Identifier: MIT
#include "usage/manual_page.h"

#include <algorithm>
#include <cctype>
#include <utility>

#include "usage/footer.h"
#include "usage/roff.h"
#include "usage/values.h"

namespace usage {

namespace {

std::string Capitals(std::string text) {
  for (char& c : text) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  return text;
}

// "-o, --output PAGE"
std::string Names(const CLI::Option* option) {
  std::string names;
  const auto add = [&names](const std::string& name) {
    names += (names.empty() ? "" : ", ") + RoffBold(name);
  };
  for (const std::string& name : option->get_snames()) add("-" + name);
  for (const std::string& name : option->get_lnames()) add("--" + name);
  const std::string& text = option->get_option_text();
  if (text.empty()) return names;
  return names + (text.front() == '[' ? "" : " ") + RoffItalic(text);
}

// The page of one command, or of the program.
class Page {
 public:
  Page(const CLI::App& app, std::string name, const HelpFormatter& help)
      : app_(app), name_(std::move(name)), help_(help) {}

  std::string Write();

 private:
  void Heading(const std::string& text) { page_ += ".SH " + Roff(Capitals(text)) + "\n"; }
  void Item(const std::string& tag, const std::string& text) {
    page_ += ".TP\n" + tag + "\n" + Roff(text) + "\n";
  }
  void Name();
  void Synopsis();
  void Options();
  void Commands();
  void Section(const FooterSection& section);
  void SeeAlso();

  const CLI::App& app_;
  std::string name_;
  const HelpFormatter& help_;
  std::string page_;
};

void Page::Name() {
  std::string what = app_.get_description();
  what = what.substr(0, what.find('.'));
  const bool word = what.size() > 1 && std::islower(static_cast<unsigned char>(what[1])) != 0;
  if (word) what.front() = static_cast<char>(std::tolower(static_cast<unsigned char>(what[0])));
  Heading("Name");
  page_ += Roff(name_) + " \\- " + Roff(what) + "\n";
}

void Page::Synopsis() {
  Heading("Synopsis");
  const std::string usage = help_.Usage(&app_);
  const std::size_t end = usage.find(' ');
  page_ += RoffBold(usage.substr(0, end)) + (end == std::string::npos ? "" : " ");
  if (end != std::string::npos) page_ += Roff(usage.substr(end + 1));
  page_ += "\n";
}

void Page::Options() {
  Heading("Options");
  for (const CLI::Option* option : app_.get_options()) {
    if (option->nonpositional()) Item(Names(option), option->get_description());
  }
}

// Grouped as in the help.
void Page::Commands() {
  std::vector<std::string> groups;
  for (const CLI::App* command : app_.get_subcommands({})) {
    const bool known =
        std::find(groups.begin(), groups.end(), command->get_group()) != groups.end();
    if (!known) groups.push_back(command->get_group());
  }
  if (groups.empty()) return;
  Heading("Commands");
  for (const std::string& group : groups) {
    page_ += ".SS " + Roff(group) + "\n";
    for (const CLI::App* command : app_.get_subcommands({})) {
      if (command->get_group() != group) continue;
      Item(RoffBold(command->get_name()), command->get_description() + ".");
    }
  }
}

void Page::Section(const FooterSection& section) {
  Heading(section.heading);
  if (section.kind == FooterSection::Kind::kItems) {
    for (const auto& [name, meaning] : section.items) Item(RoffBold(name), meaning);
    return;
  }
  const bool verbatim = section.kind == FooterSection::Kind::kVerbatim;
  if (verbatim) page_ += ".nf\n";
  for (const std::string& line : section.lines) page_ += Roff(line) + "\n";
  if (verbatim) page_ += ".fi\n";
}

void Page::SeeAlso() {
  std::vector<std::pair<std::string, int>> others;
  const std::string program = name_.substr(0, name_.find('-'));
  if (program != name_) {
    others.emplace_back(program, 1);
  } else {
    for (const CLI::App* command : app_.get_subcommands({})) {
      others.emplace_back(name_ + "-" + command->get_name(), 1);
    }
    others.emplace_back(program == "ipodctl" ? "ipodsim" : "ipodctl", 1);
  }
  others.emplace_back("ipodcomm", 3);
  others.emplace_back("ipodcomm-wire", 7);
  Heading("See also");
  for (const auto& [name, section] : others) {
    page_ += ".BR " + Roff(name) + " (" + std::to_string(section) + ")" +
             (name == others.back().first ? "\n" : ",\n");
  }
}

std::string Page::Write() {
  page_ = RoffTitle(name_, 1, "User Commands");
  Name();
  Synopsis();
  Heading("Description");
  const Footer footer = ParseFooter(app_.get_footer(), name_.substr(0, name_.find('-')));
  page_ += Roff(app_.get_description()) + (app_.get_description().back() == '.' ? "\n" : ".\n");
  for (const std::string& paragraph : footer.paragraphs) page_ += ".PP\n" + Roff(paragraph) + "\n";
  Options();
  Commands();
  for (const FooterSection& section : footer.sections) Section(section);
  SeeAlso();
  return page_;
}

}  // namespace

std::vector<ManualPage> ManualPages(const CLI::App& app, const HelpFormatter& help) {
  std::vector<ManualPage> pages = {{app.get_name(), Page(app, app.get_name(), help).Write()}};
  for (const CLI::App* command : app.get_subcommands({})) {
    const std::string name = app.get_name() + "-" + command->get_name();
    pages.push_back({name, Page(*command, name, help).Write()});
  }
  return pages;
}

}  // namespace usage
