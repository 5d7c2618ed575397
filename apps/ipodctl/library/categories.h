// SPDX-License-Identifier: MIT
// The categories of the iPod's database: their names on the command line, and how they nest.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace ipodctl {

struct Category {
  unsigned char code;    // on the wire
  const char* name;      // plural, as it is typed
  const char* singular;  // for messages; accepted too
  unsigned char next;    // what selecting a record of it leads to; a track leads nowhere
};

constexpr unsigned char kPlaylists = 1;
constexpr unsigned char kArtists = 2;
constexpr unsigned char kAlbums = 3;
constexpr unsigned char kGenres = 4;
constexpr unsigned char kTracks = 5;

/// In the order in which an overview shows them.
const std::vector<Category>& AllCategories();
const Category& CategoryByCode(unsigned char code);
std::optional<Category> CategoryByName(const std::string& name);
/// "playlists, artists, ... or tracks", for messages and help.
std::string CategoryNames();

}  // namespace ipodctl
