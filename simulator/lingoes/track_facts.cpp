// SPDX-License-Identifier: MIT
// Lays out the facts of a track.

#include "track_facts.h"

#include "artwork.h"
#include "playback.h"

namespace ipodsim {
namespace {

constexpr std::uint32_t kIsAudiobook = 0x01;
constexpr std::uint32_t kHasChapters = 0x02;
constexpr std::uint32_t kHasArtwork = 0x04;
constexpr std::uint32_t kHasLyrics = 0x08;
constexpr std::uint32_t kIsVideo = 0x80;

// Noon, Monday, 1 September 2008: second, minute, hour, day, month, year (2), weekday.
constexpr std::uint8_t kReleased[] = {0, 0, 12, 1, 9, 0x07, 0xD8, 1};

void PutCapabilities(Bytes& bytes, const Track& track) {
  std::uint32_t bits = 0;
  if (track.kind == MediaKind::kAudiobook) bits |= kIsAudiobook;
  if (!track.chapters.empty()) bits |= kHasChapters;
  if (track.artwork) bits |= kHasArtwork;
  if (!track.lyrics.empty()) bits |= kHasLyrics;
  if (track.kind == MediaKind::kVideo) bits |= kIsVideo;
  Put32(bytes, bits);
  Put32(bytes, static_cast<std::uint32_t>(track.length_ms));
  Put16(bytes, static_cast<std::uint32_t>(track.chapters.size()));
}

void PutFact(Bytes& bytes, TrackFact fact, const Track& track) {
  switch (fact) {
    case TrackFact::kCapabilities:
      PutCapabilities(bytes, track);
      break;
    case TrackFact::kChapter:
      Put32(bytes, 0);
      PutText(bytes, track.title);
      break;
    case TrackFact::kPodcast:
      PutText(bytes, track.kind == MediaKind::kPodcast ? track.album : "");
      break;
    case TrackFact::kReleaseDate:
      bytes.insert(bytes.end(), std::begin(kReleased), std::end(kReleased));
      break;
    case TrackFact::kDescription:
      PutText(bytes, "");
      break;
    case TrackFact::kTitle:
      PutText(bytes, track.title);
      break;
    case TrackFact::kArtist:
      PutText(bytes, track.artist);
      break;
    case TrackFact::kAlbum:
      PutText(bytes, track.album);
      break;
    case TrackFact::kGenre:
      PutText(bytes, track.genre);
      break;
    case TrackFact::kComposer:
      PutText(bytes, track.composer);
      break;
    case TrackFact::kLyrics:
      bytes.insert(bytes.end(), {0, 0, 0});
      PutText(bytes, track.lyrics);
      break;
    case TrackFact::kArtwork:
      PutArtworkCounts(bytes, track);
      break;
  }
}

}  // namespace

void AnswerTrackFact(Link* link, const Player& player, const Request& request,
                     const std::vector<TrackFact>& by_type, std::uint16_t answer) {
  const Track* track = TrackWithChapterOrRefusal(link, player, request);
  if (track == nullptr) return;
  const std::uint8_t type = request.data[0];
  if (type >= by_type.size()) {
    link->Refuse(request, MistakeKind::kBadParameter, "track information " + std::to_string(type));
    return;
  }
  Bytes data = {type};
  PutFact(data, by_type[type], *track);
  link->Reply(request, answer, data);
}

}  // namespace ipodsim
