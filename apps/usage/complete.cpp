// SPDX-License-Identifier: MIT
#include "usage/complete.h"

#include <algorithm>

#include "usage/serial_ports.h"

namespace usage {

namespace {

bool StartsWith(const std::string& text, const std::string& start) {
  return text.compare(0, start.size(), start) == 0;
}

// A command line as far as it is written, read as the parser will read it.
class Line {
 public:
  explicit Line(const CLI::App& app) : command_(&app) {}

  void Read(const std::string& word);

  /// The command that the words belong to.
  const CLI::App& command() const { return *command_; }
  /// The option whose value is due; nullptr when none is.
  const CLI::Option* waiting() const { return waiting_; }
  const std::vector<std::string>& positions() const { return positions_; }
  /// Whether a word with a dash in front can be an option still.
  bool takes_options() const { return !only_positions_; }
  bool HasGiven(const CLI::Option* option) const {
    return std::find(given_.begin(), given_.end(), option) != given_.end();
  }
  /// The option that a word names, of this command or of the program.
  const CLI::Option* OptionNamed(const std::string& word) const;

 private:
  void ReadOption(const std::string& word);
  void ReadPosition(const std::string& word);
  const CLI::App* CommandNamed(const std::string& word) const;

  const CLI::App* command_;
  const CLI::Option* waiting_ = nullptr;
  std::vector<const CLI::Option*> given_;
  std::vector<std::string> positions_;
  bool only_positions_ = false;
};

const CLI::Option* Line::OptionNamed(const std::string& word) const {
  for (const CLI::App* app = command_; app != nullptr; app = app->get_parent()) {
    for (const CLI::Option* option : app->get_options()) {
      if (option->check_name(word)) return option;
    }
  }
  return nullptr;
}

void Line::ReadOption(const std::string& word) {
  const bool is_long = StartsWith(word, "--");
  const std::size_t equals = word.find('=');
  const std::string name = is_long ? word.substr(0, equals) : word.substr(0, 2);
  const CLI::Option* option = OptionNamed(name);
  if (option == nullptr) return;
  given_.push_back(option);
  const bool has_value = is_long ? equals != std::string::npos : word.size() > 2;
  if (TakesNextWord(option) && !has_value) waiting_ = option;
}

const CLI::App* Line::CommandNamed(const std::string& word) const {
  for (const CLI::App* command : command_->get_subcommands({})) {
    if (command->check_name(word)) return command;
  }
  return nullptr;
}

void Line::ReadPosition(const std::string& word) {
  const CLI::App* const command = positions_.empty() ? CommandNamed(word) : nullptr;
  if (command == nullptr) {
    positions_.push_back(word);
  } else {
    command_ = command;
  }
}

void Line::Read(const std::string& word) {
  if (waiting_ != nullptr) {
    waiting_ = nullptr;
  } else if (!only_positions_ && word == "--") {
    only_positions_ = true;
  } else if (!only_positions_ && word.size() > 1 && word.front() == '-') {
    ReadOption(word);
  } else {
    ReadPosition(word);
  }
}

// What fits in the place of `word`.
class Answer {
 public:
  explicit Answer(std::string word) : word_(std::move(word)) {}

  void Add(const std::string& candidate, const std::string& meaning = {}) {
    if (!StartsWith(candidate, word_)) return;
    lines_ += candidate + (meaning.empty() ? "" : "\t" + meaning) + "\n";
  }
  /// @param front what stands before the value in the same word: "--library="
  void Add(const Offer& offer, const std::string& front = {});
  bool empty() const { return lines_.empty(); }
  std::string text() const { return paths_ + "\n" + lines_; }

 private:
  std::string word_;
  std::string paths_ = "none";
  std::string lines_;
};

void Answer::Add(const Offer& offer, const std::string& front) {
  for (const std::string& word : offer.words) Add(front + word);
  if (offer.paths == Offer::Paths::kFiles) paths_ = "files";
  if (offer.paths == Offer::Paths::kFolders) paths_ = "folders";
  if (offer.paths != Offer::Paths::kPorts) return;
  for (const SerialPort& port : SerialPorts()) Add(front + port.device, port.adapter);
  // A port may have any name, so that of a simulated iPod.
  if (empty()) paths_ = "files";
}

bool Excluded(const CLI::Option* option, const Line& line) {
  const auto given = [&line](const CLI::Option* other) { return line.HasGiven(other); };
  const auto& excluded = option->get_excludes();
  return std::any_of(excluded.begin(), excluded.end(), given);
}

// A command's own --help stands for that of the program.
void AddOptions(const Line& line, Answer* answer) {
  for (const CLI::App* app = &line.command(); app != nullptr; app = app->get_parent()) {
    for (const CLI::Option* option : app->get_options()) {
      if (app != &line.command() && option == app->get_help_ptr()) continue;
      const bool repeats = option->get_items_expected_max() > 1;
      if ((line.HasGiven(option) && !repeats) || Excluded(option, line)) continue;
      for (const std::string& name : option->get_lnames()) {
        answer->Add("--" + name, option->get_description());
      }
    }
  }
}

void AddPosition(const Line& line, const Values& values, Answer* answer) {
  const std::vector<std::string>& positions = line.positions();
  std::size_t place = 0;
  for (const CLI::Option* option : line.command().get_options()) {
    if (!option->get_positional()) continue;
    if (place++ != positions.size()) continue;
    answer->Add(values.OfferFor(option, positions.empty() ? "" : positions.back()));
    return;
  }
}

}  // namespace

std::string Complete(const CLI::App& app, const Values& values,
                     const std::vector<std::string>& words) {
  if (words.empty()) return Complete(app, values, {""});
  Line line(app);
  std::for_each(words.begin(), words.end() - 1,
                [&line](const std::string& word) { line.Read(word); });
  const std::string& last = words.back();
  Answer answer(last);
  const std::size_t equals = last.find('=');
  if (line.waiting() != nullptr) {
    answer.Add(values.OfferFor(line.waiting(), ""));
  } else if (StartsWith(last, "--") && line.takes_options() && equals != std::string::npos) {
    const CLI::Option* option = line.OptionNamed(last.substr(0, equals));
    if (option != nullptr) answer.Add(values.OfferFor(option, ""), last.substr(0, equals + 1));
  } else if (StartsWith(last, "-") && line.takes_options()) {
    AddOptions(line, &answer);
  } else {
    for (const CLI::App* command : line.command().get_subcommands({})) {
      if (line.positions().empty()) answer.Add(command->get_name(), command->get_description());
    }
    AddPosition(line, values, &answer);
    if (last.empty() && answer.text() == "none\n" && line.takes_options()) {
      AddOptions(line, &answer);
    }
  }
  return answer.text();
}

}  // namespace usage
