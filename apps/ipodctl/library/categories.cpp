// SPDX-License-Identifier: MIT
// The table of categories.
#include "library/categories.h"

namespace ipodctl {

const std::vector<Category>& AllCategories() {
  static const std::vector<Category> kAll = {
      {kPlaylists, "playlists", "playlist", kTracks},
      {9, "nested-playlists", "nested playlist", kTracks},
      {kArtists, "artists", "artist", kAlbums},
      {kAlbums, "albums", "album", kTracks},
      {kGenres, "genres", "genre", kArtists},
      {6, "composers", "composer", kAlbums},
      {7, "audiobooks", "audiobook", kTracks},
      {8, "podcasts", "podcast", kTracks},
      {kTracks, "tracks", "track", kTracks},
  };
  return kAll;
}

const Category& CategoryByCode(unsigned char code) {
  for (const Category& category : AllCategories()) {
    if (category.code == code) return category;
  }
  return AllCategories().back();
}

std::optional<Category> CategoryByName(const std::string& name) {
  for (const Category& category : AllCategories()) {
    if (name == category.name || name == category.singular) return category;
  }
  return std::nullopt;
}

std::string CategoryNames() {
  std::string names;
  const std::vector<Category>& all = AllCategories();
  for (std::size_t i = 0; i < all.size(); ++i) {
    if (i != 0) names += i + 1 == all.size() ? " or " : ", ";
    names += all[i].name;
  }
  return names;
}

}  // namespace ipodctl
