// SPDX-License-Identifier: MIT
// The commands that show and set what the iPod keeps: prefs, userdata.
#include "command_line/flags.h"
#include "settings/preference_table.h"

namespace ipodctl {

namespace {

constexpr const char* kPrefsFooter =
    "A preference that is set holds until the iPod is taken out of the dock; --keep lets it hold\n"
    "after that. Whoever identifies to the iPod sets some of them anew, and so does every "
    "command:\n"
    "video-out, line-out to on, screen to fill, signal to ntsc, connection to composite, aspect "
    "to\n"
    "16:9.\n"
    "\n"
    "Examples:\n"
    "  ipodctl prefs                     all of them\n"
    "  ipodctl prefs get line-out\n"
    "  ipodctl prefs set aspect 16:9";

constexpr const char* kUserdataFooter =
    "The weight is in the iPod's own unit, from 0 to 65535.\n"
    "\n"
    "Examples:\n"
    "  ipodctl userdata\n"
    "  ipodctl userdata --weight 72 --json";

// Each preference has settings of its own.
void AddSettings(CommandLineParser& parser, const CLI::Option* value) {
  for (const Preference& preference : AllPreferences()) {
    std::vector<std::string> settings;
    for (const PreferenceSetting& setting : preference.settings) {
      settings.emplace_back(setting.name);
    }
    parser.values().AddAfter(preference.name, value, settings);
  }
}

void AddAction(CommandLineParser& parser, CLI::App* prefs, bool sets) {
  Options& options = parser.options();
  CLI::App* command = prefs->add_subcommand(sets ? "set" : "get", sets ? "Set one" : "Show one");
  command->fallthrough();
  command->group("Actions");
  command->set_help_flag("-h,--help", "Show this help");
  command->footer(prefs->get_footer());
  CLI::Option* name = command->add_option("NAME", options.preference)->required();
  std::vector<std::string> names;
  for (const Preference& preference : AllPreferences()) names.emplace_back(preference.name);
  parser.values().Add(name, names);
  if (sets) {
    AddSettings(parser, command->add_option("VALUE", options.setting)->required());
    command->add_flag("--keep", options.keep, "Let it hold after undocking");
  }
  parser.SetUsage(command, sets ? "ipodctl prefs set NAME VALUE" : "ipodctl prefs get NAME");
}

void CheckPreference(const Options& options) {
  if (options.preference.empty()) return;
  const Preference* preference = PreferenceByName(options.preference);
  if (preference == nullptr) {
    throw UsageProblem{"'" + options.preference + "' is not a preference (" + PreferenceNames() +
                       ")"};
  }
  if (!options.setting.empty() && !SettingByName(*preference, options.setting)) {
    throw UsageProblem{"'" + options.setting + "' is not a setting of " + preference->name + " (" +
                       SettingNames(*preference) + ")"};
  }
}

}  // namespace

void AddPrefsCommand(CommandLineParser& parser) {
  CLI::App* prefs = parser.AddCommand("prefs", "Settings", "Show or set the iPod's preferences",
                                      "[get NAME | set NAME VALUE]", kPrefsFooter);
  prefs->require_subcommand(0, 1);
  std::string names = "Preferences:\n";
  for (const Preference& preference : AllPreferences()) {
    std::string name = preference.name;
    name.resize(18, ' ');
    names += "  " + name + preference.description + ": " + SettingNames(preference) + "\n";
  }
  prefs->footer(names + "\n" + prefs->get_footer());
  AddAction(parser, prefs, false);
  AddAction(parser, prefs, true);
  parser.AddCheck([&parser] { CheckPreference(parser.options()); });
}

void AddUserdataCommand(CommandLineParser& parser) {
  CLI::App* userdata =
      parser.AddCommand("userdata", "Workouts", "Show or set what the iPod knows about its user",
                        "[--weight N]", kUserdataFooter);
  userdata->add_option("--weight", parser.options().user_weight, "The weight to set")
      ->check(CLI::Range(0U, 65535U))
      ->option_text("N");
}

}  // namespace ipodctl
