// SPDX-License-Identifier: MIT
// What the values of a program's options and positions can be, as far as that can be offered.
#pragma once

#include <CLI/CLI.hpp>
#include <map>
#include <string>
#include <vector>

namespace usage {

/// What can stand in one place of a command line.
struct Offer {
  enum class Paths { kNone, kFiles, kFolders, kPorts };

  std::vector<std::string> words;
  Paths paths = Paths::kNone;
};

/// The words that options take. What an option's text in the help says need not be said here:
/// `audio|video` are two words, FILE and PAGE are files, DIR is a folder, DEVICE a serial port.
class Values {
 public:
  /// One that takes several values takes these for the first.
  void Add(const CLI::Option* option, std::vector<std::string> words);
  /// For a position: the words where the position in front of it holds `before`.
  void AddAfter(const std::string& before, const CLI::Option* option,
                std::vector<std::string> words);

  /// @param before what stands in the position in front; of no matter for an option
  Offer OfferFor(const CLI::Option* option, const std::string& before) const;

 private:
  std::map<const CLI::Option*, std::vector<std::string>> words_;
  std::map<const CLI::Option*, std::map<std::string, std::vector<std::string>>> words_after_;
};

/// What the help shows as an option's value or a position's name: "FILE", "audio|video"; empty for
/// a flag.
std::string ValueText(const CLI::Option* option);

/// Whether the word behind the option is its value.
bool TakesNextWord(const CLI::Option* option);

}  // namespace usage
