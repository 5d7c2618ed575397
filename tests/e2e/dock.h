// SPDX-License-Identifier: MIT
// A simulated iPod on a pseudo-terminal, with a small library that tests know by heart.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "process.h"
#include "simulator/pty/pty_server.h"

namespace e2e {

/// Zoe's iPod: three artists, four albums, nine tracks, two playlists, a book, a podcast, a video.
extern const char* const kLibrary;

ipodsim::Settings SettingsOf(ipodsim::Profile profile);
/// A library of `count` tracks "Track 000", "Track 001" ... and nothing else.
ipodsim::Library NumberedTracks(int count);

/// A new empty folder, removed with all that is in it.
class TemporaryFolder {
 public:
  TemporaryFolder();
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  std::string path(const std::string& name) const { return folder_ + "/" + name; }
  /// Writes a file and returns its path.
  std::string Write(const std::string& name, const std::string& content) const;

 private:
  std::string folder_;
};

/// A docked iPod for ipodctl to drive.
class Dock {
 public:
  explicit Dock(ipodsim::Settings settings = SettingsOf(ipodsim::Profile::kNano));

  std::string device() const { return server_.device_path(); }
  const ipodsim::PtyServer& server() const { return server_; }

  /// Runs ipodctl on this dock.
  Ended Ipodctl(const std::vector<std::string>& arguments) const;
  /// Starts ipodctl on this dock: most of a run is waiting, so that tests run several at once.
  std::unique_ptr<Process> Start(std::vector<std::string> arguments) const;

  ipodsim::PlayerState state() const;
  /// Title of the loaded track; empty when there is none.
  std::string title() const;
  /// The protocol mistakes so far, one a line.
  std::string mistakes() const;

 private:
  ipodsim::PtyServer server_;
};

}  // namespace e2e
