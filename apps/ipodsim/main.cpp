// SPDX-License-Identifier: MIT
// The program ipodsim: a simulated iPod on a pseudo-terminal, until it is interrupted.

#include <signal.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <charconv>
#include <cstdio>
#include <exception>
#include <iomanip>
#include <iostream>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

#include "line_recording.h"
#include "simulator/files/folder_files.h"
#include "simulator/pty/pty_server.h"
#include "simulator/settings/habits.h"

namespace {

constexpr int kMistakesMade = 1;
constexpr int kUsage = 64;         // the command line
constexpr int kBroken = 70;        // a fault of the program's own, or no memory
constexpr int kNoInput = 66;       // the library file
constexpr int kCannotCreate = 73;  // the terminal, the link, the storage folder or the recording

struct Options {
  std::string link;
  std::string profile = "nano";
  std::string library;
  std::optional<std::string> storage;
  std::string model_id;
  std::vector<std::string> faults;
  std::vector<std::string> habits;
  std::uint32_t baud = 0;
  std::string capture;
  std::uint64_t seed = 1;
  bool asks_during_session = false;
  bool trace = false;
};

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

std::string ProfileNames() {
  std::string names;
  const auto& profiles = ipodsim::AllProfiles();
  for (std::size_t i = 0; i < profiles.size(); ++i) {
    if (i != 0) names += i + 1 == profiles.size() ? " and " : ", ";
    names += profiles[i].name;
  }
  return names;
}

std::string Footer() {
  return "Profiles:\n" + List(ipodsim::AllProfiles()) + "\nHabits:\n" + List(ipodsim::AllHabits()) +
         "\nFaults:\n" + List(ipodsim::Faults::All()) +
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

int Fail(int status, const std::string& sentence) {
  std::cerr << "ipodsim: " << sentence << "\n";
  return status;
}

void Describe(CLI::App* app, Options* options) {
  app->description(
      "A simulated iPod on a pseudo-terminal. It serves until it is interrupted and\n"
      "then lists the protocol mistakes that it met.");
  app->footer(Footer());
  app->set_version_flag("--version", "ipodsim " IPODSIM_VERSION);
  app->add_option("--link", options->link,
                  "link to the terminal, made and removed by ipodsim; not one in use");
  app->add_option("--profile", options->profile, "which iPod to be (nano)");
  app->add_option("--library", options->library,
                  "JSON file with the media; made up when not given");
  app->add_option("--model-id", options->model_id,
                  "8 hex digits instead of the profile's; consoles tell models apart by them");
  app->add_option("--storage", options->storage,
                  "folder for the workouts, gym-0001.xml and so on; not kept when not given");
  app->add_option("--fault", options->faults,
                  "a fault to switch on; repeat for more; help lists them")
      ->allow_extra_args(false);
  app->add_option("--habit", options->habits,
                  "a way to differ from the common iPod; repeat for more; help lists them")
      ->allow_extra_args(false);
  app->add_option("--baud", options->baud,
                  "speed of the line, such as 57600, at 10.5 bits a byte; none when not given")
      ->check(CLI::Range(300u, 4000000u));
  app->add_option("--capture", options->capture,
                  "record the line, for Wireshark; - is standard output");
  app->add_flag("--ask-during-session", options->asks_during_session,
                "ask about Sports and Storage again whenever the accessory asks the same");
  app->add_option("--seed", options->seed, "for all that is drawn: media, delays, faults (1)");
  app->add_flag("--trace", options->trace, "every frame as one line on standard error");
}

// False when the text is no model id.
bool ParseModelId(const std::string& text, std::optional<std::uint32_t>* id) {
  if (text.size() != 8) return false;
  std::uint32_t value = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), value, 16);
  *id = value;
  return result.ec == std::errc{} && result.ptr == text.data() + text.size();
}

int TakeLibrary(const Options& options, ipodsim::Settings* settings) {
  if (options.library.empty()) {
    settings->library = ipodsim::Library::Generate(options.seed);
    return 0;
  }
  ipodsim::LibraryResult result = ipodsim::LoadLibrary(options.library);
  if (!result.library) return Fail(kNoInput, result.error);
  settings->library = std::move(*result.library);
  return 0;
}

