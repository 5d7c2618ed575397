// SPDX-License-Identifier: MIT
#include "options.h"

#include <cstdio>
#include <cstdlib>
#include <functional>
#include <map>

namespace reliability {
namespace {

constexpr const char* kHelp =
    "usage: reliability COMMAND [OPTION VALUE]...\n"
    "\n"
    "Plays scenarios of a host and a simulated iPod in a virtual world, and looks for what goes "
    "wrong.\n"
    "Prints its figure, its seed, its time and its rate; ends with 1 when something was found.\n"
    "\n"
    "  schedules   under many orders of the threads\n"
    "  traces      that a seed gives the same trace twice; prints the hash of all of them\n"
    "  faults      while each call of each platform service fails in turn, and each allocation\n"
    "  destroy     ended between any two calls: destroyed, closed, opened, copied\n"
    "  unplug      while the cable is pulled at every byte and every decision of the schedule\n"
    "  cycles      the cable pulled and put back again and again in one session\n"
    "  list        the scenarios\n"
    "\n"
    "  --scenario NAME        this one alone (may be repeated)\n"
    "  --runs N               schedules, seeds or cycles (1000)\n"
    "  --minutes N            schedules: for so long instead\n"
    "  --seed S               of the first run (1)\n"
    "  --strategy pct|uniform schedules: random priorities with change points (pct), or any thread "
    "at\n"
    "                         every decision\n"
    "  --depth D              change points (3)\n"
    "  --points K             decisions from which they are drawn (500)\n"
    "  --pauses N             before one service call in N a thread loses its processor for up to "
    "40 ms\n"
    "  --replay LIST          one run of a scenario with the schedule that a failure told\n"
    "  --first N              faults, destroy, unplug: the first N places of each kind alone\n"
    "  --every N              faults and unplug: each Nth place alone\n"
    "  --at N                 the Nth place alone\n"
    "  --service NAME         faults: of this service alone\n"
    "  --code N               faults: with this code alone\n"
    "  --for-ever yes|no      faults: from then on, or once\n"
    "  --action NAME          destroy and unplug: this one alone\n"
    "  --most N               faults, destroy, unplug: ends when N kinds have found something\n"
    "  --shorten yes|no       schedules: looks for the shortest one that still fails (yes)\n";

bool ReadNumber(const std::string& text, std::uint64_t* number) {
  char* end = nullptr;
  *number = std::strtoull(text.c_str(), &end, 10);
  return !text.empty() && *end == '\0' && text.front() != '-';
}

template <class Number>
std::function<bool(const std::string&)> Into(Number* destination) {
  return [destination](const std::string& text) {
    std::uint64_t number = 0;
    if (!ReadNumber(text, &number)) return false;
    *destination = static_cast<Number>(number);
    return true;
  };
}

std::map<std::string, std::function<bool(const std::string&)>> Readers(Options* options) {
  return {
      {"--runs", Into(&options->runs)},
      {"--seed", Into(&options->seed)},
      {"--depth", Into(&options->depth)},
      {"--points", Into(&options->points)},
      {"--pauses", Into(&options->pauses)},
      {"--first", Into(&options->first)},
      {"--every", Into(&options->every)},
      {"--at", Into(&options->at)},
      {"--code", Into(&options->code)},
      {"--most", Into(&options->most)},
      {"--minutes",
       [options](const std::string& text) {
         options->minutes.emplace();
         return Into(&*options->minutes)(text);
       }},
      {"--strategy",
       [options](const std::string& text) {
         options->strategy = text == "pct" ? Strategy::kChangePoints : Strategy::kUniform;
         return text == "pct" || text == "uniform";
       }},
      {"--scenario",
       [options](const std::string& text) {
         options->scenarios.push_back(ScenarioNamed(text));
         return options->scenarios.back() != nullptr;
       }},
      {"--replay",
       [options](const std::string& text) {
         options->replay = DeviationsOf(text);
         return options->replay.has_value();
       }},
      {"--service",
       [options](const std::string& text) {
         options->service = text;
         return true;
       }},
      {"--action",
       [options](const std::string& text) {
         options->action = text;
         return true;
       }},
      {"--shorten",
       [options](const std::string& text) {
         options->shorten = text == "yes";
         return text == "yes" || text == "no";
       }},
      {"--for-ever",
       [options](const std::string& text) {
         options->for_ever_only = text == "yes";
         return text == "yes" || text == "no";
       }},
  };
}

}  // namespace

Places PlacesOf(const Options& options) {
  if (options.at != 0) return {options.at, options.at + 1};
  Places places;
  places.step = options.every == 0 ? 1 : options.every;
  if (options.first != 0) places.end = places.first + options.first * places.step;
  return places;
}

const char* StrategyName(Strategy strategy) {
  return strategy == Strategy::kChangePoints ? "pct" : "uniform";
}

std::optional<int> ReadOptions(int count, char** arguments, Options* options) {
  if (count < 2 || std::string(arguments[1]) == "--help") {
    std::fputs(kHelp, count < 2 ? stderr : stdout);
    return count < 2 ? 64 : 0;
  }
  options->command = arguments[1];
  const auto readers = Readers(options);
  for (int i = 2; i < count; i += 2) {
    const auto reader = readers.find(arguments[i]);
    if (reader == readers.end() || i + 1 == count || !reader->second(arguments[i + 1])) {
      std::fprintf(stderr, "reliability: '%s' does not fit; reliability --help tells what does\n",
                   arguments[i]);
      return 64;
    }
  }
  if (options->scenarios.empty()) {
    for (const Scenario& scenario : AllScenarios()) options->scenarios.push_back(&scenario);
  }
  return std::nullopt;
}

}  // namespace reliability
