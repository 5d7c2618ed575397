// SPDX-License-Identifier: MIT
#include <cstdio>
#include <map>

#include "commands.h"
#include "report.h"

namespace {

using reliability::Options;

int List(const Options& /*options*/) {
  for (const auto& scenario : reliability::AllScenarios()) {
    std::printf("%-26s %s\n", scenario.name, scenario.what);
  }
  return 0;
}

}  // namespace

int main(int count, char** arguments) {
  reliability::SetProgramName(arguments[0]);
  Options options;
  if (const auto status = ReadOptions(count, arguments, &options)) return *status;
  const std::map<std::string, int (*)(const Options&)> commands = {
      {"cycles", reliability::RunCycles},
      {"destroy", reliability::RunDestroy},
      {"faults", reliability::RunFaults},
      {"schedules", reliability::RunSchedules},
      {"traces", reliability::RunTraces},
      {"unplug", reliability::RunUnplug},
      {"list", List},
  };
  const auto command = commands.find(options.command);
  if (command != commands.end()) return command->second(options);
  std::fprintf(stderr, "reliability: there is no command '%s'; reliability --help tells which\n",
               options.command.c_str());
  return 64;
}
