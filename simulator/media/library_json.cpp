// SPDX-License-Identifier: MIT
// Reads a media library from JSON.

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <nlohmann/json.hpp>

#include "library.h"

namespace ipodsim {
namespace {

using Json = nlohmann::json;

constexpr std::int64_t kDefaultLengthMs = 180000;
constexpr std::int64_t kLongestTrackMs = 0xFFFFFFFFll;
constexpr int kDeepestFolder = 16;

// Collects the first complaint; what comes after it no longer matters.
class Reader {
 public:
  std::string error;

  void Fail(const std::string& sentence) {
    if (error.empty()) error = sentence;
  }

  std::string Text(const Json& object, const char* key, const std::string& where) {
    const auto found = object.find(key);
    if (found == object.end()) return {};
    return Whole(*found, where + ": \"" + key + "\"");
  }

  std::string Whole(const Json& value, const std::string& what) {
    if (!value.is_string()) {
      Fail(what + " is not a text");
      return {};
    }
    auto text = value.get<std::string>();
    // A zero byte would end the name early on the wire.
    if (text.find('\0') != std::string::npos) Fail(what + " holds a zero byte");
    return text;
  }

  std::int64_t Number(const Json& object, const char* key, std::int64_t least, std::int64_t most,
                      std::int64_t otherwise, const std::string& where) {
    const auto found = object.find(key);
    if (found == object.end()) return otherwise;
    const bool fits = found->is_number_integer() &&
                      found->get<double>() >= static_cast<double>(least) &&
                      found->get<double>() <= static_cast<double>(most);
    if (!fits) {
      Fail(where + ": \"" + key + "\" is not a whole number from " + std::to_string(least) +
           " to " + std::to_string(most));
      return otherwise;
    }
    return found->get<std::int64_t>();
  }

  bool Flag(const Json& object, const char* key, const std::string& where) {
    const auto found = object.find(key);
    if (found == object.end()) return false;
    if (found->is_boolean()) return found->get<bool>();
    Fail(where + ": \"" + key + "\" is neither true nor false");
    return false;
  }

  MediaKind Kind(const Json& object, const std::string& where) {
    const std::string kind = Text(object, "kind", where);
    if (kind.empty() || kind == "music") return MediaKind::kMusic;
    if (kind == "audiobook") return MediaKind::kAudiobook;
    if (kind == "podcast") return MediaKind::kPodcast;
    if (kind == "video") return MediaKind::kVideo;
    Fail(where + ": \"kind\" is none of music, audiobook, podcast and video");
    return MediaKind::kMusic;
  }

  Track ReadTrack(const Json& object, const std::string& where) {
    Track track;
    if (!object.is_object()) {
      Fail(where + " is not an object");
      return track;
    }
    track.title = Text(object, "title", where);
    if (track.title.empty()) Fail(where + " has no title");
    track.artist = Text(object, "artist", where);
    track.album = Text(object, "album", where);
    track.genre = Text(object, "genre", where);
    track.composer = Text(object, "composer", where);
    track.lyrics = Text(object, "lyrics", where);
    track.length_ms = Number(object, "length_ms", 1, kLongestTrackMs, kDefaultLengthMs, where);
    track.number = static_cast<int>(Number(object, "number", 0, 9999, 0, where));
    track.kind = Kind(object, where);
    track.artwork = Flag(object, "artwork", where);
    for (const Json& name : List(object, "chapters", where)) {
      const std::string number = std::to_string(track.chapters.size() + 1);
      track.chapters.push_back(Whole(name, where + ": chapter " + number));
    }
    return track;
  }

