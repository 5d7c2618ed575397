// SPDX-License-Identifier: MIT
#include "command_line.h"

#include "simulator/settings/habits.h"
#include "simulator/settings/ipod_faults.h"
#include "simulator/settings/names.h"
#include "simulator/settings/profile.h"
#include "usage/build.h"
#include "usage/completion_script.h"
#include "usage/numbers.h"

namespace ipodsim {

namespace {

// One line each, of things that have a name and a description.
template <typename Things>
std::string List(const Things& things) {
  std::string list;
  for (const auto& thing : things) {
    const std::string name = thing.name;
    list += "  " + name + std::string(18 - name.size(), ' ') + thing.description + "\n";
  }
  return list;
}

std::string Footer() {
  return "Profiles:\n" + List(AllProfiles()) + "\nHabits:\n" + ListOfHabits() + "\nFaults:\n" +
         ListOfFaults() +
         "\nLibrary file, of which only tracks and their titles are required:\n"
         "  {\"name\": \"My iPod\",\n"
         "   \"tracks\": [{\"title\": \"Bridges\", \"artist\": \"The Hum\", \"album\": \"Spans\",\n"
         "               \"genre\": \"Rock\", \"composer\": \"A. Beam\", \"lyrics\": \"...\",\n"
         "               \"length_ms\": 215000, \"number\": 1, \"kind\": \"music\",\n"
         "               \"artwork\": true, \"chapters\": [\"Near\", \"Far\"]}],\n"
         "   \"playlists\": [{\"name\": \"Runs\", \"tracks\": [0]},\n"
         "                 {\"name\": \"Folder\", \"playlists\": [...]}]}\n"
         "  A kind is music, audiobook, podcast or video; tracks count from 0.\n"
         "\nExamples:\n"
         "  ipodsim --link /tmp/ipod\n"
         "  ipodsim --link /tmp/ipod --profile classic --trace\n"
         "  ipodsim --link /tmp/ipod --storage workouts --ask-during-session\n"
         "  ipodsim --link /tmp/ipod --library music.json --fault flipped-bits --seed 7\n"
         "  ipodsim --link /tmp/ipod --profile strict --habit no-name --baud 57600\n"
         "\nExit status:\n"
         "  0   the accessory made no protocol mistake\n"
         "  1   it made some; they are listed\n"
         "  64  the command line is wrong\n"
         "  66  the library file cannot be read\n"
         "  73  the terminal, the link, the storage folder or the recording cannot\n"
         "      be made, or the link is in use\n";
}

}  // namespace

std::string ListOfFaults() { return List(Faults::All()); }

std::string ListOfHabits() { return List(AllHabits()); }

CommandLine::CommandLine() {
  app_.name("ipodsim");
  app_.formatter(formatter_);
  app_.footer(Footer());
  formatter_->SetUsage(&app_, "ipodsim [OPTIONS]");
  app_.set_help_flag("-h,--help", "show this help");
  app_.set_version_flag("--version", std::string("ipodsim ") + usage::kBuild,
                        "show the version and the commit");
  AddLine();
  AddIpod();
  AddTelling();
}

void CommandLine::AddLine() {
  app_.add_option("--link", options_.link,
                  "link to the terminal, made and removed by ipodsim; not one in use")
      ->option_text("FILE");
  app_.add_option("--baud", options_.baud,
                  "speed of the line, such as 57600, at 10.5 bits a byte; none when not given")
      ->check(CLI::Range(300u, 4000000u))
      ->option_text("N");
}

void CommandLine::AddIpod() {
  CLI::Option* profile = app_.add_option("--profile", options_.profile, "which iPod to be (nano)");
  profile->option_text("NAME");
  values_.Add(profile, NamesOf(AllProfiles()));
  app_.add_option("--library", options_.library, "JSON file with the media; made up when not given")
      ->option_text("FILE");
  app_.add_option("--model-id", options_.model_id,
                  "8 hex digits instead of the profile's; consoles tell models apart by them")
      ->option_text("ID");
  app_.add_option("--storage", options_.storage,
                  "folder for the workouts, gym-0001.xml and so on; not kept when not given")
      ->option_text("DIR");
  CLI::Option* fault = app_.add_option("--fault", options_.faults,
                                       "a fault to switch on; repeat for more; help lists them");
  fault->allow_extra_args(false)->option_text("NAME");
  values_.Add(fault, NamesOf(Faults::All()));
  CLI::Option* habit =
      app_.add_option("--habit", options_.habits,
                      "a way to differ from the common iPod; repeat for more; help lists them");
  habit->allow_extra_args(false)->option_text("NAME");
  values_.Add(habit, NamesOf(AllHabits()));
  app_.add_flag("--ask-during-session", options_.asks_during_session,
                "ask about Sports and Storage again whenever the accessory asks the same");
  app_.add_option("--seed", options_.seed, "for all that is drawn: media, delays, faults (1)")
      ->check(usage::WholeNumber())
      ->option_text("N");
}

void CommandLine::AddTelling() {
  app_.add_option("--capture", options_.capture,
                  "record the line, for Wireshark; - is standard output")
      ->option_text("FILE");
  app_.add_flag("--trace", options_.trace, "every frame as one line on standard error");
  app_.add_flag("--completion{bash}", options_.completion,
                "print a script that completes the command line")
      ->check(CLI::IsMember(usage::Shells()))
      ->option_text("[=" + CLI::detail::join(usage::Shells(), "|") + "]");
}

std::vector<usage::ManualPage> CommandLine::ManualPages() const {
  return usage::ManualPages(app_, *formatter_);
}

}  // namespace ipodsim
