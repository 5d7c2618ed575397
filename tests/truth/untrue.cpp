// SPDX-License-Identifier: MIT
// What is untrue in what a command said, subject by subject.
#include <algorithm>
#include <cstdio>
#include <map>
#include <nlohmann/json.hpp>
#include <sstream>

#include "command_line/command_line.h"
#include "judge.h"
#include "simulator/files/workout_document.h"
#include "simulator/media/database.h"

namespace truth {

namespace {

using ipodsim::Category;
using ipodsim::Player;
using ipodsim::PlayerState;
using Json = nlohmann::json;

struct Question {
  const Case& run;
  const ipodctl::Options& options;
  const std::vector<Json>& said;
  const Account& account;
  const ipodsim::SimulatedIpod& ipod;
  std::int64_t now_us;
  bool so_far = false;  // it was interrupted

  const Json& last() const { return said.back(); }
  const ipodsim::Traits& traits() const { return ipodsim::TraitsOf(run.profile); }
  // The player's. Of an iPod that was away in between, also what it was before.
  bool MayBe(PlayerState state) const {
    return ipod.player().state() == state || account.state_before == state;
  }
  // What a refused question would have told may be missing.
  bool was_refused() const { return !account.refusals.empty() && run.trouble->name != "none"; }
};

std::string Differs(const std::string& what, const Json& said, const Json& truth) {
  return what + " " + said.dump() + " instead of " + truth.dump();
}

// Empty when the member is there and true.
std::string Expect(const Json& object, const char* member, const Json& truth) {
  if (!object.contains(member)) return std::string("no ") + member;
  return object.at(member) == truth ? "" : Differs(member, object.at(member), truth);
}

template <class... Rest>
std::string FirstOf(const std::string& first, const Rest&... rest) {
  if constexpr (sizeof...(rest) == 0) {
    return first;
  } else {
    return first.empty() ? FirstOf(rest...) : first;
  }
}

std::string VersionText(const ipodsim::Version& version) {
  char text[16];
  std::snprintf(text, sizeof text, "%u.%02u", version.major, version.minor);
  return text;
}

bool WasRefused(const Question& question, std::uint8_t lingo, std::uint16_t command) {
  const auto& refusals = question.account.refusals;
  return std::any_of(refusals.begin(), refusals.end(), [=](const Refusal& refusal) {
    return refusal.lingo == lingo && refusal.command == command;
  });
}

// A member that may be missing where the iPod refused to tell it, but not be wrong.
std::string ExpectUnlessRefused(const Question& question, const Json& object, const char* member,
                                const Json& truth) {
  if (!object.contains(member) && question.was_refused()) return "";
  return Expect(object, member, truth);
}

// info

std::string UntrueLingoes(const Question& question) {
  const std::map<std::uint8_t, const char*> names = {
      {0x00, "General"},        {0x02, "Simple Remote"},
      {0x03, "Display Remote"}, {0x04, "Extended Interface"},
      {0x09, "Sports"},         {0x0C, "Storage"}};
  const Json told = question.last().value("lingoes", Json::object());
  for (const auto& [lingo, name] : names) {
    const ipodsim::LingoSupport* support = question.traits().Lingo(lingo);
    if (support == nullptr) {
      if (told.contains(name)) return std::string(name) + " " + told.at(name).dump();
    } else if (told.contains(name) || !question.was_refused()) {
      const std::string untrue = Expect(told, name, VersionText(support->version));
      if (!untrue.empty()) return untrue;
    }
  }
  return "";
}

std::string UntrueLegacyInfo(const Question& question) {
  const ipodsim::Traits& traits = question.traits();
  char number[16];
  std::snprintf(number, sizeof number, "%04X|%04X", traits.model_id >> 16,
                traits.model_id & 0xFFFF);
  const std::string software = std::to_string(traits.software[0]) + "." +
                               std::to_string(traits.software[1]) + "." +
                               std::to_string(traits.software[2]);
  const ipodsim::Version general = traits.Lingo(0)->version;
  const std::string version =
      "0 - " + std::to_string(general.major) + "." + std::to_string(general.minor);
  const bool sports = traits.Lingo(ipodsim::kSports) != nullptr && traits.model_id >> 16 == 0x0014;
  const std::pair<const char*, Json> facts[] = {{"name", question.ipod.settings().library.name},
                                                {"model", traits.model_number},
                                                {"model_number", number},
                                                {"serial_number", traits.serial_number},
                                                {"software_version", software},
                                                {"lingo_version", version},
                                                {"sports", sports}};
  for (const auto& [member, truth] : facts) {
    const std::string untrue = ExpectUnlessRefused(question, question.last(), member, truth);
    if (!untrue.empty()) return untrue;
  }
  return "";
}

// An iPod that refuses to tell the version of its Sports lingo is taken for one without.
std::string UntrueSports(const Question& question) {
  const Json& info = question.last();
  const bool sports = question.traits().Lingo(ipodsim::kSports) != nullptr;
  const bool may_be_denied =
      question.was_refused() &&
      WasRefused(question, ipodsim::kGeneral, ipodsim::general::kRequestLingoProtocolVersion);
  if (may_be_denied && info.contains("sports") && info.at("sports") == false) return "";
  return ExpectUnlessRefused(question, info, "sports", sports);
}

std::string UntrueInfo(const Question& question) {
  const Json& info = question.last();
  const ipodsim::Traits& traits = question.traits();
  // An iPod that was away has forgotten it.
  const char* const by = question.ipod.identified_by_tokens() ? "tokens" : "lingoes";
  const std::string identified = question.account.cut_off ? "" : Expect(info, "identified_by", by);
  std::string payload;
  if (traits.identifies_by_tokens) {
    payload = ExpectUnlessRefused(question, info, "max_payload", 506);
  }
  return FirstOf(ExpectUnlessRefused(question, info, "name", question.ipod.settings().library.name),
                 ExpectUnlessRefused(question, info, "model", traits.model_number),
                 ExpectUnlessRefused(question, info, "model_id", traits.model_id), identified,
                 UntrueSports(question), payload, UntrueLingoes(question));
}

// browse

Category CategoryOf(const std::string& name) {
  const std::map<std::string, Category> all = {
      {"playlists", Category::kPlaylist},   {"nested-playlists", Category::kNestedPlaylist},
      {"artists", Category::kArtist},       {"albums", Category::kAlbum},
      {"genres", Category::kGenre},         {"composers", Category::kComposer},
      {"audiobooks", Category::kAudiobook}, {"podcasts", Category::kPodcast},
      {"tracks", Category::kTrack}};
  return all.at(name);
}

Category Below(Category category) {
  switch (category) {
    case Category::kArtist:
    case Category::kComposer:
      return Category::kAlbum;
    case Category::kGenre:
      return Category::kArtist;
    default:
      return Category::kTrack;
  }
}

std::vector<std::string> NamesIn(ipodsim::Database& database, Category category) {
  std::vector<std::string> names;
  for (std::uint32_t i = 0; i < database.Count(category); ++i) {
    names.push_back(database.Name(category, i));
  }
  return names;
}

std::uint32_t IndexOf(ipodsim::Database& database, Category category, const std::string& step) {
  if (step.front() == '@') return static_cast<std::uint32_t>(std::stoul(step.substr(1)));
  const std::vector<std::string> names = NamesIn(database, category);
  const auto found = std::find(names.begin(), names.end(), step);
  return static_cast<std::uint32_t>(found - names.begin());
}

// The records of all lines, whether a line holds one or many of them.
std::vector<std::pair<std::size_t, std::string>> RecordsIn(const std::vector<Json>& said) {
  std::vector<std::pair<std::size_t, std::string>> records;
  for (const Json& line : said) {
    const Json listed = line.contains("records") && line.at("records").is_array()
                            ? line.at("records")
                            : Json::array({line});
    for (const Json& record : listed) {
      if (!record.contains("index") || !record.contains("name")) continue;
      records.emplace_back(record.at("index"), record.at("name"));
    }
  }
  return records;
}

// The legacy interface's texts have room for 256 characters; a longer name has no text.
bool IsTooLong(const Question& question, const std::string& name) {
  return question.run.legacy() && name.size() > 256;
}

std::string UntrueOverview(const Question& question) {
  ipodsim::Database database(&question.ipod.settings().library);
  const Json told = question.last().value("categories", Json::object());
  for (const char* name : {"playlists", "nested-playlists", "artists", "albums", "genres",
                           "composers", "audiobooks", "podcasts", "tracks"}) {
    const std::string untrue = Expect(told, name, database.Count(CategoryOf(name)));
    if (!untrue.empty()) return untrue;
  }
  return "";
}

// The records that were told, against all that there are.
std::string UntrueRecords(const Question& question, const std::vector<std::string>& names) {
  const std::size_t from = question.options.from;
  const std::size_t count = question.options.count.value_or(names.size() - from);
  for (const Json& line : question.said) {
    if (line.contains("total") && line.at("total") != names.size()) {
      return Differs("total", line.at("total"), names.size());
    }
  }
  const auto records = RecordsIn(question.said);
  for (std::size_t i = 0; i < count && i < records.size(); ++i) {
    if (records[i].first != from + i) return Differs("index", records[i].first, from + i);
    if (records[i].second != names[from + i] && !IsTooLong(question, names[from + i])) {
      return Differs("record " + std::to_string(from + i), records[i].second, names[from + i]);
    }
  }
  if (question.so_far && records.size() < count) return "";
  return records.size() == count ? "" : Differs("records", records.size(), count);
}

// The sorted selection, which is fallen back on, lists by name.
bool ListsByName(const Question& question) {
  return WasRefused(question, ipodsim::kExtended, ipodsim::extended::kSelectDbRecord);
}

std::string UntrueList(const Question& question) {
  const std::vector<std::string>& path = question.options.path;
  if (path.empty()) return UntrueOverview(question);
  ipodsim::Database database(&question.ipod.settings().library);
  Category category = CategoryOf(path.front());
  for (std::size_t i = 1; i < path.size(); ++i) {
    database.Select(category, IndexOf(database, category, path[i]));
    category = Below(category);
  }
  if (path.size() > 1 && ListsByName(question)) database.SetSort(ipodsim::Sort::kName);
  return UntrueRecords(question, NamesIn(database, category));
}

// The player

std::string StateName(PlayerState state) {
  switch (state) {
    case PlayerState::kStopped:
      return "stopped";
    case PlayerState::kPlaying:
      return "playing";
    case PlayerState::kPaused:
      return "paused";
    case PlayerState::kFastForward:
      return "winding forward";
    case PlayerState::kFastRewind:
      return "winding back";
  }
  return "";
}

std::string Capitalised(std::string text) {
  if (!text.empty() && text.front() >= 'a') text.front() = static_cast<char>(text.front() - 32);
  return text;
}

// A time that was told a while ago, of a player that goes on or stands.
std::string UntruePosition(const Question& question, const Json& now) {
  if (!now.contains("position_ms")) return "no position_ms";
  const Player& player = question.ipod.player();
  const std::int64_t told = now.at("position_ms");
  const std::int64_t truth = player.position_ms(question.now_us);
  constexpr std::int64_t kTolerance = 30;
  const std::int64_t since = player.state() == PlayerState::kPaused && !question.account.cut_off
                                 ? 0
                                 : question.now_us / 1000;
  if (told > truth + kTolerance || told < truth - since - kTolerance) {
    return Differs("position_ms", told, truth);
  }
  return "";
}

// What is told of the player, against the player.
std::string UntrueNow(const Question& question, const Json& now) {
  const Player& player = question.ipod.player();
  const bool legacy = question.run.legacy();
  const auto is_told = [&](PlayerState state) {
    const std::string name = StateName(state);
    return Expect(now, "state", legacy ? Capitalised(name) : name);
  };
  const bool was_true =
      question.account.state_before && is_told(*question.account.state_before).empty();
  const std::string wrong_state = was_true ? "" : is_told(player.state());
  if (!wrong_state.empty() || player.current() == nullptr) return wrong_state;
  const ipodsim::Track& track = *player.current();
  const std::string wrong_track =
      FirstOf(ExpectUnlessRefused(question, now, "title", track.title),
              ExpectUnlessRefused(question, now, "video", track.kind == ipodsim::MediaKind::kVideo),
              Expect(now, "length_ms", track.length_ms), UntruePosition(question, now));
  if (legacy || !wrong_track.empty()) return wrong_track;
  return FirstOf(Expect(now, "index", player.index()),
                 ExpectUnlessRefused(question, now, "artist", track.artist),
                 ExpectUnlessRefused(question, now, "album", track.album));
}

// Whether the player does what it was told to do.
std::string NotPlayed(const Question& question) {
  const Player& player = question.ipod.player();
  if (!question.MayBe(PlayerState::kPlaying)) return "it is " + StateName(player.state());
  // After a restart nothing is loaded.
  if (player.current() == nullptr) return question.account.cut_off ? "" : "it plays nothing";
  const std::vector<std::string>& path = question.options.path;
  const ipodsim::Library& library = question.ipod.settings().library;
  if (path.empty()) {
    ipodsim::Database database(&library);
    const std::string& plays = player.current()->title;
    // After a restart it may begin again.
    if (question.account.cut_off && plays == database.Name(Category::kTrack, 0)) return "";
    return plays == database.Name(Category::kTrack, kFirstTrack) ? "" : "it plays " + plays;
  }
  ipodsim::Database database(&library);
  Category category = CategoryOf(path.front());
  for (std::size_t i = 1; i + 1 < path.size(); ++i) {
    database.Select(category, IndexOf(database, category, path[i]));
    category = Below(category);
  }
  const std::uint32_t index = IndexOf(database, Category::kTrack, path.back());
  const std::string& title = database.Name(Category::kTrack, index);
  return player.current()->title == title ? "" : "it plays " + player.current()->title;
}

std::string NotDone(const Question& question) {
  const Player& player = question.ipod.player();
  const std::string& command = question.options.command;
  const auto is = [&question](PlayerState state) {
    return question.MayBe(state) ? "" : "it is " + StateName(question.ipod.player().state());
  };
  const auto is_at = [&question, &player](std::uint32_t index) {
    const bool forgot = question.account.cut_off && player.current() == nullptr;
    return forgot || player.index() == index ? "" : "it is at " + std::to_string(player.index());
  };
  if (command == "play") return NotPlayed(question);
  if (command == "pause") return FirstOf(is(PlayerState::kPaused), is_at(kFirstTrack));
  if (command == "stop") return is(PlayerState::kStopped);
  if (command == "next") return FirstOf(is(PlayerState::kPlaying), is_at(kFirstTrack + 1));
  // More than three seconds into a track, going back returns to its start.
  if (command == "previous") return FirstOf(is(PlayerState::kPlaying), is_at(kFirstTrack));
  if (command == "seek") return FirstOf(is(PlayerState::kPlaying), is_at(kFirstTrack));
  return "";
}

std::string UntruePlayer(const Question& question) {
  const std::string not_done = NotDone(question);
  return not_done.empty() ? UntrueNow(question, question.last()) : not_done;
}

std::string UntrueEvents(const Question& question) {
  for (const Json& event : question.said) {
    const std::string untrue = UntrueNow(question, event);
    if (!untrue.empty()) return event.value("event", "event") + ": " + untrue;
  }
  return "";
}

// Modes and preferences

std::string UntrueMode(const Question& question) {
  const bool shuffles = question.options.command == "shuffle";
  const Player& player = question.ipod.player();
  const int mode =
      shuffles ? static_cast<int>(player.shuffle()) : static_cast<int>(player.repeat());
  const char* const names[] = {"off", shuffles ? "tracks" : "one", shuffles ? "albums" : "all"};
  const std::string wanted = question.options.mode.empty() ? names[mode] : question.options.mode;
  if (names[mode] != wanted) return std::string("it is ") + names[mode];
  return Expect(question.last(), question.options.command.c_str(), names[mode]);
}

struct Preference {
  const char* name;
  std::uint8_t code;
  std::vector<std::string> settings;
  std::vector<std::string> legacy;  // as the legacy interface shows them
};

const std::vector<Preference>& Preferences() {
  static const std::vector<Preference> kAll = {
      {"video-out", 0, {"off", "on", "ask"}, {"Off", "On", "Ask User"}},
      {"screen", 1, {"fill", "fit"}, {"Fill Entire Screen", "Fit Edge To Screen"}},
      {"signal", 2, {"ntsc", "pal"}, {"NTSC", "PAL"}},
      {"line-out", 3, {"off", "on"}, {"Disabled", "Enabled"}},
      {"connection",
       8,
       {"none", "composite", "s-video", "component"},
       {"No Connection", "Composite", "S-Video", "Component"}},
      {"captions", 9, {"off", "on"}, {"Off", "On"}},
      {"aspect", 10, {"4:3", "16:9"}, {"4 by 3", "16 by 9"}},
      {"subtitles", 12, {"off", "on"}, {"Off", "On"}},
      {"alternate-audio", 13, {"off", "on"}, {"Off", "On"}},
      {"pause-on-removal", 15, {"off", "on"}, {"off", "on"}},
  };
  return kAll;
}

std::string UntruePreferences(const Question& question) {
  const std::string& wanted = question.options.preference;
  for (const Preference& preference : Preferences()) {
    if (!wanted.empty() && wanted != preference.name) continue;
    // Out of the dock they go back to what they were before.
    if (question.account.cut_off && question.last().contains(preference.name)) continue;
    const std::uint8_t value = question.ipod.preference(preference.code);
    if (!question.options.setting.empty() &&
        preference.settings[value] != question.options.setting) {
      return "it is " + preference.settings[value];
    }
    const bool may_be_missing = wanted.empty() && question.was_refused();
    if (may_be_missing && !question.last().contains(preference.name)) continue;
    const auto& shown = question.run.legacy() ? preference.legacy : preference.settings;
    const std::string untrue = Expect(question.last(), preference.name, shown[value]);
    if (!untrue.empty()) return untrue;
  }
  return "";
}

std::string UntrueUserData(const Question& question) {
  const ipodsim::UserData& data = question.ipod.user_data();
  if (question.options.user_weight && data.weight != *question.options.user_weight) {
    return "its weight is " + std::to_string(data.weight);
  }
  return FirstOf(Expect(question.last(), "weight", data.weight),
                 Expect(question.last(), "flag", data.flag == 2),
                 Expect(question.last(), "value", data.value));
}

// Workouts

std::size_t CountOf(const std::string& text, const std::string& part) {
  std::size_t count = 0;
  for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
    ++count;
  }
  return count;
}

// What the accessory wrote; the iPod itself adds to it.
std::string Written(const std::string& content) {
  return content.substr(0, content.rfind('\n', content.find("<iPodInfo")) + 1);
}

// A file whose opening was answered too late stays empty beside the one that was opened then.
std::string UntrueWorkout(const Question& question) {
  const ipodsim::FeatureFiles& files = question.ipod.feature_files();
  const std::vector<std::string> open = question.ipod.open_feature_files();
  std::string untrue = "no file";
  for (const std::string& name : files.Names()) {
    if (std::find(open.begin(), open.end(), name) != open.end()) continue;
    const std::string content = files.Read(name);
    const ipodsim::WorkoutDocument document(Written(content));
    untrue = document.problem();
    if (untrue.empty()) return Expect(question.last(), "intervals", CountOf(content, "<interval>"));
  }
  return untrue;
}

// The tour

// The names of a list, of which the tour reads the first ones.
std::string UntrueNames(const Json& told, const std::vector<std::string>& names) {
  constexpr std::size_t kMost = 24;
  const std::vector<std::string> first(names.begin(),
                                       names.begin() + std::min(names.size(), kMost));
  return FirstOf(Expect(told, "total", names.size()), Expect(told, "names", first));
}

// It goes down to the first album of the first artist, who has several tracks, and plays there.
std::string UntrueStep(const Question& question, const Json& told, ipodsim::Database* database) {
  const std::string step = told.value("step", "");
  const std::vector<Json> alone = {told};
  const Question part = {question.run,     question.options, alone,
                         question.account, question.ipod,    question.now_us};
  if (step == "device") {
    return FirstOf(ExpectUnlessRefused(part, told, "name", question.ipod.settings().library.name),
                   ExpectUnlessRefused(part, told, "model", question.traits().model_number),
                   UntrueSports(part), UntrueLingoes(part));
  }
  if (step == "artists") return UntrueNames(told, NamesIn(*database, Category::kArtist));
  if (step == "albums") {
    database->Select(Category::kArtist, 0);
    return UntrueNames(told, NamesIn(*database, Category::kAlbum));
  }
  if (step == "tracks") {
    database->Select(Category::kAlbum, 0);
    return UntrueNames(told, NamesIn(*database, Category::kTrack));
  }
  if (!told.contains("title")) return "";
  const std::vector<std::string> tracks = NamesIn(*database, Category::kTrack);
  return Expect(told, "title", tracks.at(told.value("index", 0U) % tracks.size()));
}

std::string UntrueTourThrough(const Question& question, ipodsim::Database database) {
  std::string steps;
  for (const Json& told : question.said) {
    const std::string untrue = UntrueStep(question, told, &database);
    if (!untrue.empty()) return told.value("step", "event") + ": " + untrue;
    if (told.contains("step")) steps += told.value("step", "") + " ";
  }
  if (question.so_far) return "";
  if (steps != "identify device artists albums tracks shuffle close ") return "only " + steps;
  const Player& player = question.ipod.player();
  if (question.account.cut_off) return "";
  if (player.index() != 1) return "it is at " + std::to_string(player.index());
  return question.MayBe(PlayerState::kPlaying) ? "" : "it is " + StateName(player.state());
}

std::string UntrueTour(const Question& question) {
  ipodsim::Database database(&question.ipod.settings().library);
  const std::string untrue = UntrueTourThrough(question, database);
  if (untrue.empty() || !ListsByName(question)) return untrue;
  database.SetSort(ipodsim::Sort::kName);
  return UntrueTourThrough(question, database);
}

// What was said, an object on each line.
std::string Parse(const std::string& out, std::vector<Json>* said) {
  std::istringstream lines(out);
  for (std::string line; std::getline(lines, line);) {
    said->push_back(Json::parse(line, nullptr, false));
    if (!said->back().is_object()) return "not JSON: " + line;
  }
  return "";
}

std::string UntrueAnswer(const Question& question) {
  const std::string& command = question.options.command;
  if (command == "info") {
    return question.run.legacy() ? UntrueLegacyInfo(question) : UntrueInfo(question);
  }
  if (command == "browse") return UntrueList(question);
  if (command == "now" && question.options.follow) return UntrueEvents(question);
  if (command == "shuffle" || command == "repeat") return UntrueMode(question);
  if (command == "prefs") return UntruePreferences(question);
  if (command == "userdata") return UntrueUserData(question);
  if (command == "workout") return UntrueWorkout(question);
  if (command == "tour") return UntrueTour(question);
  return UntruePlayer(question);
}

}  // namespace

std::string WhatIsUntrue(const Case& run, const std::string& out, const Account& account,
                         const ipodsim::SimulatedIpod& ipod, std::int64_t now_us) {
  std::vector<Json> said;
  const std::string no_json = Parse(out, &said);
  if (!no_json.empty()) return no_json;
  if (said.empty()) return "nothing said";
  const ipodctl::CommandLine command = ipodctl::ParseCommandLine(run.arguments());
  return UntrueAnswer({run, *command.options, said, account, ipod, now_us});
}

// Only lists and events are told piece by piece, and the tour.
std::string WhatIsUntrueSoFar(const Case& run, const std::string& out, const Account& account,
                              const ipodsim::SimulatedIpod& ipod, std::int64_t now_us) {
  std::vector<Json> said;
  const std::string no_json = Parse(out, &said);
  if (!no_json.empty() || said.empty()) return no_json;
  const ipodctl::CommandLine command = ipodctl::ParseCommandLine(run.arguments());
  return UntrueAnswer({run, *command.options, said, account, ipod, now_us, true});
}

}  // namespace truth
