// SPDX-License-Identifier: MIT
// Makes up a media library from a seed: plausible, multilingual and a little awkward on purpose.

#include <array>

#include "library.h"
#include "simulator/base/random.h"

namespace ipodsim {
namespace {

// One language's stock of words; a name is made of them.
struct Tongue {
  std::vector<const char*> words;
  std::vector<const char*> names;
  const char* space;
};

const std::vector<Tongue>& Tongues() {
  static const std::vector<Tongue> kTongues = {
      {{"Morning", "River", "Electric", "Slow", "Blue", "Stairs", "Runner", "Hollow", "Light",
        "Second", "Wind", "Golden", "Paper", "Engine", "Harbour", "Quiet", "Signal", "Uphill"},
       {"The Treadmill Poets", "Ada Marsh", "North Quay", "Belt & Pulley", "Low Cadence",
        "Hattie Crane", "The Interval", "Summit Club", "Kilo Nine", "Owen Dale"},
       " "},
      {{"Café", "Été", "Forêt", "Ça", "Brûlée", "Où", "Naïve", "Cœur", "Déjà", "Neige"},
       {"Zoé Lefèvre", "Les Marées", "Aurélien Dubœuf", "Hélène & Noël"},
       " "},
      {{"Straße", "Größe", "Frühling", "Äpfel", "Öde", "Fluß", "Über", "Nächte"},
       {"Jörg Weiß", "Die Läufer", "Käthe Grün"},
       " "},
      {{"Corazón", "Niño", "Mañana", "Camión", "¿Dónde?", "¡Corre!", "Sueño", "Ángel"},
       {"Íñigo Peña", "Los Años", "Begoña Ruiz"},
       " "},
      {{"Zażółć", "Gęślą", "Jaźń", "Święto", "Dłoń", "Łąka", "Příliš", "Žluťoučký", "Kůň"},
       {"Łukasz Żak", "Jiří Dvořáček", "Šárka Říhová"},
       " "},
      {{"Дорога", "Зима", "Огонь", "Свет", "Ветер", "Снег", "Город", "Вечер", "Река"},
       {"Анна Лесная", "Северный Путь", "Ёжик и К°"},
       " "},
      {{"Θάλασσα", "Ήλιος", "Νύχτα", "Δρόμος", "Άνεμος", "Όνειρο"},
       {"Ελένη Βασιλείου", "Οι Δρομείς"},
       " "},
      {{"שיר", "לילה", "דרך", "אור", "רוח", "ים"}, {"נועה לוי", "הרצים"}, " "},
      {{"قمر", "ليل", "طريق", "نور", "ريح", "بحر"}, {"ليلى حسن", "العدّاؤون"}, " "},
      {{"夜明け", "さくら", "風", "ランナー", "雨の日", "星空", "海辺", "カフェ"},
       {"青空ランナーズ", "山田みどり", "東京ビート"},
       ""},
      {{"月光", "奔跑", "春天", "山水", "城市", "夜雨", "远方"}, {"林晓雨", "北岸乐队"}, ""},
      {{"바람", "하늘", "달리기", "별빛", "여름", "바다"}, {"김하늘", "달리는사람들"}, " "},
      {{"सूरज", "चाँद", "सफ़र", "बारिश", "हवा"}, {"मीरा शर्मा", "राग धारा"}, " "},
      {{"ทะเล", "ดวงดาว", "สายฝน", "วิ่ง"}, {"น้ำฝน ใจดี"}, " "},
      {{"Run 🏃", "Fire 🔥", "Heart ❤️", "Party 🎉", "👨‍👩‍👧‍👦 Home", "Up ⬆️",
        "🌊 Wave", "💪"},
       {"DJ 🎧 Pulse", "🎸🎸🎸", "Emoji Club 😀"},
       " "},
  };
  return kTongues;
}

constexpr std::array<const char*, 14> kGenres = {
    "Rock", "Pop",  "Jazz",   "Électro",  "Hip-Hop", "Klassik", "Folk",
    "Soul", "Indé", "Шансон", "J-ポップ", "Ambient", "Metal",   "World 🌍"};
constexpr std::array<const char*, 8> kComposers = {"Clara Vogt", "A. Ménard", "Й. Громов",
                                                   "高橋 健",    "L. van Os", "Ñ. Ibáñez",
                                                   "T. Žižka",   "M. Orr"};

constexpr std::size_t kArtists = 140;
constexpr std::size_t kBooks = 12;
constexpr std::size_t kShows = 10;
constexpr std::size_t kVideos = 40;

class Maker {
 public:
  explicit Maker(std::uint64_t seed) : random_(seed, 1) {}

  Library Make() {
    library_.name = "Zoë’s iPod 🎧";
    for (std::size_t i = 0; i < kArtists; ++i) AddArtist(i);
    for (std::size_t i = 0; i < kBooks; ++i) AddSeries(i, MediaKind::kAudiobook);
    for (std::size_t i = 0; i < kShows; ++i) AddSeries(i, MediaKind::kPodcast);
    for (std::size_t i = 0; i < kVideos; ++i) AddVideo(i);
    AddLongNames();
    AddPlaylists();
    return std::move(library_);
  }

 private:
  template <typename List>
  const char* Pick(const List& list) {
    return list[random_.Below(static_cast<std::uint32_t>(list.size()))];
  }

  const Tongue& PickTongue() {
    const auto& tongues = Tongues();
    // Every other name is English, as in most people's collections.
    return random_.Below(2) == 0
               ? tongues[0]
               : tongues[random_.Below(static_cast<std::uint32_t>(tongues.size()))];
  }

