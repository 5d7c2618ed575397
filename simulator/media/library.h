// SPDX-License-Identifier: MIT
// The media that an iPod carries: tracks, and playlists that may hold playlists.

#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ipodsim {

enum class MediaKind { kMusic, kAudiobook, kPodcast, kVideo };

struct Track {
  std::string title;
  std::string artist;
  std::string album;  // the book of an audiobook's part, the show of a podcast's episode
  std::string genre;
  std::string composer;
  std::string lyrics;
  std::int64_t length_ms = 0;
  int number = 0;  // within its album
  MediaKind kind = MediaKind::kMusic;
  bool artwork = false;
  std::vector<std::string> chapters = {};  // their names; all are equally long
};

struct Playlist {
  std::string name;
  std::vector<std::size_t> tracks;  // positions in Library::tracks
  std::vector<Playlist> playlists;  // of a folder
};

struct Library {
  std::string name;  // the iPod's own
  std::vector<Track> tracks;
  std::vector<Playlist> playlists;

  /// About 2,000 tracks with names in several scripts, accents, emoji and a few very long ones;
  /// playlists, folders of playlists, audiobooks, podcasts and videos. Same seed, same library.
  static Library Generate(std::uint64_t seed);
  /// The one of seed 1, made once.
  static const Library& Default();
};

/// A library read from JSON, or one sentence that says why it could not be.
///
///   {"name": "Zoe's iPod",
///    "tracks": [{"title": "Bridges", "artist": "The Hum", "album": "Spans", "genre": "Rock",
///                "composer": "A. Beam", "lyrics": "...", "length_ms": 215000, "number": 1,
///                "kind": "music", "artwork": true, "chapters": ["Near", "Far"]}],
///    "playlists": [{"name": "Runs", "tracks": [0]},
///                  {"name": "Folder", "playlists": [{"name": "Hills", "tracks": [0]}]}]}
///
/// Only "tracks" and each track's "title" are required. "kind" is music, audiobook, podcast or
/// video. A playlist's tracks are positions in "tracks", counted from 0.
struct LibraryResult {
  std::optional<Library> library;
  std::string error;
};

LibraryResult LoadLibrary(const std::string& path);
LibraryResult ParseLibrary(std::string_view json, const std::string& source);

}  // namespace ipodsim
