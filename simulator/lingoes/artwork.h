// SPDX-License-Identifier: MIT
// The Extended Interface's commands about the pictures of tracks. A track that has artwork has one
// picture, shown from its beginning to its end, in each format.

#pragma once

#include "simulator/player/player.h"
#include "simulator/wire/link.h"

namespace ipodsim {

class Artwork {
 public:
  Artwork(Link* link, const Player* player, const Settings& settings)
      : link_(link), player_(player), settings_(settings) {}

  bool Handle(const Request& request);

 private:
  void ReturnFormats(const Request& request);
  void ReturnTimes(const Request& request);
  void ReturnData(const Request& request);
  bool CheckPicture(const Request& request, const Track& track);

  Link* link_;
  const Player* player_;
  const Settings& settings_;
};

/// A format's identifier and its number of pictures, two bytes each, for each format; nothing for a
/// track without artwork.
void PutArtworkCounts(Bytes& bytes, const Track& track);

}  // namespace ipodsim