// Fills the settings; a status other than 0 ends the program.
int Configure(const Options& options, ipodsim::Settings* settings) {
  const auto profile = ipodsim::ProfileByName(options.profile);
  if (!profile) {
    return Fail(kUsage,
                "there is no profile '" + options.profile + "'; it is one of " + ProfileNames());
  }
  settings->profile = *profile;
  settings->seed = options.seed;
  settings->asks_during_session = options.asks_during_session;
  if (!options.model_id.empty() && !ParseModelId(options.model_id, &settings->model_id)) {
    return Fail(kUsage, "'" + options.model_id + "' is not 8 hex digits");
  }
  for (const std::string& name : options.faults) {
    if (!settings->faults.Enable(name)) {
      return Fail(kUsage, "there is no fault '" + name + "'; --fault help lists them");
    }
  }
  if (options.storage) {
    const ipodsim::FolderResult folder = ipodsim::OpenFeatureFolder(*options.storage);
    if (folder.files == nullptr) return Fail(kCannotCreate, folder.error);
    settings->storage.files = folder.files;
  }
  const int status = TakeLibrary(options, settings);
  if (status != 0) return status;
  for (const std::string& name : options.habits) {
    if (ipodsim::ApplyHabit(name, settings)) continue;
    return Fail(kUsage, "there is no habit '" + name + "'; --habit help lists them");
  }
  return 0;
}

int Report(const std::vector<ipodsim::Mistake>& mistakes, std::ostream& out) {
  out << mistakes.size() << " protocol mistake" << (mistakes.size() == 1 ? "" : "s") << "\n";
  for (const auto& mistake : mistakes) {
    out << "  " << std::fixed << std::setprecision(6) << static_cast<double>(mistake.at) / 1e6
        << " s  " << mistake.name << ": " << mistake.detail << "\n";
  }
  return mistakes.empty() ? 0 : kMistakesMade;
}

int Serve(const Options& options, ipodsim::Settings settings) {
  // Whoever reads our output may leave before us; the link must not stay behind.
  signal(SIGPIPE, SIG_IGN);
  // Blocked here and in the server's thread, which inherits the mask: sigwait gets them.
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGINT);
  sigaddset(&signals, SIGTERM);
  sigaddset(&signals, SIGHUP);
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);

  ipodsim::PtyServer server(std::move(settings), options.link, options.baud);
  if (options.trace) {
    server.set_trace(
        [](const ipodsim::TraceLine& line) { std::cerr << ipodsim::Format(line) + "\n"; });
  }
  if (!options.capture.empty()) {
    std::string reason;
    server.set_tap(RecordLine(options.capture, options.baud, &reason));
    if (!reason.empty())
      return Fail(kCannotCreate, "cannot record to " + options.capture + ": " + reason);
  }
  if (!server.Start()) return Fail(kCannotCreate, server.error());
  // A recording has standard output to itself.
  std::ostream& out = options.capture == "-" ? std::cerr : std::cout;
  out << "serving an iPod (" << options.profile << ") on " << server.device_path() << std::endl;
  int received = 0;
  sigwait(&signals, &received);
  return Report(server.Stop(), out);
}

int Run(int argc, char** argv) {
  Options options;
  CLI::App app;
  app.name("ipodsim");
  Describe(&app, &options);
  try {
    app.parse(argc, argv);
  } catch (const CLI::Success& success) {
    return app.exit(success);
  } catch (const CLI::ParseError& error) {
    return Fail(kUsage, std::string(error.what()) + "; try 'ipodsim --help'");
  }
  const auto asks_help = [](const std::vector<std::string>& names) {
    return std::find(names.begin(), names.end(), "help") != names.end();
  };
  if (asks_help(options.faults) || asks_help(options.habits)) {
    std::cout << (asks_help(options.faults) ? List(ipodsim::Faults::All())
                                            : List(ipodsim::AllHabits()));
    return 0;
  }
  ipodsim::Settings settings;
  const int status = Configure(options, &settings);
  return status != 0 ? status : Serve(options, std::move(settings));
}

}  // namespace

int main(int argc, char** argv) try {
  const int status = Run(argc, argv);
  std::cout.flush();
  std::fflush(stdout);
  return status;
} catch (const std::exception& problem) {
  std::fprintf(stderr, "ipodsim: %s\n", problem.what());
  return kBroken;
}
