// SPDX-License-Identifier: MIT
// Lists, narrows and orders the records of a media library.

#include "database.h"

#include <algorithm>
#include <set>

namespace ipodsim {
namespace {

// Each name once, under its sort key.
using Names = std::set<std::pair<std::string, std::string>>;

int RankOf(Category category) {
  switch (category) {
    case Category::kGenre:
      return 1;
    case Category::kArtist:
    case Category::kComposer:
      return 2;
    case Category::kAlbum:
      return 3;
    case Category::kTrack:
      return 4;
    default:
      return 0;
  }
}

const std::string& FieldOf(const Track& track, Category category) {
  switch (category) {
    case Category::kArtist:
      return track.artist;
    case Category::kGenre:
      return track.genre;
    case Category::kComposer:
      return track.composer;
    default:
      return track.album;
  }
}

void GatherPlaylists(const std::vector<Playlist>& playlists, std::vector<const Playlist*>* all) {
  for (const Playlist& playlist : playlists) {
    all->push_back(&playlist);
    GatherPlaylists(playlist.playlists, all);
  }
}

// A folder's tracks are those of everything inside it.
void GatherTracks(const Playlist& playlist, std::vector<std::size_t>* tracks) {
  tracks->insert(tracks->end(), playlist.tracks.begin(), playlist.tracks.end());
  for (const Playlist& inner : playlist.playlists) GatherTracks(inner, tracks);
}

}  // namespace

Database::Database(const Library* library) : library_(library) {
  everything_.name = library->name;
  for (std::size_t i = 0; i < library->tracks.size(); ++i) everything_.tracks.push_back(i);
}

void Database::Reset(Hierarchy hierarchy) {
  hierarchy_ = hierarchy;
  sort_ = Sort::kDefault;
  ForgetFrom(0);
}

void Database::ForgetFrom(int rank) {
  for (auto it = selected_.begin(); it != selected_.end();) {
    it = RankOf(it->first) >= rank ? selected_.erase(it) : std::next(it);
  }
  if (rank == 0) folder_ = nullptr;
  lists_.clear();
}

std::uint32_t Database::Count(Category category) {
  return static_cast<std::uint32_t>(RecordsOf(category).size());
}

const std::string& Database::Name(Category category, std::uint32_t index) {
  return RecordsOf(category)[index].name;
}

void Database::Select(Category category, std::uint32_t index) {
  if (index == kAllRecords) {
    ForgetFrom(RankOf(category));
    return;
  }
  const Record record = RecordsOf(category)[index];
  ForgetFrom(RankOf(category));
  if (category == Category::kNestedPlaylist && !record.playlist->playlists.empty()) {
    folder_ = record.playlist;
  }
  selected_[category] = record;
}

void Database::SetSort(Sort sort) {
  sort_ = sort;
  lists_.clear();
}

std::vector<std::size_t> Database::Tracks() {
  std::vector<std::size_t> tracks;
  for (const Record& record : RecordsOf(Category::kTrack)) tracks.push_back(record.track);
  return tracks;
}

const Database::Records& Database::RecordsOf(Category category) {
  const auto known = lists_.find(category);
  if (known != lists_.end()) return known->second;
  Records records;
  switch (category) {
    case Category::kTop:
      break;
    case Category::kPlaylist:
      records = ListPlaylists();
      break;
    case Category::kNestedPlaylist:
      records = ListNestedPlaylists();
      break;
    case Category::kAudiobook:
      records = ListSeries(MediaKind::kAudiobook);
      break;
    case Category::kPodcast:
      records = ListSeries(MediaKind::kPodcast);
      break;
    case Category::kTrack:
      records = ListTracks();
      break;
    default:
      records = ListGroups(category);
  }
  return lists_[category] = std::move(records);
}

Database::Records Database::ListPlaylists() {
  std::vector<const Playlist*> playlists = {&everything_};
  GatherPlaylists(library_->playlists, &playlists);
  Records records;
  for (const Playlist* playlist : playlists) records.push_back({playlist->name, 0, playlist});
  return records;
}

Database::Records Database::ListNestedPlaylists() {
  Records records;
  const auto& playlists = folder_ == nullptr ? library_->playlists : folder_->playlists;
  for (const Playlist& playlist : playlists) records.push_back({playlist.name, 0, &playlist});
  return records;
}

Database::Records Database::ListSeries(MediaKind kind) {
  Names names;
  if (hierarchy_ == Hierarchy::kAudio) {
    for (const Track& track : library_->tracks) {
      if (track.kind == kind && !track.album.empty())
        names.insert({SortKey(track.album), track.album});
    }
  }
  Records records;
  for (const auto& name : names) records.push_back({name.second});
  return records;
}

Database::Records Database::ListGroups(Category category) {
  Names names;
  for (const std::size_t position : TracksAbove(RankOf(category))) {
    const std::string& name = FieldOf(library_->tracks[position], category);
    if (!name.empty()) names.insert({SortKey(name), name});
  }
  Records records;
  for (const auto& name : names) records.push_back({name.second});
  return records;
}

Database::Records Database::ListTracks() {
  std::vector<std::size_t> tracks = TracksAbove(RankOf(Category::kTrack));
  SortTracks(*library_, OrderOfTracks(), &tracks);
  Records records;
  for (const std::size_t position : tracks) {
    records.push_back({library_->tracks[position].title, position});
  }
  return records;
}

std::vector<std::size_t> Database::TracksAbove(int rank) {
  std::vector<std::size_t> tracks = BaseTracks();
  for (const auto& [category, record] : selected_) {
    const int selected_rank = RankOf(category);
    if (selected_rank == 0 || selected_rank >= rank) continue;
    tracks.erase(std::remove_if(tracks.begin(), tracks.end(),
                                [&, wanted = &record.name, field = category](std::size_t position) {
                                  return FieldOf(library_->tracks[position], field) != *wanted;
                                }),
                 tracks.end());
  }
  return tracks;
}

std::vector<std::size_t> Database::BaseTracks() {
  const bool video = hierarchy_ == Hierarchy::kVideo;
  std::vector<std::size_t> tracks;
  for (const Category category : {Category::kPlaylist, Category::kNestedPlaylist}) {
    const auto playlist = selected_.find(category);
    if (playlist == selected_.end()) continue;
    std::vector<std::size_t> listed;
    GatherTracks(*playlist->second.playlist, &listed);
    for (const std::size_t position : listed) {
      if ((library_->tracks[position].kind == MediaKind::kVideo) == video)
        tracks.push_back(position);
    }
    return tracks;
  }
  MediaKind kind = video ? MediaKind::kVideo : MediaKind::kMusic;
  const std::string* series = nullptr;
  for (const Category category : {Category::kAudiobook, Category::kPodcast}) {
    const auto found = selected_.find(category);
    if (found == selected_.end()) continue;
    kind = category == Category::kAudiobook ? MediaKind::kAudiobook : MediaKind::kPodcast;
    series = &found->second.name;
  }
  for (std::size_t i = 0; i < library_->tracks.size(); ++i) {
    const Track& track = library_->tracks[i];
    if (track.kind == kind && (series == nullptr || track.album == *series)) tracks.push_back(i);
  }
  return tracks;
}

// Selections that have an order of their own keep it.
Sort Database::OrderOfTracks() const {
  const auto selected = [this](Category category) { return selected_.count(category) != 0; };
  if (sort_ != Sort::kDefault) return sort_;
  if (selected(Category::kPlaylist) || selected(Category::kNestedPlaylist)) return Sort::kPlaylist;
  for (const Category category : {Category::kAlbum, Category::kArtist, Category::kComposer,
                                  Category::kAudiobook, Category::kPodcast}) {
    if (selected(category)) return Sort::kAlbum;
  }
  return Sort::kName;
}

}  // namespace ipodsim
