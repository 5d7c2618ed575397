// SPDX-License-Identifier: MIT
// What is untrue in what a command said: leaves it to the command's subject.
#include <sstream>

#include "text/subjects.h"
#include "untrue/subjects.h"

namespace truth {

namespace {

// What was said, an object on each line.
std::string Parse(const std::string& out, std::vector<Json>* said) {
  std::istringstream lines(out);
  for (std::string line; std::getline(lines, line);) {
    said->push_back(Json::parse(line, nullptr, false));
    if (!said->back().is_object()) return "not JSON: " + line;
  }
  return "";
}

std::string Read(const Case& run, const ipodctl::Options& options, const std::string& out,
                 std::vector<Json>* said) {
  return run.text ? ReadText(options, out, said) : Parse(out, said);
}

std::string UntrueAnswer(const Question& question) {
  const std::string& command = question.options.command;
  if (command == "info") {
    return question.run.legacy() ? UntrueLegacyInfo(question) : UntrueInfo(question);
  }
  if (command == "browse") return UntrueList(question);
  if (command == "now" && question.options.follow) return UntrueEvents(question);
  if (command == "shuffle" || command == "repeat") return UntrueMode(question);
  if (command == "prefs") return UntruePreferences(question);
  if (command == "userdata") return UntrueUserData(question);
  if (command == "workout") return UntrueWorkout(question);
  if (command == "tour") return UntrueTour(question);
  if (command == "selftest") return UntrueSelfTest(question);
  return UntruePlayer(question);
}

}  // namespace

std::string WhatIsUntrue(const Case& run, const std::string& out, const Account& account,
                         const ipodsim::SimulatedIpod& ipod, std::int64_t now_us) {
  std::vector<Json> said;
  const ipodctl::CommandLine command = ipodctl::ParseCommandLine(run.arguments());
  const std::string unread = Read(run, *command.options, out, &said);
  if (!unread.empty()) return unread;
  if (said.empty()) return "nothing said";
  return UntrueAnswer({run, *command.options, said, account, ipod, now_us});
}

// Only lists and events are told piece by piece, and the tour, of whose text the last step may be
// half there.
std::string WhatIsUntrueSoFar(const Case& run, const std::string& out, const Account& account,
                              const ipodsim::SimulatedIpod& ipod, std::int64_t now_us) {
  std::vector<Json> said;
  const ipodctl::CommandLine command = ipodctl::ParseCommandLine(run.arguments());
  const std::string unread = Read(run, *command.options, out, &said);
  const bool tour = command.options->command == "tour";
  const bool piecemeal = tour || command.options->command == "browse" || command.options->follow;
  if (run.text && tour && !said.empty()) said.pop_back();
  if (!unread.empty() || said.empty() || (run.text && !piecemeal)) return unread;
  return UntrueAnswer({run, *command.options, said, account, ipod, now_us, true});
}

}  // namespace truth
