// SPDX-License-Identifier: MIT
// Proves that libraries are read from JSON, that bad ones are refused in one sentence, and that the
// made-up one is what it promises to be.

#include "simulator/media/library.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <set>

namespace ipodsim {
namespace {

TEST(LibraryJson, FullLibraryIsRead) {
  const LibraryResult result = ParseLibrary(R"({
    "name": "Zoë's iPod",
    "tracks": [
      {"title": "Bridges", "artist": "The Hum", "album": "Spans", "genre": "Rock",
       "composer": "A. Beam", "lyrics": "over", "length_ms": 215000, "number": 3,
       "artwork": true},
      {"title": "One", "kind": "audiobook", "chapters": ["Near", "Far"]},
      {"title": "Two", "kind": "podcast"},
      {"title": "Three", "kind": "video"}
    ],
    "playlists": [
      {"name": "Runs", "tracks": [0, 3]},
      {"name": "Folder", "playlists": [{"name": "Hills", "tracks": [1]}]}
    ]})",
                                            "x.json");
  ASSERT_TRUE(result.library) << result.error;
  const Library& library = *result.library;
  EXPECT_EQ(library.name, "Zoë's iPod");
  ASSERT_EQ(library.tracks.size(), 4u);
  EXPECT_EQ(library.tracks[0].title, "Bridges");
  EXPECT_EQ(library.tracks[0].artist, "The Hum");
  EXPECT_EQ(library.tracks[0].album, "Spans");
  EXPECT_EQ(library.tracks[0].genre, "Rock");
  EXPECT_EQ(library.tracks[0].composer, "A. Beam");
  EXPECT_EQ(library.tracks[0].lyrics, "over");
  EXPECT_EQ(library.tracks[0].length_ms, 215000);
  EXPECT_EQ(library.tracks[0].number, 3);
  EXPECT_EQ(library.tracks[0].kind, MediaKind::kMusic);
  EXPECT_TRUE(library.tracks[0].artwork);
  EXPECT_TRUE(library.tracks[0].chapters.empty());
  EXPECT_FALSE(library.tracks[1].artwork);
  EXPECT_EQ(library.tracks[1].chapters, (std::vector<std::string>{"Near", "Far"}));
  EXPECT_EQ(library.tracks[1].kind, MediaKind::kAudiobook);
  EXPECT_EQ(library.tracks[1].length_ms, 180000);
  EXPECT_EQ(library.tracks[2].kind, MediaKind::kPodcast);
  EXPECT_EQ(library.tracks[3].kind, MediaKind::kVideo);
  ASSERT_EQ(library.playlists.size(), 2u);
  EXPECT_EQ(library.playlists[0].tracks, (std::vector<std::size_t>{0, 3}));
  ASSERT_EQ(library.playlists[1].playlists.size(), 1u);
  EXPECT_EQ(library.playlists[1].playlists[0].name, "Hills");
}

TEST(LibraryJson, NoTracksAreALibrary) {
  const LibraryResult result = ParseLibrary(R"({"tracks": []})", "x.json");
  ASSERT_TRUE(result.library);
  EXPECT_EQ(result.library->name, "iPod");
}

struct BadLibrary {
  const char* json;
  const char* error;
};

class LibraryErrors : public testing::TestWithParam<BadLibrary> {};

TEST_P(LibraryErrors, IsOneSentenceThatNamesThePlace) {
  const LibraryResult result = ParseLibrary(GetParam().json, "x.json");
  EXPECT_FALSE(result.library);
  EXPECT_EQ(result.error, GetParam().error);
}