  std::string Phrase(const Tongue& tongue, std::uint32_t most_words) {
    std::string phrase = Pick(tongue.words);
    for (std::uint32_t left = random_.Below(most_words); left > 0; --left) {
      phrase += tongue.space;
      phrase += Pick(tongue.words);
    }
    return phrase;
  }

  std::int64_t Length(std::int64_t least_s, std::uint32_t spread_s) {
    return (least_s + random_.Below(spread_s)) * 1000 + random_.Below(1000);
  }

  void AddArtist(std::size_t index) {
    const Tongue& tongue = PickTongue();
    std::string artist = Pick(tongue.names);
    // The stock of names is small: a number keeps most artists apart.
    if (index % 3 != 0) artist += " " + std::to_string(1 + random_.Below(60));
    const char* genre = Pick(kGenres);
    for (std::uint32_t albums = 1 + random_.Below(2); albums > 0; --albums) {
      AddAlbum(tongue, artist, genre);
    }
  }

  void AddAlbum(const Tongue& tongue, const std::string& artist, const char* genre) {
    Track track;
    track.artist = artist;
    track.album = Phrase(tongue, 3);
    track.genre = genre;
    track.artwork = true;
    const std::uint32_t tracks = 6 + random_.Below(5);
    for (std::uint32_t i = 1; i <= tracks; ++i) {
      track.title = Phrase(tongue, 4);
      track.composer = random_.Below(3) == 0 ? "" : Pick(kComposers);
      track.lyrics = random_.Below(4) == 0 ? Phrase(tongue, 12) : "";
      track.length_ms = Length(140, 200);
      track.number = static_cast<int>(i);
      library_.tracks.push_back(track);
    }
  }

  void AddSeries(std::size_t index, MediaKind kind) {
    const Tongue& tongue = Tongues()[index % Tongues().size()];
    const bool is_book = kind == MediaKind::kAudiobook;
    Track track;
    track.kind = kind;
    track.artist = Pick(tongue.names);
    track.album = Phrase(tongue, 3) + (is_book ? " (unabridged)" : " FM");
    track.genre = is_book ? "Audiobook" : "Podcast";
    if (is_book) track.chapters = {"Opening", "Middle", "End"};
    const std::uint32_t parts = 8 + random_.Below(6);
    for (std::uint32_t i = 1; i <= parts; ++i) {
      track.number = static_cast<int>(i);
      track.title =
          (is_book ? "Chapter " : "Episode ") + std::to_string(i) + ": " + Phrase(tongue, 4);
      track.length_ms = Length(900, 1800);
      library_.tracks.push_back(track);
    }
  }

  void AddVideo(std::size_t index) {
    const Tongue& tongue = PickTongue();
    Track track;
    track.kind = MediaKind::kVideo;
    track.artist = Pick(tongue.names);
    track.album = "Season " + std::to_string(1 + index % 4);
    track.genre = index % 2 == 0 ? "Fitness" : "Film";
    track.title = Phrase(tongue, 4);
    track.number = static_cast<int>(1 + index / 4);
    track.length_ms = Length(300, 5000);
    library_.tracks.push_back(track);
  }

  // Longer than one short frame holds, and cut in the middle of a character by most buffers.
  void AddLongNames() {
    Track track;
    track.artist = "The Name That Never Ends";
    track.album = "Too Long for the Label";
    track.genre = "Rock";
    for (int i = 1; i <= 4; ++i) {
      track.number = i;
      track.length_ms = Length(140, 200);
      track.title = std::to_string(i) + ".";
      const Tongue& tongue = Tongues()[static_cast<std::size_t>(i) * 3 % Tongues().size()];
      while (track.title.size() < 100 * static_cast<std::size_t>(i)) {
        track.title += std::string(" ") + Pick(tongue.words);
      }
      library_.tracks.push_back(track);
    }
  }

  Playlist Draw(const std::string& name, std::uint32_t tracks) {
    Playlist playlist;
    playlist.name = name;
    for (std::uint32_t i = 0; i < tracks; ++i) {
      playlist.tracks.push_back(random_.Below(static_cast<std::uint32_t>(library_.tracks.size())));
    }
    return playlist;
  }

  void AddPlaylists() {
    constexpr std::array<const char*, 10> kNames = {
        "Warm-up",   "Intervalle (schnell)", "Côte d’Azur",  "Бег",        "ランニング",
        "Cool-down", "Hill climb ⛰️",    "¡Más rápido!", "Sunday 10k", "放松"};
    for (const char* name : kNames)
      library_.playlists.push_back(Draw(name, 10 + random_.Below(30)));
    library_.playlists.push_back(Draw("Empty", 0));
    Playlist folder;
    folder.name = "Training plans";
    for (int week = 1; week <= 3; ++week) {
      Playlist inner;
      inner.name = "Week " + std::to_string(week);
      inner.playlists.push_back(Draw("Easy day " + std::to_string(week), 12));
      inner.playlists.push_back(Draw("Hard day " + std::to_string(week), 8));
      folder.playlists.push_back(inner);
    }
    library_.playlists.push_back(folder);
  }

  Random random_;
  Library library_;
};

}  // namespace

Library Library::Generate(std::uint64_t seed) { return Maker(seed).Make(); }

const Library& Library::Default() {
  static const Library kLibrary = Generate(1);
  return kLibrary;
}

}  // namespace ipodsim
