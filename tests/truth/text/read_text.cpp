// SPDX-License-Identifier: MIT
// Leaves the lines to the command's subject.
#include "command_line/command_line.h"
#include "text/subjects.h"

namespace truth {

namespace {

using Reader = void (*)(Lines* lines, std::vector<Json>* said);

Reader ReaderFor(const ipodctl::Options& options) {
  const std::string& command = options.command;
  if (command == "info") return ReadInfo;
  if (command == "browse") return options.path.empty() ? ReadOverview : ReadList;
  if (command == "shuffle" || command == "repeat") return ReadMode;
  if (command == "prefs") return ReadPreferences;
  if (command == "userdata") return ReadUserData;
  if (command == "workout") return ReadWorkout;
  if (command == "tour") return ReadTour;
  if (command == "selftest") return ReadSelfTest;
  return options.legacy ? ReadLegacyPlayer : ReadPlayer;
}

}  // namespace

std::string ReadText(const ipodctl::Options& options, const std::string& text,
                     std::vector<Json>* said) {
  Lines lines(text);
  ReaderFor(options)(&lines, said);
  return lines.empty() ? "" : "not understood: " + lines.front();
}

}  // namespace truth
