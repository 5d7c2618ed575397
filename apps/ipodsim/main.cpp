// SPDX-License-Identifier: MIT
// The program ipodsim: a simulated iPod on a pseudo-terminal, until it is interrupted.

#include <signal.h>

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

#include "command_line.h"
#include "line_recording.h"
#include "simulator/files/folder_files.h"
#include "simulator/pty/pty_server.h"
#include "simulator/settings/habits.h"
#include "usage/complete.h"
#include "usage/completion_script.h"

using ipodsim::Options;

namespace {

constexpr int kMistakesMade = 1;
constexpr int kUsage = 64;         // the command line
constexpr int kBroken = 70;        // a fault of the program's own, or no memory
constexpr int kNoInput = 66;       // the library file
constexpr int kCannotCreate = 73;  // the terminal, the link, the storage folder or the recording

std::string ProfileNames() {
  std::string names;
  const auto& profiles = ipodsim::AllProfiles();
  for (std::size_t i = 0; i < profiles.size(); ++i) {
    if (i != 0) names += i + 1 == profiles.size() ? " and " : ", ";
    names += profiles[i].name;
  }
  return names;
}

int Fail(int status, const std::string& sentence) {
  std::cerr << "ipodsim: " << sentence << "\n";
  return status;
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

// What is asked of the program itself rather than of an iPod: nothing if nothing is.
std::string Told(const Options& options) {
  const auto asks_help = [](const std::vector<std::string>& names) {
    return std::find(names.begin(), names.end(), "help") != names.end();
  };
  if (asks_help(options.faults)) return ipodsim::ListOfFaults();
  if (asks_help(options.habits)) return ipodsim::ListOfHabits();
  if (options.completion.empty()) return {};
  return usage::CompletionScript("ipodsim", options.completion);
}

int Run(int argc, char** argv) {
  ipodsim::CommandLine line;
  if (argc > 1 && argv[1] == std::string(usage::kCompleteArgument)) {
    std::cout << usage::Complete(line.app(), line.values(), {argv + 2, argv + argc});
    return 0;
  }
  try {
    line.app().parse(argc, argv);
  } catch (const CLI::Success& success) {
    return line.app().exit(success);
  } catch (const CLI::ParseError& error) {
    return Fail(kUsage, std::string(error.what()) + "; try 'ipodsim --help'");
  }
  const Options& options = line.options();
  const std::string told = Told(options);
  if (!told.empty()) {
    std::cout << told;
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
