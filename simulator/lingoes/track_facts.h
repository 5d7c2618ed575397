// SPDX-License-Identifier: MIT
// What both remote lingoes tell about a track. They number the facts differently.

#pragma once

#include <vector>

#include "simulator/player/player.h"
#include "simulator/wire/link.h"

namespace ipodsim {

enum class TrackFact : std::uint8_t {
  kCapabilities,  // bits (4 bytes), length in milliseconds (4), number of chapters (2)
  kChapter,       // the time into it (4 bytes) and its name; of the track itself
  kPodcast,
  kReleaseDate,
  kDescription,
  kTitle,
  kArtist,
  kAlbum,
  kGenre,
  kComposer,
  kLyrics,   // packet flags (1 byte) and number (2), which say that this is the only packet; text
  kArtwork,  // a format and its number of pictures (2 bytes each) for each format
};

/// Answers a request of the form type, track, chapter with that type's fact, or refuses it.
/// @param by_type the facts in the order in which the lingo numbers them
void AnswerTrackFact(Link* link, const Player& player, const Request& request,
                     const std::vector<TrackFact>& by_type, std::uint16_t answer);

}  // namespace ipodsim