INSTANTIATE_TEST_SUITE_P(
    AllKinds, LibraryErrors,
    testing::Values(
        BadLibrary{"", "library file 'x.json' is not valid JSON at line 1, column 1"},
        BadLibrary{"{\n \"tracks\": [,]}",
                   "library file 'x.json' is not valid JSON at line 2, column 13"},
        BadLibrary{"[]", "library file 'x.json' does not hold an object"},
        BadLibrary{"{}", "library file 'x.json' has no \"tracks\""},
        BadLibrary{R"({"tracks": 3})", "library file 'x.json': \"tracks\" is not a list"},
        BadLibrary{R"({"tracks": [3]})", "library file 'x.json': track 1 is not an object"},
        BadLibrary{R"({"tracks": [{}]})", "library file 'x.json': track 1 has no title"},
        BadLibrary{R"({"tracks": [{"title": "a"}, {"title": 7}]})",
                   "library file 'x.json': track 2: \"title\" is not a text"},
        BadLibrary{R"({"tracks": [{"title": "a\u0000b"}]})",
                   "library file 'x.json': track 1: \"title\" holds a zero byte"},
        BadLibrary{R"({"tracks": [{"title": "a", "artwork": 1}]})",
                   "library file 'x.json': track 1: \"artwork\" is neither true nor false"},
        BadLibrary{R"({"tracks": [{"title": "a", "chapters": "b"}]})",
                   "library file 'x.json': track 1: \"chapters\" is not a list"},
        BadLibrary{R"({"tracks": [{"title": "a", "chapters": [7]}]})",
                   "library file 'x.json': track 1: chapter 1 is not a text"},
        BadLibrary{R"({"tracks": [{"title": "a", "chapters": ["b\u0000c"]}]})",
                   "library file 'x.json': track 1: chapter 1 holds a zero byte"},
        BadLibrary{R"({"tracks": [{"title": "a", "length_ms": 0}]})",
                   "library file 'x.json': track 1: \"length_ms\" is not a whole number from 1 to "
                   "4294967295"},
        BadLibrary{R"({"tracks": [{"title": "a", "length_ms": 1e300}]})",
                   "library file 'x.json': track 1: \"length_ms\" is not a whole number from 1 to "
                   "4294967295"},
        BadLibrary{R"({"tracks": [{"title": "a", "number": -1}]})",
                   "library file 'x.json': track 1: \"number\" is not a whole number from 0 to "
                   "9999"},
        BadLibrary{R"({"tracks": [{"title": "a", "kind": "tape"}]})",
                   "library file 'x.json': track 1: \"kind\" is none of music, audiobook, podcast "
                   "and video"},
        BadLibrary{R"({"tracks": [], "name": 1})", "library file 'x.json': \"name\" is not a text"},
        BadLibrary{R"({"tracks": [], "playlists": [{}]})",
                   "library file 'x.json': playlist 1 has no name"},
        BadLibrary{R"({"tracks": [], "playlists": [{"name": "p", "tracks": [0]}]})",
                   "library file 'x.json': playlist 1 names a track that does not exist"},
        BadLibrary{R"({"tracks": [], "playlists": [{"name": "p", "tracks": [-1]}]})",
                   "library file 'x.json': playlist 1 names a track that does not exist"},
        BadLibrary{R"({"tracks": [], "playlists": [{"name": "p", "playlists": [{"name": 2}]}]})",
                   "library file 'x.json': playlist 1, playlist 1: \"name\" is not a text"}));

TEST(LibraryJson, EndlessFoldersAreRefused) {
  std::string json = R"({"tracks": [], "playlists": [)";
  for (int i = 0; i < 40; ++i) json += R"({"name": "p", "playlists": [)";
  for (int i = 0; i < 40; ++i) json += "]}";
  const LibraryResult result = ParseLibrary(json + "]}", "x.json");
  EXPECT_FALSE(result.library);
  EXPECT_THAT(result.error, testing::HasSubstr("is nested too deeply"));
}

TEST(LibraryJson, InvalidUtf8IsRefused) {
  const LibraryResult result = ParseLibrary("{\"tracks\": [{\"title\": \"\xC3\x28\"}]}", "x.json");
  EXPECT_FALSE(result.library);
  EXPECT_THAT(result.error,
              testing::StartsWith("library file 'x.json' is not valid JSON at line 1"));
}

