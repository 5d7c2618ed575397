// SPDX-License-Identifier: MIT
// A simulated iPod on a pseudo-terminal, with a small library that tests know by heart.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "simulator/pty/pty_server.h"
#include "support/process.h"

namespace e2e {

/// Zoe's iPod: three artists, four albums, nine tracks, two playlists, a book, a podcast, a video.
extern const char* const kLibrary;

ipodsim::Settings SettingsOf(ipodsim::Profile profile);
/// A library of `count` tracks "Track 000", "Track 001" ... and nothing else.
ipodsim::Library NumberedTracks(int count);

/// A docked iPod for ipodctl to drive.
class DockedIpod {
 public:
  explicit DockedIpod(ipodsim::Settings settings = SettingsOf(ipodsim::Profile::kNano));

  std::string device() const { return server_.device_path(); }
  const ipodsim::PtyServer& server() const { return server_; }

  /// Runs ipodctl on it.
  test::Ended Ipodctl(const std::vector<std::string>& arguments) const;
  /// Starts ipodctl on it: most of a run is waiting, so that tests run several at once.
  std::unique_ptr<test::Process> Start(std::vector<std::string> arguments) const;

  ipodsim::PlayerState state() const;
  /// Title of the loaded track; empty when there is none.
  std::string title() const;
  /// The protocol mistakes so far, one a line.
  std::string mistakes() const;

 private:
  ipodsim::PtyServer server_;
};

}  // namespace e2e
