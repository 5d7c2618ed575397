// SPDX-License-Identifier: MIT
// Orders names and tracks.

#include "track_order.h"

#include <algorithm>
#include <tuple>

namespace ipodsim {
namespace {

// Group, album, number, title, and the position so that equal tracks keep their order.
using Key = std::tuple<std::string, std::string, int, std::string, std::size_t>;

Key KeyOf(const Track& track, Sort sort, std::size_t position) {
  std::string group;
  if (sort == Sort::kGenre) group = SortKey(track.genre);
  if (sort == Sort::kComposer) group = SortKey(track.composer);
  if (sort == Sort::kArtist) group = SortKey(track.artist);
  const bool by_album = sort == Sort::kArtist || sort == Sort::kAlbum;
  return {std::move(group), by_album ? SortKey(track.album) : "", by_album ? track.number : 0,
          SortKey(track.title), position};
}

}  // namespace

std::string SortKey(const std::string& name) {
  std::string key = name;
  for (char& letter : key) {
    if (letter >= 'A' && letter <= 'Z') letter = static_cast<char>(letter - 'A' + 'a');
  }
  return key;
}

void SortTracks(const Library& library, Sort sort, std::vector<std::size_t>* tracks) {
  if (sort == Sort::kPlaylist || sort == Sort::kDefault) return;
  std::vector<Key> keys;
  for (const std::size_t position : *tracks) {
    keys.push_back(KeyOf(library.tracks[position], sort, position));
  }
  std::sort(keys.begin(), keys.end());
  for (std::size_t i = 0; i < keys.size(); ++i) (*tracks)[i] = std::get<4>(keys[i]);
}

}  // namespace ipodsim
