// SPDX-License-Identifier: MIT
// The legacy interface: --legacy for the commands that it has too, and selftest.
#include "command_line/groups.h"
#include "legacy/legacy_commands.h"

namespace ipodctl {

namespace {

constexpr const char* kSelfTestFooter =
    "Runs the self-test of a console's service screen, through the legacy interface: connection,\n"
    "information, two tracks of the first album, play, pause and stop. It plays music for some\n"
    "seconds. Each step's title and its last action are shown when the step is done; of a step\n"
    "that failed it is the action that did. The exit status is 0 when every step passed.\n"
    "\n"
    "Examples:\n"
    "  ipodctl selftest\n"
    "  ipodctl --simulated selftest --json";

/// What the legacy interface has no notion of, and what it does instead.
struct Unknown {
  const char* option;
  const char* instead;
};
constexpr Unknown kUnknown[] = {
    {"--no-idps", "it never identifies by tokens"},
    {"--model", "it introduces itself by a name of its own"},
};
constexpr const char* kFollow = "it is not told of changes; run 'now' again";

[[noreturn]] void Refuse(const char* option, const char* instead) {
  throw UsageProblem{std::string(option) + " does not go with the legacy interface: " + instead};
}

void CheckLegacy(CommandLineParser& parser) {
  const Options& options = parser.options();
  if (!options.legacy) return;
  if (!IsLegacyCommand(options.command)) {
    throw UsageProblem{"the legacy interface has no '" + options.command + "', only " +
                       LegacyCommandNames()};
  }
  for (const Unknown& unknown : kUnknown) {
    if (parser.app().count(unknown.option) != 0) Refuse(unknown.option, unknown.instead);
  }
  if (options.follow) Refuse("--follow", kFollow);
}

}  // namespace

void AddLegacyInterface(CommandLineParser& parser) {
  Options& options = parser.options();
  parser.app().add_flag("--legacy", options.legacy,
                        "Use the legacy interface, for " + LegacyCommandNames());
  const CLI::App* selftest = parser.AddCommand(
      "selftest", "Looking", "Test what is in the dock, step by step", "", kSelfTestFooter);
  parser.AddCheck([&parser, selftest] {
    if (selftest->parsed()) parser.options().legacy = true;
    CheckLegacy(parser);
  });
}

}  // namespace ipodctl
