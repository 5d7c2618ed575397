// SPDX-License-Identifier: MIT
// The tour, step by step.
#include <algorithm>

#include "untrue/catalogue.h"
#include "untrue/player_state.h"
#include "untrue/subjects.h"

namespace truth {

namespace {

using ipodsim::Category;
using ipodsim::Player;
using ipodsim::PlayerState;

// The names of a list, of which the tour reads the first ones.
std::string UntrueNames(const Question& question, const Json& told,
                        const std::vector<std::string>& names) {
  constexpr std::size_t kMost = 24;
  constexpr std::size_t kMostInText = 5;
  const std::size_t most = question.run.text ? kMostInText : kMost;
  const std::vector<std::string> first(
      names.begin(), names.begin() + static_cast<std::ptrdiff_t>(std::min(names.size(), most)));
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
  if (step == "artists") return UntrueNames(question, told, NamesIn(*database, Category::kArtist));
  if (step == "albums") {
    database->Select(Category::kArtist, 0);
    return UntrueNames(question, told, NamesIn(*database, Category::kAlbum));
  }
  if (step == "tracks") {
    database->Select(Category::kAlbum, 0);
    return UntrueNames(question, told, NamesIn(*database, Category::kTrack));
  }
  if (!told.contains("title")) return "";
  const std::vector<std::string> tracks = NamesIn(*database, Category::kTrack);
  return Expect(told, "title", tracks.at(told.value("index", 0U) % tracks.size()));
}

std::string UntrueTourThrough(const Question& question, ipodsim::Database database) {
  std::string steps;
  std::string last;
  for (const Json& told : question.said) {
    const std::string untrue = UntrueStep(question, told, &database);
    if (!untrue.empty()) return told.value("step", "none") + ": " + untrue;
    // Of some steps more than one thing is told.
    const std::string step = told.value("step", "none") + " ";
    if (step != last) steps += step;
    last = step;
  }
  if (question.so_far) return "";
  if (steps != "identify device artists albums tracks play pause next shuffle close ") {
    return "only " + steps;
  }
  const Player& player = question.ipod.player();
  if (question.account.cut_off) return "";
  if (player.index() != 1) return "it is at " + std::to_string(player.index());
  return question.MayBe(PlayerState::kPlaying) ? "" : "it is " + StateName(player.state());
}

}  // namespace

std::string UntrueTour(const Question& question) {
  ipodsim::Database database(&question.ipod.settings().library);
  const std::string untrue = UntrueTourThrough(question, database);
  if (untrue.empty() || !ListsByName(question)) return untrue;
  database.SetSort(ipodsim::Sort::kName);
  return UntrueTourThrough(question, database);
}

}  // namespace truth
