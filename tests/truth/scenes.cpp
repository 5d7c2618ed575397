// SPDX-License-Identifier: MIT
// The table of commands, and the library that they read.
#include "scenes.h"

#include <array>
#include <cstdlib>

#include "simulator/base/random.h"

namespace truth {

namespace {

using ipodsim::Library;
using ipodsim::MediaKind;
using ipodsim::Profile;
using ipodsim::Track;

// As often as they are named.
constexpr std::array<const char*, 16> kProfiles = {
    "nano",    "nano",    "nano",   "nano",   "nano",     "classic",  "classic", "classic",
    "classic", "classic", "strict", "strict", "nosports", "nosports", "old",     "silent"};
constexpr std::array<const char*, 2> kConducts = {"robust", "fast"};

std::string Numbered(const char* what, int number) {
  return std::string(what) + " " + std::to_string(number);
}

// Every name differs from every other, so that a shifted list and a wrong song show. One title is
// as long as titles get, but for the legacy interface, whose texts have room for 256 characters.
Library MakeLibrary(bool long_title) {
  Library library;
  library.name = "Zoë's iPod";
  for (int i = 0; i < 40; ++i) {
    Track track;
    track.title = Numbered(i % 3 == 0 ? "Überfahrt" : "Bridge", 100 + i);
    track.artist = Numbered("Artist", i / 8);
    track.album = Numbered("Album", i / 4);
    track.genre = Numbered("Genre", i / 16);
    track.composer = Numbered("Composer", i / 10);
    track.length_ms = 240'000 + 1000 * i;
    track.number = 1 + i % 4;
    library.tracks.push_back(track);
  }
  if (long_title) library.tracks[12].title = "Long " + std::string(475, 'x');
  for (int i = 0; i < 2; ++i) {
    Track part;
    part.title = Numbered("Part", i);
    part.album = "A Book";
    part.length_ms = 600'000;
    part.kind = MediaKind::kAudiobook;
    library.tracks.push_back(part);
    Track episode;
    episode.title = Numbered("Episode", i);
    episode.album = "A Show";
    episode.length_ms = 600'000;
    episode.kind = MediaKind::kPodcast;
    library.tracks.push_back(episode);
  }
  library.playlists = {{"Runs", {0, 9, 17}, {}},
                       {"Folder", {}, {{"Hills", {3, 4}, {}}, {"Flats", {20}, {}}}}};
  return library;
}

std::vector<std::string> Split(const std::string& text, char separator) {
  std::vector<std::string> parts(1);
  for (const char character : text) {
    if (character == separator) {
      parts.emplace_back();
    } else {
      parts.back() += character;
    }
  }
  return parts;
}

}  // namespace

const std::vector<Scene>& AllScenes() {
  static const std::vector<Scene> kAll = {
      {"info", {"info"}},
      {"browse", {"browse"}},
      {"browse-tracks", {"browse", "tracks"}},
      {"browse-artists", {"browse", "artists"}},
      {"browse-albums", {"browse", "albums"}},
      {"browse-playlists", {"browse", "playlists"}},
      {"browse-artist", {"browse", "artists", "Artist 2"}},
      {"browse-album", {"browse", "albums", "Album 7"}},
      {"browse-part", {"browse", "tracks", "--from", "5", "--count", "7"}},
      {"play-number", {"play", "tracks", "@21"}},
      {"play-name", {"play", "tracks", "Bridge 119"}},
      {"play-path", {"play", "artists", "Artist 2", "Album 5", "Bridge 123"}},
      {"play", {"play"}, Start::kPaused},
      {"pause", {"pause"}, Start::kPlaying},
      {"stop", {"stop"}, Start::kPlaying},
      {"next", {"next"}, Start::kPlaying},
      {"previous", {"previous"}, Start::kPlaying},
      {"seek", {"seek", "forward", "1"}, Start::kPlaying},
      {"now", {"now"}, Start::kPlaying},
      {"now-paused", {"now"}, Start::kPaused},
      {"now-stopped", {"now"}, Start::kStopped},
      {"now-follow", {"now", "--follow", "--for", "3"}, Start::kPlaying},
      {"shuffle", {"shuffle"}},
      {"shuffle-tracks", {"shuffle", "tracks"}},
      {"repeat", {"repeat"}},
      {"repeat-all", {"repeat", "all"}},
      {"prefs", {"prefs"}},
      {"prefs-get", {"prefs", "get", "line-out"}},
      {"prefs-set", {"prefs", "set", "line-out", "on"}},
      {"userdata", {"userdata"}},
      {"userdata-weight", {"userdata", "--weight", "82"}},
      {"tour", {"tour"}},
      {"workout", {"workout", "--duration", "30", "--interval", "5", "--speed", "30"}},
      {"selftest", {"selftest"}},
      {"legacy-selftest", {"selftest"}},
      {"legacy-info", {"info"}},
      {"legacy-browse", {"browse"}},
      {"legacy-browse-tracks", {"browse", "tracks"}},
      {"legacy-browse-artist", {"browse", "artists", "Artist 2"}},
      {"legacy-play-number", {"play", "tracks", "@21"}},
      {"legacy-play-path", {"play", "artists", "Artist 2", "Album 5", "Bridge 123"}},
      {"legacy-play", {"play"}, Start::kPaused},
      {"legacy-pause", {"pause"}, Start::kPlaying},
      {"legacy-now", {"now"}, Start::kPlaying},
      {"legacy-prefs", {"prefs"}},
      {"legacy-prefs-set", {"prefs", "set", "line-out", "on"}},
      {"legacy-workout", {"workout", "--duration", "30", "--interval", "5", "--speed", "30"}},
  };
  return kAll;
}

namespace {

bool HasLegacyName(const Scene& scene) { return std::string(scene.name).rfind("legacy-", 0) == 0; }

bool IsSelfTest(const Scene& scene) { return scene.arguments.front() == "selftest"; }

}  // namespace

std::string Case::name() const {
  return std::string(scene->name) + "/" + ipodsim::TraitsOf(profile).name + "/" + conduct + "/" +
         trouble->name + "@" + std::to_string(place) + "/" + std::to_string(seed) +
         (text ? "/text" : "");
}

// The self-test is of the legacy interface by itself.
bool Case::legacy() const { return HasLegacyName(*scene) || IsSelfTest(*scene); }

std::vector<std::string> Case::arguments() const {
  std::vector<std::string> all = scene->arguments;
  if (!text) all.emplace_back("--json");
  if (HasLegacyName(*scene)) all.emplace_back("--legacy");
  if (!IsSelfTest(*scene)) all.insert(all.end(), {"--conduct", conduct});
  return all;
}

ipodsim::Settings Case::settings() const {
  static const Library kLibrary = MakeLibrary(true);
  static const Library kShortLibrary = MakeLibrary(false);
  ipodsim::Settings settings;
  settings.profile = profile;
  settings.seed = seed;
  settings.library = legacy() ? kShortLibrary : kLibrary;
  if (trouble->set) trouble->set(settings);
  return settings;
}

std::optional<Case> CaseByName(const std::string& name) {
  const std::vector<std::string> parts = Split(name, '/');
  Case run;
  run.text = parts.size() == 6 && parts.back() == "text";
  if (parts.size() != (run.text ? 6 : 5)) return std::nullopt;
  for (const Scene& scene : AllScenes()) {
    if (parts[0] == scene.name) run.scene = &scene;
  }
  const auto profile = ipodsim::ProfileByName(parts[1]);
  run.conduct = parts[2];
  const std::vector<std::string> struck = Split(parts[3], '@');
  run.trouble = TroubleByName(struck.front());
  if (struck.size() > 1) run.place = static_cast<unsigned>(std::atoi(struck[1].c_str()));
  run.seed = std::strtoull(parts[4].c_str(), nullptr, 10);
  if (run.scene == nullptr || !profile || run.trouble == nullptr) return std::nullopt;
  run.profile = *profile;
  return run;
}

Case CaseByNumber(std::uint64_t number, std::uint64_t seed) {
  const std::uint64_t scenes = AllScenes().size();
  const std::uint64_t troubles = AllTroubles().size();
  const std::uint64_t round = number / (scenes * troubles);
  ipodsim::Random random(seed, number);
  Case run;
  run.scene = &AllScenes()[number % scenes];
  run.trouble = &AllTroubles()[(number / scenes + number % scenes * 7) % troubles];
  run.profile = *ipodsim::ProfileByName(kProfiles[random.Below(kProfiles.size())]);
  // Its player cannot be set going beforehand, by an accessory of which this one knows nothing.
  const bool is_stubborn =
      run.profile == ipodsim::Profile::kStrict || run.trouble->name == "stays-paused";
  if (run.scene->start != Start::kStopped && is_stubborn) {
    run.profile = ipodsim::Profile::kNano;
    if (run.trouble->name == "stays-paused") run.trouble = TroubleByName("none");
  }
  run.conduct = kConducts[random.Below(kConducts.size())];
  run.seed = seed * 1000 + round * 17 + random.Below(17);
  run.text = random.Below(2) != 0;
  return run;
}

unsigned DrawPlace(const Case& run, unsigned requests, unsigned answers) {
  if (!run.trouble->once) return 0;
  const bool to_answers = run.trouble->meddling <= Meddling::kStateChange;
  const unsigned frames = to_answers ? answers : requests;
  return 1 + ipodsim::Random(run.seed, 5).Below(frames == 0 ? 1 : frames);
}

}  // namespace truth
