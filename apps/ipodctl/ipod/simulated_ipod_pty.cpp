// SPDX-License-Identifier: MIT
// The simulated iPod on a thread of its own behind a pseudo-terminal.
#include <utility>

#include "console/failure.h"
#include "ipod/simulated_ipod.h"
#include "simulator/files/folder_files.h"
#include "simulator/pty/pty_server.h"
#include "simulator/settings/habits.h"
#include "simulator/settings/names.h"

namespace ipodctl {

namespace {

std::string ProfileNames() {
  std::string names;
  const std::vector<std::string> profiles = NamesForSimulation().profiles;
  for (std::size_t i = 0; i < profiles.size(); ++i) {
    if (i != 0) names += i + 1 == profiles.size() ? " or " : ", ";
    names += profiles[i];
  }
  return names;
}

// None: the simulated iPod keeps its files in memory.
std::shared_ptr<ipodsim::FeatureFiles> FilesFor(const SimulationOptions& options) {
  if (options.storage_folder.empty()) return nullptr;
  ipodsim::FolderResult folder = ipodsim::OpenFeatureFolder(options.storage_folder);
  if (folder.files == nullptr) throw CommandFailure(kInputFile, folder.error);
  return folder.files;
}

ipodsim::Library LibraryFor(const SimulationOptions& options) {
  if (options.library_file.empty()) return ipodsim::Library::Generate(options.seed);
  ipodsim::LibraryResult loaded = ipodsim::LoadLibrary(options.library_file);
  if (!loaded.library) throw CommandFailure(kInputFile, loaded.error);
  return std::move(*loaded.library);
}

[[noreturn]] void ThrowUnknown(const char* what, const std::string& name) {
  throw CommandFailure(kUsage, std::string("a simulated iPod has no ") + what + " '" + name +
                                   "'; 'ipodsim --help' lists them");
}

ipodsim::Settings SettingsFor(const SimulationOptions& options) {
  ipodsim::Settings settings;
  const auto profile = ipodsim::ProfileByName(options.profile);
  if (!profile) {
    throw CommandFailure(kUsage, "there is no simulated iPod '" + options.profile + "', only " +
                                     ProfileNames() + "; see 'ipodctl --help'");
  }
  settings.profile = *profile;
  settings.seed = options.seed;
  settings.storage.files = FilesFor(options);
  settings.library = LibraryFor(options);
  for (const std::string& name : options.faults) {
    if (!settings.faults.Enable(name)) ThrowUnknown("fault", name);
  }
  for (const std::string& name : options.habits) {
    if (!ipodsim::ApplyHabit(name, &settings)) ThrowUnknown("habit", name);
  }
  return settings;
}

}  // namespace

SimulationNames NamesForSimulation() {
  return {ipodsim::NamesOf(ipodsim::AllProfiles()), ipodsim::NamesOf(ipodsim::AllHabits()),
          ipodsim::NamesOf(ipodsim::Faults::All())};
}

class SimulatedIpod::Server : public ipodsim::PtyServer {
 public:
  explicit Server(const SimulationOptions& options)
      : PtyServer(SettingsFor(options), {}, options.baud), folder_(options.storage_folder) {}

  const std::string& folder() const { return folder_; }

 private:
  std::string folder_;
};

SimulatedIpod::SimulatedIpod(const SimulationOptions& options)
    : server_(std::make_unique<Server>(options)) {
  if (!server_->Start()) {
    throw CommandFailure(kFailed, "cannot dock the simulated iPod: " + server_->error());
  }
}

SimulatedIpod::~SimulatedIpod() = default;

std::string SimulatedIpod::device() const { return server_->device_path(); }

std::string SimulatedIpod::NewestFile() const {
  std::vector<std::string> names;
  server_->Inspect(
      [&names](const ipodsim::SimulatedIpod& ipod) { names = ipod.feature_files().Names(); });
  if (names.empty()) return {};
  return server_->folder().empty() ? names.back() : server_->folder() + "/" + names.back();
}

std::vector<std::string> SimulatedIpod::Stop() {
  std::vector<std::string> sentences;
  for (const ipodsim::Mistake& mistake : server_->Stop()) {
    sentences.push_back(mistake.name + (mistake.detail.empty() ? "" : ": " + mistake.detail));
  }
  return sentences;
}

}  // namespace ipodctl
