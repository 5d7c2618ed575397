// SPDX-License-Identifier: MIT
// Lays out the facts of a track.

#include "track_facts.h"

namespace ipodsim {
namespace {

constexpr std::uint32_t kIsAudiobook = 0x01;
constexpr std::uint32_t kHasChapters = 0x02;
constexpr std::uint32_t kHasArtwork = 0x04;
constexpr std::uint32_t kHasLyrics = 0x08;
constexpr std::uint32_t kIsVideo = 0x80;

}  // namespace

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

void PutLyrics(Bytes& bytes, const Track& track) {
  bytes.insert(bytes.end(), {0, 0, 0});
  PutText(bytes, track.lyrics);
}

}  // namespace ipodsim