TEST(LibraryJson, MissingFileIsNamedWithTheReason) {
  const LibraryResult result = LoadLibrary("/does/not/exist.json");
  EXPECT_FALSE(result.library);
  EXPECT_EQ(result.error,
            "cannot read library file '/does/not/exist.json': No such file or directory");
}

TEST(LibraryJson, FolderInPlaceOfAFileIsRefused) {
  const LibraryResult result = LoadLibrary("/");
  EXPECT_FALSE(result.library);
  EXPECT_NE(result.error, "");
}

TEST(GeneratedLibrary, HoldsAboutTwoThousandTracksOfEveryKind) {
  const Library library = Library::Generate(1);
  EXPECT_GE(library.tracks.size(), 1800u);
  EXPECT_LE(library.tracks.size(), 2300u);
  for (const MediaKind kind :
       {MediaKind::kMusic, MediaKind::kAudiobook, MediaKind::kPodcast, MediaKind::kVideo}) {
    EXPECT_GE(std::count_if(library.tracks.begin(), library.tracks.end(),
                            [&](const Track& track) { return track.kind == kind; }),
              30);
  }
  EXPECT_GE(library.playlists.size(), 10u);
  EXPECT_TRUE(std::any_of(library.playlists.begin(), library.playlists.end(),
                          [](const Playlist& playlist) { return !playlist.playlists.empty(); }));
}

TEST(GeneratedLibrary, AlbumsHaveArtworkAndBooksChapters) {
  const Library library = Library::Generate(1);
  for (const Track& track : library.tracks) {
    if (track.kind == MediaKind::kAudiobook) {
      EXPECT_EQ(track.chapters.size(), 3u);
    }
  }
  EXPECT_TRUE(std::any_of(library.tracks.begin(), library.tracks.end(),
                          [](const Track& track) { return track.artwork; }));
  EXPECT_TRUE(std::any_of(library.tracks.begin(), library.tracks.end(),
                          [](const Track& track) { return !track.artwork; }));
}

TEST(GeneratedLibrary, NamesComeInSeveralScripts) {
  const Library library = Library::Generate(1);
  std::string all;
  for (const Track& track : library.tracks) all += track.title + track.artist + track.album;
  // Latin with accents, Cyrillic, Greek, Hebrew, Arabic, Japanese, Chinese, Korean, Hindi, Thai
  // and emoji.
  for (const char* piece : {"é", "в", "ό", "ש", "ق", "さ", "月", "바", "सू", "ท", "🔥"}) {
    EXPECT_THAT(all, testing::HasSubstr(piece));
  }
}

TEST(GeneratedLibrary, SomeNamesAreLongerThanAShortFrame) {
  const Library library = Library::Generate(1);
  EXPECT_TRUE(std::any_of(library.tracks.begin(), library.tracks.end(),
                          [](const Track& track) { return track.title.size() > 255; }));
}

TEST(GeneratedLibrary, NamesAreNotEmptyAndStayInsideAFrame) {
  for (std::uint64_t seed = 0; seed < 20; ++seed) {
    const Library library = Library::Generate(seed);
    for (const Track& track : library.tracks) {
      EXPECT_FALSE(track.title.empty());
      EXPECT_LT(track.title.size(), 900u);
      EXPECT_GT(track.length_ms, 0);
    }
  }
}

TEST(GeneratedLibrary, SeedDecidesEverything) {
  const Library one = Library::Generate(5);
  const Library same = Library::Generate(5);
  const Library other = Library::Generate(6);
  ASSERT_EQ(one.tracks.size(), same.tracks.size());
  for (std::size_t i = 0; i < one.tracks.size(); ++i) {
    EXPECT_EQ(one.tracks[i].title, same.tracks[i].title);
    EXPECT_EQ(one.tracks[i].length_ms, same.tracks[i].length_ms);
  }
  EXPECT_NE(one.tracks[0].title + one.tracks[1].title + one.tracks[2].title,
            other.tracks[0].title + other.tracks[1].title + other.tracks[2].title);
}

}  // namespace
}  // namespace ipodsim
