// SPDX-License-Identifier: MIT
// The database as an accessory walks it: categories of records that each selection narrows.

#pragma once

#include <map>
#include <string>

#include "library.h"
#include "track_order.h"

namespace ipodsim {

enum class Category : std::uint8_t {
  kTop = 0,
  kPlaylist = 1,
  kArtist = 2,
  kAlbum = 3,
  kGenre = 4,
  kTrack = 5,
  kComposer = 6,
  kAudiobook = 7,
  kPodcast = 8,
  kNestedPlaylist = 9,
};

enum class Hierarchy : std::uint8_t { kAudio = 1, kVideo = 2 };

/// Selections are ranked: playlist, nested playlist, audiobook and podcast come first, then genre,
/// then artist and composer, then album, then track. A category's records are those left by the
/// selections of lower rank, so selecting a genre again forgets the artist below it.
class Database {
 public:
  static constexpr std::uint32_t kAllRecords = 0xFFFFFFFF;

  explicit Database(const Library* library);

  void Reset(Hierarchy hierarchy);
  static bool IsCategory(std::uint8_t number) { return number >= 1 && number <= 9; }

  std::uint32_t Count(Category category);
  /// The index is below Count(category).
  const std::string& Name(Category category, std::uint32_t index);
  /// Narrows the database; kAllRecords takes the category's narrowing back. Tracks are not selected
  /// here: they are played.
  void Select(Category category, std::uint32_t index);
  /// How track lists are ordered from here on; kDefault depends on what is selected.
  void SetSort(Sort sort);

  /// The track list as it is narrowed now: positions in Library::tracks.
  std::vector<std::size_t> Tracks();

 private:
  struct Record {
    std::string name;
    std::size_t track = 0;
    const Playlist* playlist = nullptr;
  };
  using Records = std::vector<Record>;

  const Records& RecordsOf(Category category);
  Records ListPlaylists();
  Records ListNestedPlaylists();
  Records ListSeries(MediaKind kind);
  Records ListGroups(Category category);
  Records ListTracks();
  std::vector<std::size_t> TracksAbove(int rank);
  std::vector<std::size_t> BaseTracks();
  Sort OrderOfTracks() const;
  void ForgetFrom(int rank);

  const Library* library_;
  Hierarchy hierarchy_ = Hierarchy::kAudio;
  Sort sort_ = Sort::kDefault;
  Playlist everything_;  // the iPod's own playlist, first of the list
  std::map<Category, Record> selected_;
  const Playlist* folder_ = nullptr;   // of the nested playlists
  std::map<Category, Records> lists_;  // made when asked for, dropped at each selection
};

}  // namespace ipodsim
