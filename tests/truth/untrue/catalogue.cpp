// SPDX-License-Identifier: MIT
// Reads the iPod's lists, as it would itself.
#include "untrue/catalogue.h"

#include <algorithm>
#include <map>

namespace truth {

using ipodsim::Category;

Category CategoryOf(const std::string& name) {
  const std::map<std::string, Category> all = {
      {"playlists", Category::kPlaylist},   {"nested-playlists", Category::kNestedPlaylist},
      {"artists", Category::kArtist},       {"albums", Category::kAlbum},
      {"genres", Category::kGenre},         {"composers", Category::kComposer},
      {"audiobooks", Category::kAudiobook}, {"podcasts", Category::kPodcast},
      {"tracks", Category::kTrack}};
  return all.at(name);
}

Category Below(Category category) {
  switch (category) {
    case Category::kArtist:
    case Category::kComposer:
      return Category::kAlbum;
    case Category::kGenre:
      return Category::kArtist;
    default:
      return Category::kTrack;
  }
}

std::vector<std::string> NamesIn(ipodsim::Database& database, Category category) {
  std::vector<std::string> names;
  for (std::uint32_t i = 0; i < database.Count(category); ++i) {
    names.push_back(database.Name(category, i));
  }
  return names;
}

std::uint32_t IndexOf(ipodsim::Database& database, Category category, const std::string& step) {
  if (step.front() == '@') return static_cast<std::uint32_t>(std::stoul(step.substr(1)));
  const std::vector<std::string> names = NamesIn(database, category);
  const auto found = std::find(names.begin(), names.end(), step);
  return static_cast<std::uint32_t>(found - names.begin());
}

bool ListsByName(const Question& question) {
  return WasRefused(question, ipodsim::kExtended, ipodsim::extended::kSelectDbRecord);
}

}  // namespace truth
