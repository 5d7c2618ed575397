// SPDX-License-Identifier: MIT
// The orders in which names and tracks are listed.

#pragma once

#include <string>
#include <vector>

#include "library.h"

namespace ipodsim {

enum class Sort : std::uint8_t {
  kGenre = 0,
  kArtist = 1,
  kComposer = 2,
  kAlbum = 3,
  kName = 4,
  kPlaylist = 5,
  kDefault = 0xFF,
};

/// What names are compared by: their bytes, but with the Latin letters of both cases together.
std::string SortKey(const std::string& name);

/// Orders positions in Library::tracks. kPlaylist and kDefault leave them as they are.
void SortTracks(const Library& library, Sort sort, std::vector<std::size_t>* tracks);

}  // namespace ipodsim