  Playlist ReadPlaylist(const Json& object, const std::string& where, std::size_t track_count,
                        int depth) {
    Playlist playlist;
    if (!object.is_object() || depth > kDeepestFolder) {
      Fail(where + (depth > kDeepestFolder ? " is nested too deeply" : " is not an object"));
      return playlist;
    }
    playlist.name = Text(object, "name", where);
    if (playlist.name.empty()) Fail(where + " has no name");
    for (const Json& position : List(object, "tracks", where)) {
      const bool exists =
          position.is_number_unsigned() && position.get<std::uint64_t>() < track_count;
      if (!exists) {
        Fail(where + " names a track that does not exist");
        return playlist;
      }
      playlist.tracks.push_back(position.get<std::size_t>());
    }
    playlist.playlists = ReadPlaylists(object, where, track_count, depth + 1);
    return playlist;
  }

  std::vector<Playlist> ReadPlaylists(const Json& object, const std::string& where,
                                      std::size_t track_count, int depth) {
    std::vector<Playlist> playlists;
    for (const Json& entry : List(object, "playlists", where)) {
      const std::string name = "playlist " + std::to_string(playlists.size() + 1);
      const std::string place = depth == 0 ? where + ": " + name : where + ", " + name;
      playlists.push_back(ReadPlaylist(entry, place, track_count, depth));
      if (!error.empty()) break;
    }
    return playlists;
  }

  // The list under a key; an empty one when it is missing or, after a complaint, no list.
  const Json& List(const Json& object, const char* key, const std::string& where) {
    static const Json kNone = Json::array();
    const auto found = object.find(key);
    if (found == object.end()) return kNone;
    if (!found->is_array()) {
      Fail(where + ": \"" + key + "\" is not a list");
      return kNone;
    }
    return *found;
  }
};

std::string PlaceOf(std::string_view json, std::size_t byte) {
  const std::string_view before = json.substr(0, std::min(byte == 0 ? 0 : byte - 1, json.size()));
  const auto line = 1 + std::count(before.begin(), before.end(), '\n');
  const std::size_t line_start =
      before.rfind('\n') == std::string_view::npos ? 0 : before.rfind('\n') + 1;
  return "line " + std::to_string(line) + ", column " +
         std::to_string(before.size() - line_start + 1);
}

}  // namespace

LibraryResult ParseLibrary(std::string_view json, const std::string& source) {
  const std::string where = "library file '" + source + "'";
  Json root;
  try {
    root = Json::parse(json);
  } catch (const Json::parse_error& problem) {
    return {std::nullopt, where + " is not valid JSON at " + PlaceOf(json, problem.byte)};
  } catch (const Json::out_of_range&) {
    return {std::nullopt, where + " holds a number that is too large"};
  }
  if (!root.is_object()) return {std::nullopt, where + " does not hold an object"};
  if (!root.contains("tracks")) return {std::nullopt, where + " has no \"tracks\""};

  Reader reader;
  Library library;
  library.name = reader.Text(root, "name", where);
  if (library.name.empty()) library.name = "iPod";
  for (const Json& entry : reader.List(root, "tracks", where)) {
    const std::string number = std::to_string(library.tracks.size() + 1);
    library.tracks.push_back(reader.ReadTrack(entry, where + ": track " + number));
    if (!reader.error.empty()) return {std::nullopt, reader.error};
  }
  library.playlists = reader.ReadPlaylists(root, where, library.tracks.size(), 0);
  if (!reader.error.empty()) return {std::nullopt, reader.error};
  return {std::move(library), {}};
}

LibraryResult LoadLibrary(const std::string& path) {
  const auto failure = [&path] {
    return LibraryResult{std::nullopt,
                         "cannot read library file '" + path + "': " + std::strerror(errno)};
  };
  std::FILE* file = std::fopen(path.c_str(), "rb");
  if (file == nullptr) return failure();
  std::string json;
  std::array<char, 65536> chunk{};
  while (const std::size_t count = std::fread(chunk.data(), 1, chunk.size(), file)) {
    json.append(chunk.data(), count);
  }
  const bool failed = std::ferror(file) != 0;
  const LibraryResult result = failed ? failure() : ParseLibrary(json, path);
  std::fclose(file);
  return result;
}

}  // namespace ipodsim
