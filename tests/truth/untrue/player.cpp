// SPDX-License-Identifier: MIT
// What the player does, and what is told of it.
#include "untrue/catalogue.h"
#include "untrue/player_state.h"
#include "untrue/subjects.h"

namespace truth {

using ipodsim::Category;
using ipodsim::Player;
using ipodsim::PlayerState;

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

namespace {

// People are told whole seconds.
std::string UntrueLength(const Question& question, const Json& now) {
  const std::int64_t length_ms = question.ipod.player().current()->length_ms;
  return question.run.text ? Expect(now, "length_s", length_ms / 1000)
                           : Expect(now, "length_ms", length_ms);
}

// A time that was told a while ago, of a player that goes on or stands.
std::string UntruePosition(const Question& question, const Json& now) {
  const char* const member = question.run.text ? "position_s" : "position_ms";
  if (!now.contains(member)) return std::string("no ") + member;
  const Player& player = question.ipod.player();
  const std::int64_t unit_ms = question.run.text ? 1000 : 1;
  const std::int64_t told = now.at(member).get<std::int64_t>() * unit_ms;
  const std::int64_t truth = player.position_ms(question.now_us);
  constexpr std::int64_t kTolerance = 30;
  const std::int64_t since = player.state() == PlayerState::kPaused && !question.account.cut_off
                                 ? 0
                                 : question.now_us / 1000;
  if (told > truth + kTolerance || told + unit_ms <= truth - since - kTolerance) {
    return Differs(member, told / unit_ms, truth / unit_ms);
  }
  return "";
}

// The legacy interface's text does not number the track.
std::string UntrueIndex(const Question& question, const Json& now) {
  if (question.run.text && question.run.legacy()) return "";
  return Expect(now, "index", question.ipod.player().index());
}

// The text that tells one of the two does not say which.
std::string UntrueOrigin(const Question& question, const Json& now, const ipodsim::Track& track) {
  if (question.was_refused() && now.contains("origin")) {
    const Json& origin = now.at("origin");
    return origin == track.artist || origin == track.album ? "" : "by " + origin.dump();
  }
  return FirstOf(ExpectUnlessRefused(question, now, "artist", track.artist),
                 ExpectUnlessRefused(question, now, "album", track.album));
}

// What is told of the player, against the player.
std::string UntrueNow(const Question& question, const Json& now) {
  const Player& player = question.ipod.player();
  if (now.contains("plays")) return player.current() == nullptr ? "" : "it plays something";
  const auto is_told = [&](PlayerState state) { return Expect(now, "state", StateName(state)); };
  const bool was_true =
      question.account.state_before && is_told(*question.account.state_before).empty();
  const std::string wrong_state = was_true ? "" : is_told(player.state());
  if (!wrong_state.empty() || player.current() == nullptr) return wrong_state;
  const ipodsim::Track& track = *player.current();
  const std::string wrong_track = FirstOf(
      ExpectUnlessRefused(question, now, "title", track.title),
      ExpectUnlessRefused(question, now, "video", track.kind == ipodsim::MediaKind::kVideo),
      UntrueLength(question, now), UntrueIndex(question, now), UntruePosition(question, now));
  if (question.run.legacy() || !wrong_track.empty()) return wrong_track;
  return UntrueOrigin(question, now, track);
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

}  // namespace

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

}  // namespace truth
